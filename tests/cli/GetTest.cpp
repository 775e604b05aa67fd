#include "SmallModel.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Case {
    const char* name;
    const char* asked;
    const char* inFiles; ///< lines in the notation of files
    const char* asJson;
};

class GetTest : public testing::TestWithParam<Case> {};

TEST_P(GetTest, PrintsValues) {
    const WorkFolder folder;
    folder.write("model.ifc", smallModel());
    const Case& test = GetParam();
    const Outcome outcome = folder.run(std::string("kpifc get model.ifc ") + test.asked);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, test.inFiles);
    EXPECT_EQ(folder.run(std::string("kpifc get --json model.ifc ") + test.asked).out, test.asJson);
}

const Case kCases[] = {
    {"Text", "'#1.FamilyName'", "'Doe'\n", "\"Doe\"\n"},
    {"AnyLetterCaseAndBlanks", "' #1 . FAMILYname '", "'Doe'\n", "\"Doe\"\n"},
    {"EncodedText", "'#2.Name'", "'Works \\X2\\00E9\\X0\\ ''s'\n", "\"Works \u00e9 's\"\n"},
    {"UnsetText", "'#1.GivenName'", "$\n", "null\n"},
    {"GlobalId", "'#10.GlobalId'", "'23emzg5$r6fA3IIhCrx3ZR'\n", "\"23emzg5$r6fA3IIhCrx3ZR\"\n"},
    {"ByGlobalId", "'23emzg5$r6fA3IIhCrx3ZR.Name'", "'Site'\n", "\"Site\"\n"},
    {"Real", "'#10.RefElevation'", "440.\n", "440.0\n"},
    {"Integer", "'#8.LengthExponent'", "1\n", "1\n"},
    {"Boolean", "'#17.Sizeable'", ".F.\n", "false\n"},
    {"Logicals", "'#9.LayerOn' '#9.LayerBlocked'", ".T.\n.U.\n", "true\n\"UNKNOWN\"\n"},
    {"Enumeration", "'#5.Prefix'", ".MILLI.\n", "\"MILLI\"\n"},
    {"Reference", "'#6.Unit'", "#5\n", "{\"ref\":5}\n"},
    {"TypedValue", "'#6.NominalValue'", "IFCLABEL('x')\n", "{\"type\":\"IfcLabel\",\"value\":\"x\"}\n"},
    {"Reals", "'#16.Coordinates'", "(1.,2.,3.E-07)\n", "[1.0,2.0,3e-07]\n"},
    {"Texts", "'#1.MiddleNames'", "('A','B')\n", "[\"A\",\"B\"]\n"},
    {"Binaries", "'#14.Pixel'", "(\"0FF\",\"000000001\")\n", "[\"0FF\",\"000000001\"]\n"},
    {"References", "'#15.Points'", "(#4,#16)\n", "[{\"ref\":4},{\"ref\":16}]\n"},
    {"TypedValues", "'#7.ListValues'", "(IFCINTEGER(7),IFCBOOLEAN(.F.),IFCCOMPLEXNUMBER((1.,0.5)))\n",
     "[{\"type\":\"IfcInteger\",\"value\":7},{\"type\":\"IfcBoolean\",\"value\":false},"
     "{\"type\":\"IfcComplexNumber\",\"value\":[1.0,0.5]}]\n"},
    {"UnsetAggregate", "'#1.Addresses'", "$\n", "[]\n"},
    {"AggregatesOfADefinedType", "'#10.RefLatitude' '#10.RefLongitude'", "(47,30,15,250000)\n$\n",
     "[47,30,15,250000]\nnull\n"},
    {"InstanceWithoutWhatItDerives", "'#5'", "UnitType = .LENGTHUNIT.\nPrefix = .MILLI.\nName = .METRE.\n",
     "{\"id\":5,\"type\":\"IfcSIUnit\",\"attributes\":{\"UnitType\":\"LENGTHUNIT\",\"Prefix\":\"MILLI\","
     "\"Name\":\"METRE\"}}\n"},
    {"InstanceByGlobalIdAmongOthers", "'#3.Role' '0xGO74I1L2sOBnKbLTH2I2' '#4.Coordinates'",
     ".ARCHITECT.\nGlobalId = '0xGO74I1L2sOBnKbLTH2I2'\nOwnerHistory = #11\nName = $\nDescription = $\n"
     "ApplicableOccurrence = $\nHasPropertySets = $\nRepresentationMaps = $\nTag = $\n"
     "OperationType = .NOTDEFINED.\nConstructionType = .NOTDEFINED.\nParameterTakesPrecedence = .T.\n"
     "Sizeable = .F.\n(0.,1.5)\n",
     "\"ARCHITECT\"\n{\"id\":17,\"type\":\"IfcDoorStyle\",\"attributes\":{\"GlobalId\":\"0xGO74I1L2sOBnKbLTH2I2\","
     "\"OwnerHistory\":{\"ref\":11},\"Name\":null,\"Description\":null,\"ApplicableOccurrence\":null,"
     "\"HasPropertySets\":[],\"RepresentationMaps\":[],\"Tag\":null,\"OperationType\":\"NOTDEFINED\","
     "\"ConstructionType\":\"NOTDEFINED\",\"ParameterTakesPrecedence\":true,\"Sizeable\":false}}\n[0.0,1.5]\n"},
};

