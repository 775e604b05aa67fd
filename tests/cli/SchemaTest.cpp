#include "Runner.h"

#include <kpifc/Schema.h>
#include <kpifc/SchemaNames.h>

#include <KpIfcCore/KpIfcModule.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::TestWithParam;
using testing::ValuesIn;
using Json = nlohmann::ordered_json;

namespace {

Json schemaJson(const std::string& arguments) {
    const WorkFolder folder;
    const Outcome outcome = folder.run("kpifc schema --json " + arguments);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    return Json::parse(outcome.out);
}

std::string schemaText(const std::string& arguments) {
    const WorkFolder folder;
    const Outcome outcome = folder.run("kpifc schema " + arguments);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    return outcome.out;
}

/// "kind entity.name: type", the type marked where it is optional.
std::vector<std::string> attributeLines(const Json& entity) {
    std::vector<std::string> lines;
    for (const Json& attribute : entity["attributes"]) {
        lines.push_back(attribute["kind"].get<std::string>() + ' ' + attribute["declared_in"].get<std::string>() + '.' +
                        attribute["name"].get<std::string>() + ": " +
                        (attribute["optional"].get<bool>() ? "optional " : "") + attribute["type"].get<std::string>());
    }
    return lines;
}

TEST(SchemaJsonTest, CountsTheSchema) {
    const Json overview = schemaJson("");
    const Json expected = {{"entities", 653},
                           {"abstract_entities", 97},
                           {"explicit_attributes", 1320},
                           {"derived_attributes", 55},
                           {"inverse_attributes", 115},
                           {"defined_types", 117},
                           {"enumerations", 164},
                           {"literals", 1310},
                           {"selects", 46},
                           {"anonymous_aggregations", 184}};
    EXPECT_EQ(overview["counts"], expected);
    EXPECT_EQ(overview["schema"], "IFC2X3");
    EXPECT_EQ(overview["version"], "2.3");
    for (const auto& [kind, names] : overview["names"].items()) {
        EXPECT_EQ(names.size(), expected[kind]) << kind;
    }
}

TEST(SchemaJsonTest, ListsAttributesInTheOrderOfRecords) {
    const Json wall = schemaJson("IfcWall");
    EXPECT_EQ(wall["name"], "IfcWall");
    EXPECT_EQ(wall["abstract"], false);
    EXPECT_EQ(wall["supertypes"],
              (Json{"IfcBuildingElement", "IfcElement", "IfcProduct", "IfcObject", "IfcObjectDefinition", "IfcRoot"}));
    EXPECT_EQ(wall["subtypes"], Json::array({"IfcWallStandardCase"}));
    EXPECT_THAT(
        attributeLines(wall),
        ElementsAre("explicit IfcRoot.GlobalId: IfcGloballyUniqueId", "explicit IfcRoot.OwnerHistory: IfcOwnerHistory",
                    "explicit IfcRoot.Name: optional IfcLabel", "explicit IfcRoot.Description: optional IfcText",
                    "inverse IfcObjectDefinition.HasAssignments: SET [0:?] OF IfcRelAssigns",
                    "inverse IfcObjectDefinition.IsDecomposedBy: SET [0:?] OF IfcRelDecomposes",
                    "inverse IfcObjectDefinition.Decomposes: SET [0:1] OF IfcRelDecomposes",
                    "inverse IfcObjectDefinition.HasAssociations: SET [0:?] OF IfcRelAssociates",
                    "explicit IfcObject.ObjectType: optional IfcLabel",
                    "inverse IfcObject.IsDefinedBy: SET [0:?] OF IfcRelDefines",
                    "explicit IfcProduct.ObjectPlacement: optional IfcObjectPlacement",
                    "explicit IfcProduct.Representation: optional IfcProductRepresentation",
                    "inverse IfcProduct.ReferencedBy: SET [0:?] OF IfcRelAssignsToProduct",
                    "explicit IfcElement.Tag: optional IfcIdentifier",
                    "inverse IfcElement.HasStructuralMember: SET [0:?] OF IfcRelConnectsStructuralElement",
                    "inverse IfcElement.FillsVoids: SET [0:1] OF IfcRelFillsElement",
                    "inverse IfcElement.ConnectedTo: SET [0:?] OF IfcRelConnectsElements",
                    "inverse IfcElement.HasCoverings: SET [0:?] OF IfcRelCoversBldgElements",
                    "inverse IfcElement.HasProjections: SET [0:?] OF IfcRelProjectsElement",
                    "inverse IfcElement.ReferencedInStructures: SET [0:?] OF IfcRelReferencedInSpatialStructure",
                    "inverse IfcElement.HasPorts: SET [0:?] OF IfcRelConnectsPortToElement",
                    "inverse IfcElement.HasOpenings: SET [0:?] OF IfcRelVoidsElement",
                    "inverse IfcElement.IsConnectionRealization: SET [0:?] OF IfcRelConnectsWithRealizingElements",
                    "inverse IfcElement.ProvidesBoundaries: SET [0:?] OF IfcRelSpaceBoundary",
                    "inverse IfcElement.ConnectedFrom: SET [0:?] OF IfcRelConnectsElements",
                    "inverse IfcElement.ContainedInStructure: SET [0:1] OF IfcRelContainedInSpatialStructure"));
    EXPECT_EQ(wall["attributes"][9]["inverts"], "IfcRelDefines.RelatedObjects");
    EXPECT_EQ(wall["unique_rules"],
              Json::array({{{"label", "UR1"}, {"declared_in", "IfcRoot"}, {"attributes", Json::array({"GlobalId"})}}}));
    EXPECT_EQ(schemaJson("IfcProduct")["abstract"], true);
}

TEST(SchemaJsonTest, TellsWhatIsRedeclaredAsDerived) {
    const Json unit = schemaJson("IfcSIUnit");
    EXPECT_THAT(attributeLines(unit),
                ElementsAre("explicit IfcNamedUnit.Dimensions: IfcDimensionalExponents",
                            "explicit IfcNamedUnit.UnitType: IfcUnitEnum",
                            "explicit IfcSIUnit.Prefix: optional IfcSIPrefix", "explicit IfcSIUnit.Name: IfcSIUnitName",
                            "derived IfcSIUnit.Dimensions: IfcDimensionalExponents"));
    EXPECT_EQ(unit["attributes"][4]["redeclares"], "IfcNamedUnit.Dimensions");
    EXPECT_FALSE(schemaJson("IfcCartesianPoint")["attributes"].back().contains("redeclares"));
}

TEST(SchemaJsonTest, TellsTypesAndWhereTheyAreUsed) {
    const Json length = schemaJson("IfcLengthMeasure");
    EXPECT_EQ(length["kind"], "defined_type");
    EXPECT_EQ(length["definition"], "REAL");
    EXPECT_EQ(length["used_by"]["types"], Json::array({"IfcPositiveLengthMeasure"}));
    EXPECT_EQ(length["used_by"]["selects"], (Json{"IfcMeasureValue", "IfcSizeSelect"}));
    EXPECT_EQ(length["used_by"]["attributes"][0],
              (Json{{"entity", "IfcBuilding"}, {"name", "ElevationOfRefHeight"}, {"kind", "explicit"}}));
    const Json point = {{"entity", "IfcCartesianPoint"}, {"name", "Coordinates"}, {"kind", "explicit"}};
    EXPECT_THAT(length["used_by"]["attributes"], testing::Contains(point)) << "through an aggregation";

    const Json trimming = schemaJson("IfcTrimmingSelect");
    EXPECT_EQ(trimming["kind"], "select");
    EXPECT_EQ(trimming["members"], (Json{"IfcCartesianPoint", "IfcParameterValue"}));
    EXPECT_EQ(trimming["used_by"]["attributes"],
              (Json::array({{{"entity", "IfcTrimmedCurve"}, {"name", "Trim1"}, {"kind", "explicit"}},
                            {{"entity", "IfcTrimmedCurve"}, {"name", "Trim2"}, {"kind", "explicit"}}})));

    const Json value = schemaJson("IfcValue");
    EXPECT_EQ(value["members"], (Json{"IfcMeasureValue", "IfcSimpleValue", "IfcDerivedMeasureValue"}));
    EXPECT_EQ(value["flattened_members"][0], "IfcVolumeMeasure");

    const Json direction = schemaJson("IfcDirectionSenseEnum");
    EXPECT_EQ(direction["kind"], "enumeration");
    EXPECT_EQ(direction["literals"], (Json{"POSITIVE", "NEGATIVE"}));

    EXPECT_EQ(schemaJson("IfcRelDefines")["used_by"]["attributes"],
              Json::array({{{"entity", "IfcObject"}, {"name", "IsDefinedBy"}, {"kind", "inverse"}}}));
}

/// What a person sees, whole: entities with and without own attributes, each kind of type.
TEST(SchemaTextTest, ReadsWell) {
    EXPECT_EQ(schemaText("IfcSIUnit"), "IfcSIUnit: entity of IFC2X3\n"
                                       "\n"
                                       "Supertypes  IfcNamedUnit\n"
                                       "\n"
                                       "Inherited from IfcNamedUnit\n"
                                       "        1  Dimensions                    IfcDimensionalExponents (* in files)\n"
                                       "        2  UnitType                      IfcUnitEnum\n"
                                       "\n"
                                       "Own attributes\n"
                                       "        3  Prefix                        OPTIONAL IfcSIPrefix\n"
                                       "        4  Name                          IfcSIUnitName\n"
                                       "  derived  SELF\\IfcNamedUnit.Dimensions  IfcDimensionalExponents\n");
    EXPECT_EQ(schemaText("IfcTrimmingSelect"), "IfcTrimmingSelect: select of IFC2X3\n"
                                               "\n"
                                               "Members\n"
                                               "  IfcCartesianPoint  entity\n"
                                               "  IfcParameterValue  REAL\n"
                                               "\n"
                                               "Used by\n"
                                               "  IfcTrimmedCurve  Trim1, Trim2\n");
    EXPECT_EQ(schemaText("IfcWallTypeEnum"), "IfcWallTypeEnum: enumeration of IFC2X3\n"
                                             "\n"
                                             "Literals    STANDARD, POLYGONAL, SHEAR, ELEMENTEDWALL, PLUMBINGWALL,\n"
                                             "            USERDEFINED, NOTDEFINED\n"
                                             "\n"
                                             "Used by\n"
                                             "  IfcWallType  PredefinedType\n");
    EXPECT_THAT(schemaText("IfcPositiveLengthMeasure"),
                HasSubstr("\nDefinition  IfcLengthMeasure, which is REAL\n"
                          "Member of   IfcHatchLineDistanceSelect, IfcMeasureValue, IfcSizeSelect\n"));
    const std::string wall = schemaText("IfcWall");
    EXPECT_THAT(wall, HasSubstr("\nSupertypes  IfcBuildingElement, IfcElement, IfcProduct, IfcObject,\n"
                                "            IfcObjectDefinition, IfcRoot\n"
                                "Subtypes    IfcWallStandardCase\n"));
    EXPECT_THAT(wall, HasSubstr("\nInherited from IfcObject\n"
                                "        5  ObjectType               OPTIONAL IfcLabel\n"
                                "  inverse  IsDefinedBy              SET [0:?] OF IfcRelDefines\n"
                                "                                    FOR RelatedObjects\n"));
    EXPECT_THAT(wall, HasSubstr("\nUnique\n  UR1       GlobalId (from IfcRoot)\n"));
    EXPECT_THAT(schemaText("IfcProduct"), HasSubstr("IfcProduct: abstract entity of IFC2X3\n"));
    EXPECT_THAT(schemaText(""), HasSubstr("1,320  explicit attributes\n"));
}

TEST(SchemaNameTest, IsFoundInAnyLetterCase) {
    for (const std::string name : {"IfcWall", "IfcRoleEnum", "IfcTrimmingSelect", "IfcLabel"}) {
        const std::string text = schemaText(name);
        EXPECT_TRUE(text.starts_with(name + ": ")) << text;
        const std::string changes[] = {"a-z' 'A-Z", "A-Z' 'a-z"};
        for (const std::string& change : changes) {
            EXPECT_EQ(schemaText("$(echo " + name + " | tr '" + change + "')"), text) << change;
        }
    }
    EXPECT_EQ(schemaText("--schema ifc2x3_tc1 IfcWall"), schemaText("IfcWall"));
}

struct Miss {
    const char* name;
    const char* arguments;
    const char* message; ///< part of it
};

class SchemaMissTest : public TestWithParam<Miss> {};

TEST_P(SchemaMissTest, IsAnErrorThatHelps) {
    const WorkFolder folder;
    for (const std::string option : {"", " --json"}) {
        expectRefusal(folder.run("kpifc schema " + std::string(GetParam().arguments) + option), GetParam().message);
    }
}

const Miss kMisses[] = {
    {"LetterMissing", "IfcWal", "IFC2X3 declares no \"IfcWal\"; did you mean IfcWall"},
    {"LetterTooMany", "ifcwindoww", "did you mean IfcWindow"},
    {"LettersSwapped", "IFCBEMA", "did you mean IfcBeam"},
    {"LetterReplaced", "IfcRoleEnun", "did you mean IfcRoleEnum"},
    {"PrefixMissing", "TrimmingSelect", "did you mean IfcTrimmingSelect"},
    {"PartOfNames", "Boundary", "IfcRelSpaceBoundary"},
    {"NothingNear", "xyzzy", "IFC2X3 declares no \"xyzzy\"\n"},
    {"Empty", "''", "IFC2X3 declares no \"\"\n"},
    {"OnlyPrefix", "ifc", "IFC2X3 declares no \"ifc\"\n"},
    {"ControlCharacter", "\"$(printf 'a\\033b')\"",
     "\"a\xEF\xBF\xBD"
     "b\""},
    {"OtherSchema", "--schema IFC4 IfcWall", "IFC4 has no module; can be read: IFC2X3"},
    {"TwoNames", "IfcWall IfcSlab", "IfcSlab"},
};

INSTANTIATE_TEST_SUITE_P(Calls, SchemaMissTest, ValuesIn(kMisses), [](const auto& test) { return test.param.name; });

/// Everything that the schema declares, without a run of the program for each.
class WholeSchemaTest : public testing::Test {
protected:
    WholeSchemaTest() {
        std::string error;
        m_module = KP_SDAI::KpIfcModule::load("IFC2X3", error);
        if (!m_module) {
            throw std::runtime_error(error);
        }
    }
    const KP_SDAI::KpIfcSchema& schema() const { return m_module->schema(); }

