#include "SmallModel.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Case {
    const char* name;
    const char* asked;
    const char* text;
};

class ShowTest : public testing::TestWithParam<Case> {};

/// What the small model has besides: an element with relations, and more points than are shown.
std::string furnishedModel() {
    std::string records = "#30=IFCWALL('0000000000000000000030',#11,'Wall \\X\\E9',$,$,$,$,$);\n"
                          "#31=IFCRELCONTAINEDINSPATIALSTRUCTURE('0000000000000000000031',#11,$,$,(#30),#10);\n"
                          "#32=IFCRELVOIDSELEMENT('0000000000000000000032',#11,$,$,#30,#33);\n"
                          "#33=IFCOPENINGELEMENT('0000000000000000000033',#11,$,$,$,$,$,$);\n"
                          "#34=IFCRELCONNECTSELEMENTS('0000000000000000000034',#11,$,$,$,#30,#30);\n"
                          "#40=IFCPOLYLINE((#16";
    for (int i = 0; i < 11; ++i) {
        records += ",#4";
    }
    records += "));\n";
    for (int i = 50; i < 61; ++i) {
        records += '#' + std::to_string(i) + "=IFCVERTEXPOINT(#4);\n";
    }
    std::string model = smallModel();
    return model.insert(model.find("#1="), records);
}

TEST_P(ShowTest, IsPrinted) {
    const WorkFolder folder;
    folder.write("model.ifc", furnishedModel());
    const Outcome outcome = folder.run(std::string("kpifc show model.ifc ") + GetParam().asked);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, GetParam().text);
}

const char* const kWall =
    "#30 IfcWall \"Wall é\"\n"
    "is an IfcBuildingElement, IfcElement, IfcProduct, IfcObject, IfcObjectDefinition, IfcRoot\n\n"
    "Attributes\n"
    "  GlobalId         \"0000000000000000000030\"\n"
    "  OwnerHistory     #11 IfcOwnerHistory\n"
    "  Name             \"Wall é\"\n"
    "  Description      -\n"
    "  ObjectType       -\n"
    "  ObjectPlacement  -\n"
    "  Representation   -\n"
    "  Tag              -\n\n"
    "Inverse attributes\n"
    "  ConnectedTo           [#34 IfcRelConnectsElements]\n"
    "  HasOpenings           [#32 IfcRelVoidsElement]\n"
    "  ConnectedFrom         [#34 IfcRelConnectsElements]\n"
    "  ContainedInStructure  [#31 IfcRelContainedInSpatialStructure]\n"
    "  without any: HasAssignments, IsDecomposedBy, Decomposes, HasAssociations, IsDefinedBy, "
    "ReferencedBy, HasStructuralMember, FillsVoids, HasCoverings, HasProjections, "
    "ReferencedInStructures, HasPorts, IsConnectionRealization, ProvidesBoundaries\n\n"
    "Referred to by\n"
    "  IfcRelConnectsElements.RelatedElement              #34\n"
    "  IfcRelConnectsElements.RelatingElement             #34\n"
    "  IfcRelContainedInSpatialStructure.RelatedElements  #31\n"
    "  IfcRelVoidsElement.RelatingBuildingElement         #32\n\n"
    "Go on with\n"
    "  kpifc show model.ifc '#34'\n"
    "  kpifc get model.ifc '#30'\n"
    "  kpifc schema IfcWall\n";

