#include "Runner.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

using Json = nlohmann::ordered_json;

namespace {

std::string globalId(int number) {
    const std::string digits = std::to_string(number);
    return "'" + std::string(22 - digits.size(), '0') + digits + "'";
}

/// A rooted instance: `rest` are the fields behind its name.
std::string rooted(int number, const std::string& entity, const std::string& name, const std::string& rest) {
    return '#' + std::to_string(number) + '=' + entity + '(' + globalId(number) + ",#1," + name + ",$" + rest + ");\n";
}

std::string project(int number, const std::string& name) {
    return rooted(number, "IFCPROJECT", name, ",$,$,$,$,$");
}
std::string site(int number, const std::string& name) {
    return rooted(number, "IFCSITE", name, ",$,$,$,$,.ELEMENT.,$,$,$,$,$");
}
std::string building(int number, const std::string& name) {
    return rooted(number, "IFCBUILDING", name, ",$,$,$,$,.ELEMENT.,$,$,$");
}
std::string storey(int number, const std::string& name, const std::string& elevation = "$") {
    return rooted(number, "IFCBUILDINGSTOREY", name, ",$,$,$,$,.ELEMENT.," + elevation);
}
std::string space(int number, const std::string& name, const std::string& longName) {
    return rooted(number, "IFCSPACE", name, ",$,$,$," + longName + ",.ELEMENT.,.INTERNAL.,$");
}
/// IFCWALL, IFCPLATE, ...: whatever adds no attributes to those of elements.
std::string element(int number, const std::string& entity, const std::string& name = "$") {
    return rooted(number, entity, name, ",$,$,$,$");
}
std::string parts(int number, int whole, const std::string& list, const std::string& relation = "IFCRELAGGREGATES") {
    return rooted(number, relation, "$", ",#" + std::to_string(whole) + ",(" + list + ")");
}
std::string contained(int number, int spatial, const std::string& list) {
    return rooted(number, "IFCRELCONTAINEDINSPATIALSTRUCTURE", "$", ",(" + list + "),#" + std::to_string(spatial));
}

/// A file with an owner history, which every rooted instance refers to.
std::string model(const std::string& records) {
    return stepFile("#1=IFCOWNERHISTORY(#2,#3,$,.ADDED.,$,$,$,0);#2=IFCPERSONANDORGANIZATION(#4,#5,$);"
                    "#3=IFCAPPLICATION(#5,'1','Tool','T');#4=IFCPERSON('1',$,$,$,$,$,$,$);"
                    "#5=IFCORGANIZATION($,'O',$,$,$);\n" +
                    records);
}

struct Case {
    const char* name;
    std::string records;
    const char* options;
    const char* text;
};

class TreeTest : public testing::TestWithParam<Case> {};

TEST_P(TreeTest, IsPrinted) {
    const WorkFolder folder;
    folder.write("model.ifc", model(GetParam().records));
    const Outcome outcome = folder.run(std::string("kpifc tree model.ifc ") + GetParam().options);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, GetParam().text);
    EXPECT_TRUE(Json::accept(folder.run(std::string("kpifc tree --json model.ifc ") + GetParam().options).out));
}

/// Relations do not come in the order of their names; a curtain wall has parts.
const std::string kHouse = project(10, "'P'") + site(11, "'S'") + building(12, "'B'") + storey(13, "'Ground'", "-0.5") +
                           storey(14, "'Upper'", "3.") + space(15, "'101'", "'K\\X2\\00FC\\X0\\che'") +
                           space(16, "'102'", "'102'") + space(17, "$", "$") + element(21, "IFCWALL", "'w1'") +
                           element(22, "IFCPLATE", "'p1'") + element(23, "IFCWALL", "'w2'") +
                           element(24, "IFCCURTAINWALL", "'c1'") + element(25, "IFCPLATE") +
                           element(26, "IFCMEMBER", "'m'") + element(27, "IFCCURTAINWALL") + element(28, "IFCPLATE") +
                           element(29, "IFCOPENINGELEMENT") + element(31, "IFCFURNISHINGELEMENT") +
                           element(30, "IFCFURNISHINGELEMENT", "'chair'") + parts(95, 12, "#14") +
                           parts(90, 12, "#13") + parts(91, 13, "#15,#16,#17") + parts(92, 11, "#12") +
                           parts(93, 10, "#11") + contained(97, 13, "#23,#24,#27") + contained(96, 13, "#21,#22") +
                           parts(94, 24, "#26,#25") + parts(98, 27, "#28", "IFCRELNESTS") + contained(99, 15, "#30");

