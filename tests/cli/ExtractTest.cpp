#include "Runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

/// Two walls in a storey of two, one of them with an opening and a door, and a bit of everything that belongs to them.
std::string building() {
    const auto rooted = [](const std::string& entity, int n, const std::string& rest) {
        return '#' + std::to_string(n) + "=" + entity + "('" + std::to_string(1'000'000 + n) + "aaaaaaaaaaaaaaa',#1," +
               rest + ");\n";
    };
    return stepFile(
        "#1=IFCOWNERHISTORY($,$,$,.ADDED.,$,$,$,0);\n"
        "#2=IFCGEOMETRICREPRESENTATIONCONTEXT($,$,3,$,#4,$);\n"
        "#3=IFCUNITASSIGNMENT(());\n"
        "#4=IFCAXIS2PLACEMENT3D(#5,$,$);\n"
        "#5=IFCCARTESIANPOINT((0.,0.,0.));\n" +
        rooted("IFCPROJECT", 10, "'p',$,$,$,$,(#2),#3") + rooted("IFCSITE", 11, "$,$,$,$,$,$,.ELEMENT.,$,$,$,$,$") +
        rooted("IFCBUILDING", 12, "$,$,$,$,$,$,.ELEMENT.,$,$,$") +
        rooted("IFCBUILDINGSTOREY", 13, "'a',$,$,$,$,$,.ELEMENT.,$") +
        rooted("IFCBUILDINGSTOREY", 14, "'b',$,$,$,$,$,.ELEMENT.,$") + rooted("IFCWALL", 15, "'w1',$,$,$,#30,$") +
        rooted("IFCWALL", 16, "'w2',$,$,$,$,$") + rooted("IFCOPENINGELEMENT", 17, "$,$,$,$,$,$") +
        rooted("IFCDOOR", 18, "$,$,$,$,$,$,$,$") + rooted("IFCSLAB", 19, "$,$,$,$,$,$,.FLOOR.") +
        rooted("IFCGROUP", 20, "$,$,$") + rooted("IFCWALLTYPE", 21, "$,$,$,(#22),$,$,$,.STANDARD.") +
        rooted("IFCPROPERTYSET", 22, "'of the type',$,(#23)") + "#23=IFCPROPERTYSINGLEVALUE('P',$,IFCLABEL('x'),$);\n" +
        rooted("IFCPROPERTYSET", 24, "'of walls and a slab',$,(#23)") + "#25=IFCMATERIAL('m');\n" +
        "#26=IFCMATERIALDEFINITIONREPRESENTATION($,$,(#27),#25);\n#27=IFCSTYLEDREPRESENTATION(#2,$,$,(#28));\n"
        "#28=IFCSTYLEDITEM($,(),$);\n"
        "#30=IFCPRODUCTDEFINITIONSHAPE($,$,(#31));\n#31=IFCSHAPEREPRESENTATION(#2,$,$,(#5,#33));\n"
        "#32=IFCSTYLEDITEM(#33,(),$);\n#33=IFCPOINTONCURVE($,1.);\n"
        "#34=IFCPRESENTATIONLAYERASSIGNMENT('l',$,(#31,#39),$);\n#39=IFCPOINTONCURVE($,2.);\n"
        "#40=IFCNOTHING(#16);\n" +
        rooted("IFCRELAGGREGATES", 50, "$,$,#10,(#11)") + rooted("IFCRELAGGREGATES", 51, "$,$,#11,(#12)") +
        rooted("IFCRELAGGREGATES", 52, "$,$,#12,(#13,#14)") +
        rooted("IFCRELCONTAINEDINSPATIALSTRUCTURE", 53, "$,$,(#15,#16,#18,#40),#13") +
        rooted("IFCRELCONTAINEDINSPATIALSTRUCTURE", 54, "$,$,(#19),#14") +
        rooted("IFCRELVOIDSELEMENT", 55, "$,$,#15,#17") + rooted("IFCRELFILLSELEMENT", 56, "$,$,#17,#18") +
        rooted("IFCRELDEFINESBYTYPE", 57, "$,$,(#15,#16),#21") +
        rooted("IFCRELDEFINESBYPROPERTIES", 58, "$,$,(#13,#15,#16,#19),#24") +
        rooted("IFCRELASSOCIATESMATERIAL", 59, "$,$,(#21),#25") +
        rooted("IFCRELASSIGNSTOGROUP", 60, "$,$,(#15,#19),$,#20") +
        rooted("IFCRELCONNECTSELEMENTS", 61, "$,$,$,#15,#16") +
        rooted("IFCRELDEFINESBYPROPERTIES", 62, "$,$,(#13),#22"));
}

struct Case {
    const char* name;
    const char* asked;
    std::vector<int> expected;            ///< besides the project and what it needs
    std::map<int, const char*> relations; ///< the members of those that are reduced
};

class ExtractTest : public testing::TestWithParam<Case> {};