const Case kCases[] = {
    {"ByInstanceName", "'#30'", kWall},
    {"ByGlobalId", "0000000000000000000030", kWall},
    {"ValuesOfSelects", "'#7'",
     "#7 IfcPropertyListValue \"L\"\n"
     "is an IfcSimpleProperty, IfcProperty\n\n"
     "Attributes\n"
     "  Name         \"L\"\n"
     "  Description  -\n"
     "  ListValues   [IfcInteger 7, IfcBoolean false, IfcComplexNumber [1, 0.5]]\n"
     "  Unit         -\n\n"
     "Inverse attributes\n"
     "  without any: PropertyForDependance, PropertyDependsOn, PartOfComplex\n\n"
     "Nothing refers to it\n\n"
     "Go on with\n"
     "  kpifc get model.ifc '#7'\n"
     "  kpifc schema IfcPropertyListValue\n"},
    {"Logicals", "'#9'",
     "#9 IfcPresentationLayerWithStyle \"a\"\n"
     "is an IfcPresentationLayerAssignment\n\n"
     "Attributes\n"
     "  Name           \"a\"\n"
     "  Description    -\n"
     "  AssignedItems  [#4 IfcCartesianPoint]\n"
     "  Identifier     -\n"
     "  LayerOn        true\n"
     "  LayerFrozen    false\n"
     "  LayerBlocked   unknown\n"
     "  LayerStyles    [#18 IfcCurveStyle \"thin\"]\n\n"
     "Nothing refers to it\n\n"
     "Go on with\n"
     "  kpifc get model.ifc '#9'\n"
     "  kpifc schema IfcPresentationLayerWithStyle\n"},
    {"WithoutWhatItDerives", "'#5'",
     "#5 IfcSIUnit\n"
     "is an IfcNamedUnit\n\n"
     "Attributes\n"
     "  UnitType  LENGTHUNIT\n"
     "  Prefix    MILLI\n"
     "  Name      METRE\n\n"
     "Referred to by\n"
     "  IfcPropertySingleValue.Unit  #6\n\n"
     "Go on with\n"
     "  kpifc show model.ifc '#6'\n"
     "  kpifc get model.ifc '#5'\n"
     "  kpifc schema IfcSIUnit\n"},
    {"LongAggregateShortened", "'#40' | grep Points",
     "  Points  [#16 IfcCartesianPoint, #4 IfcCartesianPoint, #4 IfcCartesianPoint, #4 IfcCartesianPoint, "
     "#4 IfcCartesianPoint, #4 IfcCartesianPoint, #4 IfcCartesianPoint, #4 IfcCartesianPoint, #4 IfcCartesianPoint, "
     "#4 IfcCartesianPoint, ... 12 in all]\n"},
    {"LongAggregateWhole", "'#40' --all | grep Points",
     "  Points  [#16 IfcCartesianPoint, #4 IfcCartesianPoint, #4 IfcCartesianPoint, #4 IfcCartesianPoint, "
     "#4 IfcCartesianPoint, #4 IfcCartesianPoint, #4 IfcCartesianPoint, #4 IfcCartesianPoint, #4 IfcCartesianPoint, "
     "#4 IfcCartesianPoint, #4 IfcCartesianPoint, #4 IfcCartesianPoint]\n"},
    {"ManyReferrersShortened", "'#4' | grep -A 3 'Referred to'",
     "Referred to by\n"
     "  IfcPolyline.Points                           #15, #40\n"
     "  IfcPresentationLayerWithStyle.AssignedItems  #9\n"
     "  IfcVertexPoint.VertexGeometry                "
     "#50, #51, #52, #53, #54, #55, #56, #57, #58, #59, ... 11 in all\n"},
    {"ManyReferrersWhole", "'#4' --all | grep Vertex",
     "  IfcVertexPoint.VertexGeometry                #50, #51, #52, #53, #54, #55, #56, #57, #58, #59, #60\n"},
    {"ForPrograms", "'#30' --json",
     "{\"id\":30,\"type\":\"IfcWall\",\"attributes\":{\"GlobalId\":\"0000000000000000000030\",\"OwnerHistory\":"
     "{\"ref\":11},\"Name\":\"Wall é\",\"Description\":null,\"ObjectType\":null,\"ObjectPlacement\":null,"
     "\"Representation\":null,\"Tag\":null},\"inverse\":{\"HasAssignments\":[],\"IsDecomposedBy\":[],\"Decomposes\":[],"
     "\"HasAssociations\":[],\"IsDefinedBy\":[],\"ReferencedBy\":[],\"HasStructuralMember\":[],\"FillsVoids\":[],"
     "\"ConnectedTo\":[{\"ref\":34}],\"HasCoverings\":[],\"HasProjections\":[],\"ReferencedInStructures\":[],"
     "\"HasPorts\":[],\"HasOpenings\":[{\"ref\":32}],\"IsConnectionRealization\":[],\"ProvidesBoundaries\":[],"
     "\"ConnectedFrom\":[{\"ref\":34}],\"ContainedInStructure\":[{\"ref\":31}]},\"supertypes\":[\"IfcBuildingElement\","
     "\"IfcElement\",\"IfcProduct\",\"IfcObject\",\"IfcObjectDefinition\",\"IfcRoot\"],\"referrers\":{"
     "\"IfcRelConnectsElements.RelatedElement\":[{\"ref\":34}],\"IfcRelConnectsElements.RelatingElement\":"
     "[{\"ref\":34}],\"IfcRelContainedInSpatialStructure.RelatedElements\":[{\"ref\":31}],"
     "\"IfcRelVoidsElement.RelatingBuildingElement\":[{\"ref\":32}]}}\n"},
    {"ForProgramsWithoutReferrers", "'#18' --json | sed 's/.*\"supertypes\"//'",
     ":[\"IfcPresentationStyle\"],\"referrers\":{\"IfcPresentationLayerWithStyle.LayerStyles\":[{\"ref\":9}],"
     "\"IfcPresentationStyleAssignment.Styles\":[{\"ref\":19}]}}\n"},
};

