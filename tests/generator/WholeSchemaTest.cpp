#include "SchemaFiles.h"

#include <algorithm>
#include <numeric>
#include <set>

namespace {

using namespace kpifcgen::facts;

const Schema& whole() {
    static const Schema schema = loadSound(readSource("generator/schemas/ifc2x3.schema"));
    return schema;
}

auto countEntities(auto predicate) {
    return std::ranges::count_if(whole().entities, predicate);
}

auto countAttributes(auto range, auto predicate) {
    std::ptrdiff_t count = 0;
    for (const Entity& entity : whole().entities) {
        count += std::ranges::count_if(entity.*range, predicate);
    }
    return count;
}

constexpr auto any = [](const auto&) { return true; };

TEST(WholeSchema, HasTheDeclarationsOfThePublishedOne) {
    EXPECT_EQ(whole().name, "IFC2X3");
    EXPECT_EQ(whole().version, "2.3");
    EXPECT_EQ(whole().definedTypes.size(), 117u);
    EXPECT_EQ(whole().enumerations.size(), 164u);
    EXPECT_EQ(whole().selects.size(), 46u);
    EXPECT_EQ(whole().entities.size(), 653u);
    const auto addLiterals = [](std::size_t sum, const Enumeration& one) { return sum + one.literals.size(); };
    EXPECT_EQ(std::accumulate(whole().enumerations.begin(), whole().enumerations.end(), std::size_t(0), addLiterals),
              1310u);
}

TEST(WholeSchema, HasTheEntitiesOfThePublishedOne) {
    EXPECT_EQ(countEntities([](const Entity& entity) { return entity.abstract; }), 97);
    EXPECT_EQ(countEntities([](const Entity& entity) { return !entity.supertype; }), 101);
    EXPECT_EQ(countEntities([](const Entity& entity) {
                  return !entity.explicitAttributes.empty() || !entity.inverseAttributes.empty();
              }),
              523);
    std::size_t longestChain = 0, longestRecord = 0;
    for (const Entity& entity : whole().entities) {
        longestChain = std::max(longestChain, entity.chain.size());
        longestRecord = std::max(longestRecord, entity.recordFields.size());
    }
    EXPECT_EQ(longestChain, 9u);
    EXPECT_EQ(longestRecord, 27u);
}

TEST(WholeSchema, HasTheAttributesOfThePublishedOne) {
    EXPECT_EQ(countAttributes(&Entity::explicitAttributes, any), 1320);
    EXPECT_EQ(countAttributes(&Entity::derivedAttributes, any), 55);
    EXPECT_EQ(countAttributes(&Entity::derivedAttributes, [](const auto& one) { return one.redeclared != nullptr; }),
              7);
    EXPECT_EQ(countAttributes(&Entity::inverseAttributes, any), 115);
    EXPECT_EQ(countAttributes(&Entity::inverseAttributes, [](const auto& one) { return !one.aggregation; }), 8);
}

TEST(WholeSchema, HasTheInvertedEntitiesOfThePublishedOne) {
    std::set<const Entity*> targets;
    for (const Entity& entity : whole().entities) {
        for (const auto& inverse : entity.inverseAttributes) {
            targets.insert(inverse.target);
        }
    }
    EXPECT_EQ(targets.size(), 77u);
    EXPECT_EQ(countEntities([](const Entity& entity) { return entity.isInverted; }), 295);
}

/// Aggregations that differ in UNIQUE only count as one here.
std::ptrdiff_t countAggregations(auto predicate) {
    std::set<std::string> spellings;
    for (const Aggregation& aggregation : whole().aggregations) {
        if (predicate(aggregation)) {
            spellings.insert(std::string(spell(aggregation.kind)) + spell(aggregation.bounds) +
                             spell(aggregation.element));
        }
    }
    return std::ssize(spellings);
}

TEST(WholeSchema, HasTheAggregationsOfThePublishedOne) {
    EXPECT_EQ(countAggregations([](const auto& one) { return one.inExplicit || one.inDerived || one.inInverse; }), 183);
    EXPECT_EQ(countAggregations([](const auto& one) { return one.inInverse && !one.inExplicit && !one.inDerived; }),
              83);
    EXPECT_EQ(countAggregations([](const auto& one) { return one.inDefinedType; }), 2);
}

} // namespace
