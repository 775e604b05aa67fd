#include "DictionaryTest.h"

#include <KpIfcCore/KpIfcExpressText.h>

using namespace KP_SDAI;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

class Reading : public DictionaryTest {};

TEST_F(Reading, NamesAreFoundInAnyLetterCase) {
    for (const char* name : {"ifcwall", "IFCWALL", "IfcWall"}) EXPECT_EQ(schema().find(name), &entity("IfcWall"));
    for (const char* name : {"IFCACTIONSOURCETYPEENUM", "IfcActionSourceTypeEnum"})
        EXPECT_EQ(schema().find(name), &type("ifcactionsourcetypeenum"));
    EXPECT_EQ(schema().find("IfcWal"), nullptr);
    // Types without a name are known by their text, and in their own dictionary only.
    const DictionaryInstance* roles = schema().anonymousTypes().at("LIST [1:?] OF IFCACTORROLE");
    ASSERT_NE(roles, nullptr);
    EXPECT_EQ(attribute<KpIfcExplicitAttributeDefinition>("IfcPerson", "Roles").domain(), roles);
    EXPECT_EQ(schema().find("list [1:?] of IfcActorRole"), nullptr);
}

TEST_F(Reading, AttributesOfAnEntityStandInTheOrderOfItsRecord) {
    EXPECT_THAT(namesOf(entity("IfcRelDefinesByProperties").allAttributes()),
                ElementsAre("IfcRoot.GlobalId", "IfcRoot.OwnerHistory", "IfcRoot.Name", "IfcRoot.Description",
                            "IfcRelDefines.RelatedObjects", "IfcRelDefinesByProperties.RelatingPropertyDefinition"));
    EXPECT_THAT(namesOf(entity("IfcRelationship").allAttributes()).size(), 4u);
    EXPECT_THAT(entity("IfcRelationship").attributes(), testing::IsEmpty());
    for (const auto* entity : all<KpIfcEntityType>(schema().entities())) {
        std::vector<std::string> names, fields;
        for (const KpIfcAttributeDefinition* attribute : entity->allAttributes())
            if (attribute->kind() == KpIfcAttributeKind::explicitAttribute) names.push_back(attribute->name());
        for (const KpIfcAttributeFacts* field : entity->recordFields()) fields.push_back(field->name);
        EXPECT_EQ(names, fields) << entity->displayName();
    }
}

TEST_F(Reading, AnAttributeIsFoundByNameWhereverItIsDeclared) {
    const KpIfcEntityType& wall = entity("IfcWallStandardCase");
    EXPECT_EQ(wall.findAttribute("GLOBALID"), &attribute<KpIfcExplicitAttributeDefinition>("IfcRoot", "GlobalId"));
    EXPECT_EQ(wall.findAttribute("hasOpenings"),
              &attribute<KpIfcInverseAttributeDefinition>("IfcElement", "HasOpenings"));
    EXPECT_EQ(wall.findAttribute("GlobalI"), nullptr);
    EXPECT_EQ(entity("IfcRoot").findAttribute("Tag"), nullptr);
    EXPECT_EQ(entity("IfcOrientedEdge").findAttribute("EdgeStart"),
              &attribute<KpIfcExplicitAttributeDefinition>("IfcEdge", "EdgeStart"));
}

TEST_F(Reading, DeclarationsAreShownInTheNotationOfExpress) {
    const struct {
        const char* entity;
        const char* name;
        const char* declaration;
    } kDeclarations[] = {
        {"IfcRoot", "GlobalId", "IfcGloballyUniqueId"},
        {"IfcRoot", "Name", "OPTIONAL IfcLabel"},
        {"IfcActorRole", "Role", "IfcRoleEnum"},
        {"IfcTrimmedCurve", "SenseAgreement", "BOOLEAN"},
        {"IfcSite", "RefLatitude", "OPTIONAL IfcCompoundPlaneAngleMeasure"},
        {"IfcTrimmedCurve", "Trim1", "SET [1:2] OF IfcTrimmingSelect"},
        {"IfcObject", "IsDefinedBy", "SET [0:?] OF IfcRelDefines FOR RelatedObjects"},
        {"IfcGroup", "IsGroupedBy", "IfcRelAssignsToGroup FOR RelatingGroup"},
        {"IfcOrientedEdge", "ifcedge_edgestart", "IfcVertex"},
        {"IfcRationalBezierCurve", "Weights", "ARRAY [0:255] OF REAL"},
    };
    for (const auto& row : kDeclarations)
        EXPECT_EQ(attribute<KpIfcAttributeDefinition>(row.entity, row.name).declarationText(), row.declaration)
            << row.entity << '.' << row.name;

    EXPECT_EQ(definitionText(type("IfcPositiveLengthMeasure")), "IfcLengthMeasure");
    EXPECT_EQ(definitionText(type("IfcComplexNumber")), "ARRAY [1:2] OF REAL");
    EXPECT_EQ(definitionText(type("IfcAheadOrBehind")), "ENUMERATION OF (AHEAD, BEHIND)");
    EXPECT_EQ(definitionText(type("IfcTrimmingSelect")), "SELECT (IfcCartesianPoint, IfcParameterValue)");
    EXPECT_EQ(expressText(schema().anonymousTypes().at("string(22)fixed")), "STRING(22) FIXED");
    EXPECT_EQ(expressText(schema().anonymousTypes().at("binary(32)")), "BINARY(32)");
}