/// Walls, each part of the one before; the first one of the project.
std::string chain(int length) {
    std::string records = project(10, "'P'") + parts(9, 10, "#11");
    for (int i = 11; i < 11 + length; ++i) {
        records += element(i, "IFCWALL");
        if (i > 11) {
            records += parts(1'000'000 + i, i - 1, '#' + std::to_string(i));
        }
    }
    return records;
}

const Case kCases[] = {
    {"Grouped", kHouse, "",
     "IfcProject \"P\" #10\n"
     "  IfcSite \"S\" #11\n"
     "    IfcBuilding \"B\" #12\n"
     "      IfcBuildingStorey \"Upper\" #14, elevation 3\n"
     "      IfcBuildingStorey \"Ground\" #13, elevation -0.5\n"
     "        IfcSpace \"101\", \"Küche\" #15\n"
     "          IfcFurnishingElement 1\n"
     "        IfcSpace \"102\" #16\n"
     "        IfcSpace #17\n"
     "        IfcCurtainWall 2\n"
     "          IfcMember 1\n"
     "          IfcPlate 2\n"
     "        IfcPlate 1\n"
     "        IfcWall 2\n\n"
     "Contained in nothing and part of nothing: 1 element\n"
     "  IfcFurnishingElement 1\n"},
    {"Listed", kHouse, "--elements",
     "IfcProject \"P\" #10\n"
     "  IfcSite \"S\" #11\n"
     "    IfcBuilding \"B\" #12\n"
     "      IfcBuildingStorey \"Upper\" #14, elevation 3\n"
     "      IfcBuildingStorey \"Ground\" #13, elevation -0.5\n"
     "        IfcSpace \"101\", \"Küche\" #15\n"
     "          IfcFurnishingElement \"chair\" #30\n"
     "        IfcSpace \"102\" #16\n"
     "        IfcSpace #17\n"
     "        IfcWall \"w2\" #23\n"
     "        IfcCurtainWall \"c1\" #24\n"
     "          IfcPlate #25\n"
     "          IfcMember \"m\" #26\n"
     "        IfcCurtainWall #27\n"
     "          IfcPlate #28\n"
     "        IfcWall \"w1\" #21\n"
     "        IfcPlate \"p1\" #22\n\n"
     "Contained in nothing and part of nothing: 1 element\n"
     "  IfcFurnishingElement 1\n"},
    {"DownToADepth", kHouse, "--depth 4",
     "IfcProject \"P\" #10\n"
     "  IfcSite \"S\" #11\n"
     "    IfcBuilding \"B\" #12\n"
     "      IfcBuildingStorey \"Upper\" #14, elevation 3\n"
     "      IfcBuildingStorey \"Ground\" #13, elevation -0.5\n"
     "        IfcSpace \"101\", \"Küche\" #15 (1 below)\n"
     "        IfcSpace \"102\" #16\n"
     "        IfcSpace #17\n"
     "        IfcCurtainWall 2 (3 below)\n"
     "        IfcPlate 1\n"
     "        IfcWall 2\n\n"
     "Contained in nothing and part of nothing: 1 element\n"
     "  IfcFurnishingElement 1\n"},
    {"RootsOnly", kHouse, "--depth 0",
     "IfcProject \"P\" #10 (16 below)\n\n"
     "Contained in nothing and part of nothing: 1 element\n"
     "  IfcFurnishingElement 1\n"},
    {"NothingAtAll", "", "", "There is no project.\n"},
    {"SeveralProjectsAndOneWithin", project(10, "'A'") + project(11, "'B'") + project(12, "'C'") + parts(20, 10, "#12"),
     "",
     "IfcProject \"A\" #10\n"
     "  IfcProject \"C\" #12\n"
     "IfcProject \"B\" #11\n"},
    {"OutsideOfTheProject",
     project(10, "'P'") + site(11, "'S'") + storey(12, "'lost'") + storey(13, "'empty'") + element(20, "IFCWALL") +
         element(21, "IFCCURTAINWALL") + element(22, "IFCPLATE") + element(23, "IFCPLATE") + element(24, "IFCWALL") +
         parts(30, 10, "#11") + contained(31, 12, "#20") + parts(32, 21, "#22"),
     "",
     "IfcProject \"P\" #10\n"
     "  IfcSite \"S\" #11\n\n"
     "Part of no project:\n"
     "  IfcBuildingStorey \"lost\" #12\n"
     "    IfcWall 1\n"
     "  IfcBuildingStorey \"empty\" #13\n"
     "  IfcCurtainWall 1\n"
     "    IfcPlate 1\n\n"
     "Contained in nothing and part of nothing: 2 elements\n"
     "  IfcPlate 1\n"
     "  IfcWall 1\n"},
    {"SharedParts",
     project(10, "'P'") + storey(11, "'A'") + storey(12, "'B'") + space(13, "'x'", "$") + element(20, "IFCWALL") +
         element(21, "IFCWALL") + element(22, "IFCPLATE") + parts(30, 10, "#11,#12") + parts(31, 11, "#13") +
         parts(32, 12, "#13") + contained(33, 11, "#20") + contained(34, 12, "#20,#21") + parts(35, 20, "#22"),
     "",
     "IfcProject \"P\" #10\n"
     "  IfcBuildingStorey \"A\" #11\n"
     "    IfcSpace \"x\" #13\n"
     "    IfcWall 1\n"
     "      IfcPlate 1\n"
     "  IfcBuildingStorey \"B\" #12\n"
     "    IfcSpace \"x\" #13 (shown above)\n"
     "    IfcWall 1\n"
     "    IfcWall 1 (shown above)\n"},
    {"SharedPartsListed",
     project(10, "'P'") + storey(11, "'A'") + element(20, "IFCWALL") + parts(30, 10, "#11") + contained(33, 11, "#20") +
         contained(34, 11, "#20"),
     "--elements",
     "IfcProject \"P\" #10\n"
     "  IfcBuildingStorey \"A\" #11\n"
     "    IfcWall #20\n"
     "    IfcWall #20 (shown above)\n"},
    {"CycleBelowTheProject",
     project(10, "'P'") + site(11, "'A'") + site(12, "'B'") + parts(20, 10, "#11") + parts(21, 11, "#12") +
         parts(22, 12, "#11") + parts(23, 12, "#10"),
     "",
     "IfcProject \"P\" #10\n"
     "  IfcSite \"A\" #11\n"
     "    IfcSite \"B\" #12\n"
     "      IfcSite \"A\" #11 (shown above)\n"
     "      IfcProject \"P\" #10 (shown above)\n"},
    {"CycleThatNoProjectReaches", // #11 comes first, but hangs below the cycle of #12 and #13
     project(10, "'P'") + site(11, "'below'") + site(12, "'A'") + site(13, "'B'") + site(14, "'own part'") +
         parts(20, 12, "#13") + parts(21, 13, "#12,#11") + parts(22, 14, "#14"),
     "",
     "IfcProject \"P\" #10\n\n"
     "Part of no project:\n"
     "  IfcSite \"B\" #13\n"
     "    IfcSite \"below\" #11\n"
     "    IfcSite \"A\" #12\n"
     "      IfcSite \"B\" #13 (shown above)\n"
     "  IfcSite \"own part\" #14\n"
     "    IfcSite \"own part\" #14 (shown above)\n"},
    {"WhatIsNoProduct",
     rooted(10, "IFCTASK", "'dig'", ",$,'T',$,$,.F.,$") + rooted(11, "IFCTASK", "'by hand'", ",$,'U',$,$,.F.,$") +
         parts(20, 10, "#11", "IFCRELNESTS"),
     "",
     "There is no project.\n\n"
     "Part of no project:\n"
     "  IfcTask \"dig\" #10\n"
     "    IfcTask \"by hand\" #11\n"},
    {"SpatialElementsThatAreContained", // against the rules of the schema, but files have them
     project(10, "'P'") + storey(11, "'A'") + space(12, "'x'", "$") + element(20, "IFCWALL") + parts(30, 10, "#11") +
         contained(31, 11, "#20,#12"),
     "",
     "IfcProject \"P\" #10\n"
     "  IfcBuildingStorey \"A\" #11\n"
     "    IfcSpace \"x\" #12\n"
     "    IfcWall 1\n"},
    {"ControlCharactersInNames", project(10, "'a\\X\\1Bb\\X\\0Ac'"), "", "IfcProject \"a\uFFFDb\uFFFDc\" #10\n"},
};