INSTANTIATE_TEST_SUITE_P(Values, GetTest, testing::ValuesIn(kCases), [](const auto& test) { return test.param.name; });

struct Refusal {
    const char* name;
    const char* asked;
    const char* said;
};

class GetRefusalTest : public testing::TestWithParam<Refusal> {};

TEST_P(GetRefusalTest, TellsWhy) {
    const WorkFolder folder;
    folder.write("model.ifc", smallModel());
    expectRefusal(folder.run(std::string("kpifc get model.ifc '#1.Id' ") + GetParam().asked), GetParam().said);
}

const Refusal kRefusals[] = {
    {"NoInstance", "'#99.Name'", "no instance #99"},
    {"NoInstanceName", "'#1x.Name'", "\"#1x\" is no instance name"},
    {"NoName", "'wall.Name'", "\"wall\" is neither an instance name, such as #15, nor a GlobalId"},
    {"NoSuchGlobalId", "'13emzg5$r6fA3IIhCrx3ZR.Name'", "no instance has the GlobalId 13emzg5$r6fA3IIhCrx3ZR"},
    {"NearName", "'#1.FamilyNam'", "an IfcPerson, which has no attribute \"FamilyNam\"; did you mean FamilyName?"},
    {"NoAttribute", "'#1.'", "no attribute \"\""},
    {"RedeclaredAsDerived", "'#5.Dimensions'", "#5.Dimensions of IfcSIUnit is derived"},
    {"Derived", "'#4.Dim'", "#4.Dim of IfcCartesianPoint is derived"},
};

INSTANTIATE_TEST_SUITE_P(Names, GetRefusalTest, testing::ValuesIn(kRefusals),
                         [](const auto& test) { return test.param.name; });

TEST(GetProblemsTest, ToldAndInTheExitCode) {
    const WorkFolder folder;
    folder.write("model.ifc", stepFile("#1=IFCMATERIAL('a\\X\\00\\X\\0Ab');#2=IFCNOSUCHTHING();"
                                       "#3=IFCSIUNIT(*,.NOSUCHUNIT.,$,.METRE.);#4=IFCVERTEXPOINT(#9);"));
    const Outcome outcome = folder.run("kpifc get model.ifc '#1.Name' '#3' '#4'");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "'a\\X2\\0000000A\\X0\\b'\nUnitType = $\nPrefix = $\nName = .METRE.\nVertexGeometry = $\n");
    EXPECT_NE(outcome.err.find("kpifc info lists them"), std::string::npos) << outcome.err;
    expectRefusal(folder.run("kpifc get model.ifc '#2'"), "#2 could not be understood");
}

TEST(GetProblemsTest, MissingFilesAreNoNames) {
    const WorkFolder folder;
    folder.write("model.ifc", smallModel());
    for (const char* missing : {"missing.ifc", "MISSING.IFC", "folder/missing"}) {
        const Outcome outcome = folder.run(std::string("kpifc get model.ifc ") + missing + " '#1.Id'");
        EXPECT_NE(outcome.exitCode, 0) << missing;
        EXPECT_NE(outcome.err.find(missing), std::string::npos) << outcome.err;
        EXPECT_EQ(outcome.err.find("instance name"), std::string::npos) << outcome.err;
    }
}

TEST(GetProblemsTest, GlobalIdsThatComeTwiceNameNothing) {
    const WorkFolder folder;
    const std::string group = "=IFCGROUP('23emzg5$r6fA3IIhCrx3ZR',$,$,$,$);";
    folder.write("model.ifc", stepFile("#1" + group + "#7" + group));
    expectRefusal(folder.run("kpifc get model.ifc '23emzg5$r6fA3IIhCrx3ZR.Name'"), "several instances: #1, #7");
}

} // namespace