TEST_F(Reading, SelectsKeepTheirMembersAndFlattenThem) {
    const KpIfcSelectType& value = *type("IfcValue").select();
    EXPECT_THAT(namesOf(value.members()), ElementsAre("IfcMeasureValue", "IfcSimpleValue", "IfcDerivedMeasureValue"));
    std::vector<std::string> flat;
    for (const char* nested : {"IfcMeasureValue", "IfcSimpleValue", "IfcDerivedMeasureValue"})
        for (const std::string& name : namesOf(type(nested).select()->members())) flat.push_back(name);
    EXPECT_EQ(namesOf(value.flattenedMembers()), flat);
    EXPECT_GT(flat.size(), 70u);
    const KpIfcSelectType& hatch = *type("IfcHatchLineDistanceSelect").select();
    EXPECT_THAT(namesOf(hatch.members()), ElementsAre("IfcOneDirectionRepeatFactor", "IfcPositiveLengthMeasure"));
    EXPECT_EQ(hatch.flattenedMembers(), hatch.members());
}

TEST_F(Reading, ATypeKnowsWhereItIsUsed) {
    EXPECT_THAT(namesOf(schema().attributesOver(type("IfcRoleEnum"))), ElementsAre("IfcActorRole.Role"));
    EXPECT_THAT(namesOf(schema().attributesOver(type("IfcTrimmingSelect"))),
                ElementsAre("IfcTrimmedCurve.Trim1", "IfcTrimmedCurve.Trim2"));
    // By itself, in aggregations and as what inverse attributes hold.
    const std::vector<std::string> ofProducts = namesOf(schema().attributesOver(entity("IfcProduct")));
    EXPECT_THAT(ofProducts, Contains("IfcRelAssignsToProduct.RelatingProduct"));
    EXPECT_THAT(ofProducts, Contains("IfcRelContainedInSpatialStructure.RelatedElements"));
    EXPECT_THAT(ofProducts, Contains("IfcObjectPlacement.PlacesObject"));
    EXPECT_THAT(ofProducts, Not(Contains("IfcRelVoidsElement.RelatingBuildingElement")));

    EXPECT_THAT(namesOf(schema().typesOver(type("IfcRatioMeasure"))),
                ElementsAre("IfcNormalisedRatioMeasure", "IfcPositiveRatioMeasure", "IfcAppliedValueSelect",
                            "IfcMeasureValue", "IfcSizeSelect"));
    EXPECT_THAT(namesOf(schema().typesOver(entity("IfcPerson"))),
                ElementsAre("IfcActorSelect", "IfcObjectReferenceSelect"));
    EXPECT_THAT(namesOf(schema().typesOver(type("IfcMeasureValue"))), Contains("IfcValue"));
    EXPECT_THAT(namesOf(schema().typesOver(*KpIfcSimpleType::find("integer"))),
                Contains("IfcCompoundPlaneAngleMeasure"));
}

TEST_F(Reading, KindsOfTypesAreToldApart) {
    const KpIfcEntityType& wall = entity("IfcWall");
    EXPECT_TRUE(wall.isKindOf(&entity("IfcRoot")));
    EXPECT_FALSE(entity("IfcRoot").isKindOf(&wall));
    const auto* complex = type("IfcComplexNumber").aggregation()->as<KpIfcArrayType>();
    ASSERT_NE(complex, nullptr);
    EXPECT_EQ(complex->lowerBound().value(), 1);
    EXPECT_EQ(complex->upperBound().value(), 2);
    EXPECT_EQ(complex->elementType(), KpIfcSimpleType::find("real"));
    EXPECT_FALSE(complex->isOptional() || complex->isUnique());
    // A type over an enumeration or a select would be none itself.
    EXPECT_EQ(type("IfcLabel").enumeration(), nullptr);
    EXPECT_EQ(type("IfcLabel").select(), nullptr);
    EXPECT_EQ(type("IfcLabel").aggregation(), nullptr);
}

} // namespace