INSTANTIATE_TEST_SUITE_P(Models, TreeTest, testing::ValuesIn(kCases), [](const auto& test) { return test.param.name; });

TEST(TreeJsonTest, HasWhatTheTextHas) {
    const WorkFolder folder;
    folder.write("model.ifc", model(project(10, "'P'") + storey(11, "'A'", "3.") + space(12, "$", "'K\\X\\FCche'") +
                                    element(20, "IFCCURTAINWALL", "'s'") + element(21, "IFCPLATE", "'p'") +
                                    element(22, "IFCWALL") + parts(30, 10, "#11") + parts(31, 11, "#12") +
                                    contained(32, 11, "#20") + contained(33, 12, "#20") + parts(34, 20, "#21")));
    const auto instance = [](int number, const char* type, const char* texts) {
        return "{\"id\":" + std::to_string(number) + ",\"type\":\"" + type + "\"," + texts + ",\"globalId\":\"" +
               globalId(number).substr(1, 22) + '"';
    };
    const std::string p = instance(10, "IfcProject", "\"name\":\"P\"");
    const std::string a = instance(11, "IfcBuildingStorey", "\"name\":\"A\"") + ",\"elevation\":3.0";
    const std::string k = instance(12, "IfcSpace", "\"name\":null,\"longName\":\"Küche\"");
    const std::string uncontained = "],\"others\":[],\"uncontained\":[{\"type\":\"IfcWall\",\"count\":1}]}\n";
    EXPECT_EQ(folder.run("kpifc tree --json model.ifc").exitCode, 0);
    EXPECT_EQ(folder.run("kpifc tree --json model.ifc").out,
              "{\"projects\":[" + p + ",\"children\":[" + a + ",\"children\":[" + k +
                  ",\"children\":[],\"elements\":[{\"type\":\"IfcCurtainWall\",\"count\":1,\"children\":["
                  "{\"type\":\"IfcPlate\",\"count\":1}],\"elements\":[]}]}],\"elements\":[{\"type\":\"IfcCurtainWall\","
                  "\"count\":1,\"shownAbove\":true}]}],\"elements\":[]}" +
                  uncontained);
    const std::string s = instance(20, "IfcCurtainWall", "\"name\":\"s\"");
    EXPECT_EQ(folder.run("kpifc tree --json --elements model.ifc").out,
              "{\"projects\":[" + p + ",\"children\":[" + a + ",\"children\":[" + k +
                  ",\"children\":[],\"elements\":[" + s + ",\"children\":[" +
                  instance(21, "IfcPlate", "\"name\":\"p\"") +
                  ",\"children\":[],\"elements\":[]}],\"elements\":[]}]}]," + "\"elements\":[" + s +
                  ",\"shownAbove\":true}]}],\"elements\":[]}" + uncontained);
    EXPECT_EQ(folder.run("kpifc tree --json --depth 1 model.ifc").out,
              "{\"projects\":[" + p + ",\"children\":[" + a + ",\"below\":4}],\"elements\":[]}" + uncontained);
}