INSTANTIATE_TEST_SUITE_P(Instances, ShowTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return test.param.name; });

TEST(ShowKeptTest, RecordsThatAreKeptAsText) {
    const WorkFolder folder;
    folder.write("a model.ifc", stepFile("#1=IFCCARTESIANPOINT((0.,0.));\n"
                                         "#2=IFCNOSUCHTHING('a\x1b',\n  #1);\n"
                                         "#3=IFCPOLYLINE((#1,#2));"));
    const Outcome outcome = folder.run("kpifc show 'a model.ifc' '#2'");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "#2 (kept as text)\n"
                           "could not be understood; kpifc info tells why\n\n"
                           "  #2=IFCNOSUCHTHING('a\uFFFD',\n"
                           "    #1);\n\n"
                           "Referred to by\n"
                           "  IfcPolyline.Points  #3\n\n"
                           "Go on with\n"
                           "  kpifc show 'a model.ifc' '#3'\n"
                           "  kpifc info 'a model.ifc'\n");
    EXPECT_EQ(folder.run("kpifc show 'a model.ifc' '#2' --json").out,
              "{\"id\":2,\"keptText\":\"#2=IFCNOSUCHTHING('a\\u001b',\\n  #1);\","
              "\"referrers\":{\"IfcPolyline.Points\":[{\"ref\":3}]}}\n");
    EXPECT_NE(folder.run("kpifc show 'a model.ifc' '#3'").out.find("#2 (kept as text)]"), std::string::npos);
}

struct Refusal {
    const char* name;
    const char* asked;
    const char* said;
};

class ShowRefusalTest : public testing::TestWithParam<Refusal> {};

TEST_P(ShowRefusalTest, TellsWhatThereIs) {
    const WorkFolder folder;
    folder.write("model.ifc", furnishedModel());
    folder.write("empty.ifc", stepFile(""));
    expectRefusal(folder.run(std::string("kpifc show ") + GetParam().asked), GetParam().said);
}

const Refusal kRefusals[] = {
    {"Between", "model.ifc '#25'",
     "no instance #25; the nearest are #19 IfcPresentationStyleAssignment and #30 IfcWall"},
    {"BehindAll", "model.ifc '#99'", "no instance #99; the last one is #60 IfcVertexPoint"},
    {"BeforeAll", "model.ifc '#0'", "no instance #0; the first one is #1 IfcPerson"},
    {"EmptyFile", "empty.ifc '#1'", "no instance #1; the file has no instances"},
    {"NearGlobalId", "model.ifc '23EMZG5$r6fA3IIhCrx3ZR'", "did you mean 23emzg5$r6fA3IIhCrx3ZR?"},
    {"FarGlobalId", "model.ifc zzzzzzzzzzzzzzzzzzzzzz", "GlobalId zzzzzzzzzzzzzzzzzzzzzz; the file has 7 others"},
    {"NoName", "model.ifc wall", "\"wall\" is neither an instance name"},
};

INSTANTIATE_TEST_SUITE_P(Names, ShowRefusalTest, testing::ValuesIn(kRefusals),
                         [](const auto& test) { return test.param.name; });

} // namespace