    std::shared_ptr<KP_SDAI::KpIfcModule> m_module;
};

void expectTidy(const std::string& name, const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 80u) << name << '\n' << line;
        EXPECT_FALSE(line.ends_with(' ')) << name << '\n' << line;
    }
}

TEST_F(WholeSchemaTest, FitsInto80ColumnsAndIsJson) {
    const kpifc::SchemaNames names(schema());
    EXPECT_EQ(names.entities.size(), 653u);
    std::size_t fields = 0;
    for (const std::string& name : names.entities) {
        const KP_SDAI::KpIfcEntityType& entity = *schema().findEntity(name);
        expectTidy(name, kpifc::schema_text::entity(entity));
        const Json attributes = Json::parse(kpifc::schema_json::entity(entity))["attributes"];
        EXPECT_EQ(std::count_if(attributes.begin(), attributes.end(),
                                [](const Json& attribute) { return attribute["kind"] == "explicit"; }),
                  static_cast<std::ptrdiff_t>(entity.recordFields().size()))
            << name;
        fields += entity.recordFields().size();
    }
    EXPECT_GT(fields, 1320u);
    for (const auto* list : {&names.types, &names.enumerations, &names.selects}) {
        for (const std::string& name : *list) {
            const KP_SDAI::KpIfcDefinedType& type = *schema().findType(name);
            expectTidy(name, kpifc::schema_text::type(schema(), type));
            EXPECT_EQ(Json::parse(kpifc::schema_json::type(schema(), type))["name"], name);
        }
    }
}

/// A name with one letter left out is among the suggestions.
TEST_F(WholeSchemaTest, SuggestsNamesForSlipsOfThePen) {
    const kpifc::SchemaNames names(schema());
    for (std::size_t i = 0; i < names.entities.size(); i += 20) {
        std::string slip = names.entities[i];
        slip.erase(slip.size() / 2, 1);
        EXPECT_THAT(kpifc::suggestions(names, slip), testing::Contains(names.entities[i])) << slip;
        EXPECT_LE(kpifc::suggestions(names, slip).size(), 5u);
    }
}

} // namespace