TEST(TreeOutputTest, RelationsThatHoldWhatIsKeptAsText) {
    const WorkFolder folder;
    folder.write("model.ifc", model(project(10, "'P'") + site(11, "'S'") + "#12=IFCNOSUCHTHING();\n" +
                                    parts(20, 10, "#12,#11,#99") + parts(21, 12, "#10")));
    const Outcome outcome = folder.run("kpifc tree model.ifc");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "IfcProject \"P\" #10\n  IfcSite \"S\" #11\n");
    EXPECT_NE(outcome.err.find("kpifc info lists them"), std::string::npos) << outcome.err;
}

TEST(TreeOutputTest, DeepLevelsAreToldByTheirNumber) {
    const WorkFolder folder;
    folder.write("model.ifc", model(chain(40)));
    const std::string out = folder.run("kpifc tree --elements model.ifc").out;
    const std::string indent(64, ' ');
    EXPECT_NE(out.find('\n' + indent + "IfcWall #42\n" + indent + "(level 33) IfcWall #43\n"), std::string::npos)
        << out;
    EXPECT_TRUE(out.ends_with(indent + "(level 40) IfcWall #50\n")) << out;
}

/// Neither the stack nor the output outgrows what there is to say.
TEST(TreeOutputTest, ChainsMayBeVeryLong) {
    const WorkFolder folder;
    constexpr int length = 100'000;
    folder.write("model.ifc", model(chain(length)));
    for (const std::string options : {"", "--elements", "--json", "--json --elements"}) {
        const Outcome outcome = folder.run("ulimit -s 512; kpifc tree model.ifc " + options);
        EXPECT_EQ(outcome.exitCode, 0) << options << outcome.err;
        EXPECT_LT(outcome.out.size(), length * std::size_t{200}) << options;
        std::size_t walls = 0;
        for (std::size_t at = 0; (at = outcome.out.find("IfcWall", at)) != std::string::npos; ++at) {
            ++walls;
        }
        EXPECT_EQ(walls, std::size_t{length}) << options;
        if (options.starts_with("--json")) {
            EXPECT_TRUE(Json::accept(outcome.out)) << options;
        }
    }
}

} // namespace
