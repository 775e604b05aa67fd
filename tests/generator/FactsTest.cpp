#include "SchemaFiles.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace kpifcgen::facts;
using testing::ElementsAre;

std::vector<std::string> names(const auto& range) {
    std::vector<std::string> result;
    std::ranges::transform(range, std::back_inserter(result), [](const auto* one) { return one->name; });
    return result;
}

std::vector<std::string> spellAll(const std::vector<TypeRef>& types) {
    std::vector<std::string> result;
    std::ranges::transform(types, std::back_inserter(result), [](const TypeRef& type) { return spell(type); });
    return result;
}

TEST(Facts, ChainsAndOrderPutSupertypesFirst) {
    const auto schema = loadSound("schema S 1\nentity C : B\nentity D\nentity B : A\nentity A\nentity E : B\n");
    EXPECT_THAT(names(schema.supertypesFirst), ElementsAre("A", "B", "C", "D", "E"));
    EXPECT_THAT(names(schema.entities[0].chain), ElementsAre("C", "B", "A"));
    EXPECT_THAT(names(schema.entities[2].subtypes), ElementsAre("C", "E"));
}

TEST(Facts, DefinedTypesAreFollowedToTheirEnd) {
    const auto schema = loadSound("schema S 1\ntype A = B\ntype B = C\ntype C = string(22) fixed\n"
                                  "type D = E\ntype E = list [3:4] of A\n");
    EXPECT_EQ(spell(schema.definedTypes[0].underlying), "string(22) fixed");
    EXPECT_EQ(spell(schema.definedTypes[3].underlying), "list [3:4] of A");
}

TEST(Facts, SelectsAreFlattenedOnceInOrder) {
    const auto schema = loadSound("schema S 1\ntype T = real\ntype U = T\nenum V\n  X\nentity E\n"
                                  "select A\n  U B E\nselect B\n  C U V\nselect C\n  T E\n");
    EXPECT_THAT(spellAll(schema.selects[0].alternatives), ElementsAre("U", "T", "E", "V"));
    EXPECT_THAT(spellAll(schema.selects[0].members), ElementsAre("U", "B", "E"));
}

TEST(Facts, RecordFieldsKnowWhatIsRedeclaredAsDerived) {
    const auto schema = loadSound("schema S 1\nentity A\n  X: real\n  Y: real\nentity B : A\n  Z: real\n"
                                  "  derive A.X: real\nentity C : B\n  W: optional real\n");
    std::vector<std::string> fields;
    for (const auto& field : schema.entities[2].recordFields) {
        fields.push_back(field.attribute->name + (field.redeclaredAs ? "*" : ""));
    }
    EXPECT_THAT(fields, ElementsAre("X*", "Y", "Z", "W"));
    EXPECT_EQ(schema.entities[0].recordFields[0].redeclaredAs, nullptr);
}

TEST(Facts, InversesKnowTheInheritedAttributeAndItKnowsThem) {
    const auto schema = loadSound("schema S 1\nselect Any\n  One Other\nentity One\n"
                                  "  inverse Links: set [0:?] of Narrow for Ends\n  inverse Lone: Link for Ends\n"
                                  "entity Other\nentity Link\n  Ends: list [2:2] of Any\nentity Narrow : Link\n");
    const auto& [links, lone] =
        std::tie(schema.entities[0].inverseAttributes[0], schema.entities[0].inverseAttributes[1]);
    EXPECT_EQ(links.target->name, "Narrow");
    EXPECT_EQ(links.inverted->owner->name, "Link");
    EXPECT_EQ(links.aggregation->spelling, "set [0:?] of Narrow");
    EXPECT_EQ(lone.aggregation, nullptr);
    EXPECT_THAT(names(links.inverted->inverses), ElementsAre("Links", "Lone"));
    EXPECT_TRUE(schema.entities[3].isInverted && schema.entities[2].isInverted);
    EXPECT_FALSE(schema.entities[0].isInverted || schema.entities[1].isInverted);
}

TEST(Facts, AggregationsWrittenAlikeAreOne) {
    const auto schema = loadSound("schema S 1\nentity E\n  A: list [1:?] of real\n  B: list [1:?] of real\n"
                                  "  C: list [1:?] of unique real\n  D: list [1:2] of set [1:?] of E\n"
                                  "  derive F: list [1:?] of real\n  inverse I: set [1:?] of E for D\n");
    std::vector<std::string> spellings;
    for (const auto& aggregation : schema.aggregations) {
        spellings.push_back(aggregation.spelling);
    }
    EXPECT_THAT(spellings, ElementsAre("list [1:?] of real", "list [1:?] of unique real", "set [1:?] of E",
                                       "list [1:2] of set [1:?] of E"));
    const auto& shared = schema.aggregations[0];
    EXPECT_TRUE(shared.inExplicit && shared.inDerived && !shared.inInverse && !shared.inDefinedType);
    EXPECT_TRUE(schema.aggregations[2].inExplicit && schema.aggregations[2].inInverse);
}

} // namespace
