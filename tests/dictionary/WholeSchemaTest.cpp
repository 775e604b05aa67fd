#include "DictionaryTest.h"

#include <KpIfcCore/KpIfcExpressText.h>

#include <algorithm>
#include <map>
#include <set>

using namespace KP_SDAI;
using schema_file::Attribute;
using testing::ElementsAreArray;
using testing::UnorderedElementsAreArray;

namespace {

/// What the dictionary says other than the schema file, all of it on purpose: where, the file's type, the dictionary's.
constexpr const char* kDepartures[][3] = {
    // Numbers are reals, widths are not carried.
    {"IfcCountMeasure", "NUMBER", "REAL"},
    {"IfcNumericMeasure", "NUMBER", "REAL"},
    {"IfcGloballyUniqueId", "STRING(22) FIXED", "STRING"},
    {"IfcPixelTexture.Pixel", "LIST [1:?] OF BINARY(32)", "LIST [1:?] OF BINARY"},
    // No list is recorded as one of unique elements.
    {"IfcConstraintAggregationRelationship.RelatedConstraints", "LIST [1:?] OF UNIQUE IfcConstraint",
     "LIST [1:?] OF IfcConstraint"},
    {"IfcGrid.UAxes", "LIST [1:?] OF UNIQUE IfcGridAxis", "LIST [1:?] OF IfcGridAxis"},
    {"IfcGrid.VAxes", "LIST [1:?] OF UNIQUE IfcGridAxis", "LIST [1:?] OF IfcGridAxis"},
    {"IfcGrid.WAxes", "LIST [1:?] OF UNIQUE IfcGridAxis", "LIST [1:?] OF IfcGridAxis"},
    {"IfcMove.PunchList", "LIST [1:?] OF UNIQUE IfcText", "LIST [1:?] OF IfcText"},
    {"IfcPath.EdgeList", "LIST [1:?] OF UNIQUE IfcOrientedEdge", "LIST [1:?] OF IfcOrientedEdge"},
    {"IfcPolyLoop.Polygon", "LIST [3:?] OF UNIQUE IfcCartesianPoint", "LIST [3:?] OF IfcCartesianPoint"},
    {"IfcProjectOrderRecord.Records", "LIST [1:?] OF UNIQUE IfcRelAssignsToProjectOrder",
     "LIST [1:?] OF IfcRelAssignsToProjectOrder"},
    {"IfcPropertyEnumeration.EnumerationValues", "LIST [1:?] OF UNIQUE IfcValue", "LIST [1:?] OF IfcValue"},
    {"IfcPropertyTableValue.DefiningValues", "LIST [1:?] OF UNIQUE IfcValue", "LIST [1:?] OF IfcValue"},
    {"IfcTypeProduct.RepresentationMaps", "LIST [1:?] OF UNIQUE IfcRepresentationMap",
     "LIST [1:?] OF IfcRepresentationMap"},
    {"IfcVirtualGridIntersection.IntersectingAxes", "LIST [2:2] OF UNIQUE IfcGridAxis", "LIST [2:2] OF IfcGridAxis"},
};

/// Aggregations that the dictionary has though no declaration in the file writes them.
constexpr const char* kExtraAggregations[] = {"LIST [3:4] OF INTEGER"};

std::string typeText(const std::string& where, const std::string& inFile) {
    for (const auto& [place, written, registered] : kDepartures)
        if (where == place && inFile == written) return registered;
    return inFile;
}

/// An attribute in one line, all but its type.
std::string line(const Attribute& attribute) {
    constexpr const char* kKinds[] = {"explicit ", "derived ", "inverse "};
    std::string text = kKinds[static_cast<int>(attribute.kind)] + attribute.name;
    if (attribute.optional) text += " optional";
    if (!attribute.redeclaredIn.empty()) text += " of " + attribute.redeclaredIn;
    if (!attribute.inverted.empty()) text += " for " + attribute.inverted;
    return text;
}

std::string line(const KpIfcAttributeDefinition& definition) {
    Attribute attribute{static_cast<Attribute::Kind>(definition.kind()), definition.displayName(), "", false, "", ""};
    if (const auto* own = definition.as<KpIfcExplicitAttributeDefinition>())
        attribute.optional = own->isOptionalInFiles();
    if (const auto* derived = definition.as<KpIfcDerivedAttributeDefinition>();
        derived && derived->redeclaredAttribute())
        attribute.redeclaredIn = derived->redeclaredAttribute()->owner()->displayName();
    if (const auto* inverse = definition.as<KpIfcInverseAttributeDefinition>()) {
        attribute.inverted = inverse->invertedAttribute() ? inverse->invertedAttribute()->name() : "?";
    }
    return line(attribute);
}

class WholeSchema : public DictionaryTest {};

TEST_F(WholeSchema, HasEveryAttributeOfEveryEntityInOrder) {
    ASSERT_EQ(file().entities.size(), 653u);
    for (const schema_file::Entity& expected : file().entities) {
        SCOPED_TRACE(expected.name);
        const KpIfcEntityType& found = entity(expected.name);
        // Within an entity all explicit attributes come first, then derived, then inverse ones.
        std::vector<Attribute> attributes = expected.attributes;
        std::ranges::stable_sort(attributes, {}, &Attribute::kind);
        std::vector<std::string> expectedLines, foundLines;
        for (const Attribute& attribute : attributes)
            expectedLines.push_back(line(attribute) + ": " +
                                    typeText(expected.name + '.' + attribute.name, attribute.type));
        for (const auto& attribute : found.attributes()) {
            EXPECT_EQ(attribute->owner(), &found);
            foundLines.push_back(line(*attribute) + ": " + attribute->typeText());
        }
        ASSERT_THAT(foundLines, ElementsAreArray(expectedLines));
        for (std::size_t i = 0; i < attributes.size(); ++i) { // lists of unique elements are so in their rows
            const auto* const own = found.attributes()[i]->as<KpIfcExplicitAttributeDefinition>();
            const bool isUnique = attributes[i].type.find(" OF UNIQUE ") != std::string::npos;
            EXPECT_EQ(own && own->facts()->isUnique(), isUnique && own) << attributes[i].name;
        }
    }
}

TEST_F(WholeSchema, HasEveryEntityWithItsSupertypeAndRules) {
    std::map<std::string, std::set<std::string>> subtypes;
    for (const schema_file::Entity& expected : file().entities) subtypes[expected.supertype].insert(expected.name);
    for (const schema_file::Entity& expected : file().entities) {
        SCOPED_TRACE(expected.name);
        const KpIfcEntityType& found = entity(expected.name);
        EXPECT_EQ(found.displayName(), expected.name);
        EXPECT_EQ(found.superType() ? found.superType()->displayName() : "", expected.supertype);
        EXPECT_EQ(found.isAbstract(), expected.isAbstract);
        EXPECT_THAT(namesOf(found.subTypes()), UnorderedElementsAreArray(subtypes[expected.name]));
        std::vector<std::string> expectedRules, foundRules;
        for (const auto& [label, attributes] : expected.uniqueRules) expectedRules.push_back(label + ": " + attributes);
        for (std::uint32_t i = 0; i < found.facts()->uniqueRuleCount; ++i) {
            const KpIfcUniqueFacts& rule = found.facts()->uniqueRules[i];
            foundRules.push_back(std::string(rule.label) + ": " + rule.attributes);
        }
        EXPECT_EQ(foundRules, expectedRules);
    }
    EXPECT_EQ(schema().entities().count(), file().entities.size());
}

TEST_F(WholeSchema, HasEveryTypeWithItsDefinition) {
    for (const schema_file::Type& expected : file().types) {
        SCOPED_TRACE(expected.name);
        const KpIfcDefinedType& found = type(expected.name);
        EXPECT_EQ(found.displayName(), expected.name);
        EXPECT_FALSE(found.isAnonymous());
        if (expected.kind == schema_file::Type::Kind::defined) {
            EXPECT_EQ(definitionText(found), typeText(expected.name, expected.type));
        } else if (expected.kind == schema_file::Type::Kind::select) {
            ASSERT_NE(found.select(), nullptr);
            EXPECT_EQ(namesOf(found.select()->members()), expected.words);
        } else {
            ASSERT_NE(found.enumeration(), nullptr);
            const std::vector<KpAnsiString>& literals = found.enumeration()->literals();
            EXPECT_EQ(std::vector<std::string>(literals.begin(), literals.end()), expected.words);
        }
    }
    EXPECT_EQ(schema().types().count(), file().types.size());
}

TEST_F(WholeSchema, HasEveryAggregationThatIsWrittenAndNoOther) {
    std::set<std::string> expected(std::begin(kExtraAggregations), std::end(kExtraAggregations));
    for (const schema_file::Entity& entity : file().entities)
        for (const Attribute& attribute : entity.attributes)
            if (attribute.type.find('[') != std::string::npos)
                expected.insert(typeText(entity.name + '.' + attribute.name, attribute.type));
    std::vector<std::string> found;
    for (const auto* anonymous : all<KpIfcDefinedType>(schema().anonymousTypes())) {
        if (!anonymous->aggregation()) continue;
        EXPECT_TRUE(anonymous->isAnonymous());
        // What it is agrees with the name under which it is found.
        EXPECT_EQ(expressText(anonymous), schema_file::expressNotation(anonymous->name()));
        found.push_back(expressText(anonymous));
    }
    EXPECT_THAT(found, UnorderedElementsAreArray(expected));
}

/// Each departure is one: the file says what the row says, so that rows do not outlive their reason.
TEST_F(WholeSchema, DepartsFromTheFileWhereTheListSaysSo) {
    std::map<std::string, std::string> types;
    for (const schema_file::Type& type : file().types) types[type.name] = type.type;
    for (const schema_file::Entity& entity : file().entities)
        for (const Attribute& attribute : entity.attributes) types[entity.name + '.' + attribute.name] = attribute.type;
    for (const auto& [where, inFile, inDictionary] : kDepartures) EXPECT_EQ(types[where], inFile) << where;
}

TEST_F(WholeSchema, LeavesNothingUnresolved) {
    EXPECT_THAT(schema().unresolvedNames(), testing::IsEmpty());
}

TEST_F(WholeSchema, HasTheCountsOfThePublishedOne) {
    const KpIfcSchemaCounts counts = schema().counts();
    EXPECT_EQ(counts.entities, 653u);
    EXPECT_EQ(counts.abstractEntities, 97u);
    EXPECT_EQ(counts.explicitAttributes, 1320u);
    EXPECT_EQ(counts.derivedAttributes, 55u);
    EXPECT_EQ(counts.inverseAttributes, 115u);
    EXPECT_EQ(counts.definedTypes, 117u);
    EXPECT_EQ(counts.enumerations, 164u);
    EXPECT_EQ(counts.literals, 1310u);
    EXPECT_EQ(counts.selects, 46u);
    EXPECT_EQ(counts.anonymousAggregations, 184u);
}

TEST_F(WholeSchema, HasTheBoundsOfThePublishedOne) {
    std::map<std::string, int> found;
    for (const Dictionary* dictionary : {&schema().types(), &schema().anonymousTypes()})
        for (const auto* named : all<KpIfcDefinedType>(*dictionary)) {
            const KpIfcAggregationType* type = named->aggregation();
            if (!type) continue;
            const std::string upper =
                type->upperBound().isUnbounded() ? "?" : std::to_string(type->upperBound().value());
            ++found[std::string(type->keyword()) + ' ' + std::to_string(type->lowerBound().value()) + ':' + upper];
        }
    const std::map<std::string, int> expected = {
        {"SET 0:?", 53}, {"SET 1:?", 47}, {"SET 0:1", 27}, {"SET 0:2", 1},   {"SET 1:1", 2},
        {"SET 1:2", 1},  {"SET 1:5", 1},  {"SET 2:?", 1},  {"LIST 1:?", 29}, {"LIST 2:?", 6},
        {"LIST 3:?", 4}, {"LIST 0:?", 1}, {"LIST 1:3", 1}, {"LIST 1:8", 1},  {"LIST 2:2", 3},
        {"LIST 2:3", 2}, {"LIST 3:3", 1}, {"LIST 3:4", 2}, {"ARRAY 1:2", 1}, {"ARRAY 0:255", 2},
    };
    EXPECT_EQ(found, expected);
}

} // namespace