TEST_P(ExtractTest, TakesWhatBelongsToTheChoice) {
    const WorkFolder folder;
    folder.write("model.ifc", building());
    const Case& test = GetParam();
    const Outcome outcome = folder.run(std::string("kpifc extract model.ifc -o part.ifc ") + test.asked);
    EXPECT_EQ(outcome.exitCode, 1) << outcome.err; // the file has an entity that is none
    std::vector<int> names;
    std::vector<int> expected = {1, 2, 3, 4, 5, 10};
    for (const std::string& line : linesOf(contentOf(folder.path("part.ifc")))) {
        if (!line.starts_with('#')) continue;
        names.push_back(std::stoi(line.substr(1)));
        if (const auto found = test.relations.find(names.back()); found != test.relations.end()) {
            EXPECT_NE(line.find(found->second), std::string::npos) << line;
        }
    }
    expected.insert(expected.end(), test.expected.begin(), test.expected.end());
    EXPECT_EQ(names, expected);
}

const Case kCases[] = {
    {"AWallWithItsPartsInItsPlace",
     "1000015aaaaaaaaaaaaaaa",
     {11, 12, 13, 15, 17, 18, 21, 22, 23, 24, 25, 26, 27, 28, 30, 31, 32, 33, 34, 50, 51, 52, 53, 55, 56, 57, 58, 59},
     {{34, ",(#31),"}, {52, "#12,(#13)"}, {53, "(#15,#18),#13"}, {57, "(#15),#21"}, {58, "(#13,#15),#24"}}},
    {"ADoorWithoutItsWall", "'#18'", {11, 12, 13, 18, 50, 51, 52, 53}, {{53, "(#18),#13"}}},
    {"AnOpeningInItsWall",
     "'#17'",
     {11, 12, 13, 15, 17, 18, 30, 31, 32, 33, 34, 50, 51, 52, 53, 55, 56},
     {{53, "(#15,#18),#13"}}},
    {"AStoreyWithItsContents",
     "'#14'",
     {11, 12, 14, 19, 23, 24, 50, 51, 52, 54, 58},
     {{52, "#12,(#14)"}, {58, "(#19),#24"}}},
    {"AGroupWithMembersThatAreThere",
     "IfcSlab ifcgroup",
     {11, 12, 14, 19, 20, 23, 24, 50, 51, 52, 54, 58, 60},
     {{60, "(#19),$,#20"}}},
    {"AGroupAlone", "'#20'", {20}, {}},
    {"AType", "IfcTypeObject", {21, 22, 23, 25, 26, 27, 28, 59}, {}},
    {"APoint", "'#5'", {}, {}},
    {"ARelationWithItsMembers", "'#54'", {14, 19, 54}, {}},
    {"ARecordKeptAsText", "'#40'", {11, 12, 13, 16, 40, 50, 51, 52, 53}, {{53, "(#16,#40),#13"}}},
    {"OfSeveralTypesThoseThatAreThere", "IfcWindow '#20'", {20}, {}},
};

INSTANTIATE_TEST_SUITE_P(Choices, ExtractTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return test.param.name; });

TEST(ExtractFilesTest, KeepHeaderAndOrder) {
    const WorkFolder folder;
    folder.write("model.ifc", "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
                              "FILE_NAME('house','2020-02-02T02:02:02',('me'),('us'),'tool','other','');\n"
                              "FILE_SCHEMA(('IFC2X3'));\nENDSEC;\nDATA;\n#9=IFCCARTESIANPOINT((0.,1.));\n"
                              "#3=IFCVERTEXPOINT(#9);\n#5=IFCCARTESIANPOINT((0.,1.));\nENDSEC;\nEND-ISO-10303-21;\n");
    const Outcome outcome = folder.run("kpifc extract model.ifc '#3' -o part.ifc");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err, "model.ifc -> part.ifc: 2 instances, 1 chosen, of 3\n");
    std::string expected = contentOf(folder.path("model.ifc"));
    const std::string left = "#5=IFCCARTESIANPOINT((0.,1.));\n";
    expected.erase(expected.find(left), left.size());
    EXPECT_EQ(contentOf(folder.path("part.ifc")), expected);
}

struct Refusal {
    const char* name;
    const char* asked;
    const char* said;
};

class ExtractRefusalTest : public testing::TestWithParam<Refusal> {};

TEST_P(ExtractRefusalTest, TellsWhyAndWritesNothing) {
    const WorkFolder folder;
    folder.write("model.ifc", building());
    const Outcome outcome = folder.run(std::string("kpifc extract model.ifc -o part.ifc ") + GetParam().asked);
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.err.find(GetParam().said), std::string::npos) << outcome.err;
    EXPECT_FALSE(std::filesystem::exists(folder.path("part.ifc")));
}

const Refusal kRefusals[] = {
    {"NoInstance", "IfcWall '#99'", "no instance #99"},
    {"NoSuchGlobalId", "0000015aaaaaaaaaaaaaaa", "no instance has the GlobalId"},
    {"NoneOfTheTypes", "IfcWindow IfcStair", "there is no instance of IfcWindow, IfcStair"},
    {"NoEntity", "IfcWal", "\"IfcWal\" is neither #15, a GlobalId nor an entity of IFC2X3; did you mean IfcWall"},
};

INSTANTIATE_TEST_SUITE_P(Names, ExtractRefusalTest, testing::ValuesIn(kRefusals),
                         [](const auto& test) { return test.param.name; });

} // namespace
