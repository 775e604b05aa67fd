#include "Runner.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace {

/// A wall #1 with own and inherited values, a wall #2 with inherited ones only, their type #6, a slab #9 without.
std::string model() {
    return stepFile("#1=IFCWALL('0000000000000000000001',$,'T\\X2\\00FC\\X0\\r',$,$,$,$,$);"
                    "#2=IFCWALLSTANDARDCASE('0000000000000000000002',$,'a,\"b\"',$,$,$,$,$);"
                    "#3=IFCRELDEFINESBYPROPERTIES('0000000000000000000003',$,$,$,(#1),#4);"
                    "#4=IFCPROPERTYSET('0000000000000000000004',$,'Set',$,(#11,#12,#13,#14,#15,#16));"
                    "#6=IFCWALLTYPE('0000000000000000000006',$,'Type',$,$,(#8),$,$,$,.STANDARD.);"
                    "#7=IFCRELDEFINESBYTYPE('0000000000000000000007',$,$,$,(#1,#2),#6);"
                    "#8=IFCPROPERTYSET('0000000000000000000008',$,'Made',$,(#17));"
                    "#9=IFCSLAB('0000000000000000000009',$,$,$,$,$,$,$,.FLOOR.);"
                    "#11=IFCPROPERTYSINGLEVALUE('Length',$,IFCLENGTHMEASURE(2.50),$);"
                    "#12=IFCPROPERTYSINGLEVALUE('External',$,IFCBOOLEAN(.T.),$);"
                    "#13=IFCPROPERTYBOUNDEDVALUE('Range',$,IFCINTEGER(5),$,$);"
                    "#14=IFCPROPERTYTABLEVALUE('Curve',$,(IFCREAL(0.),IFCREAL(1.)),(IFCREAL(3.),IFCREAL(4.)),$,$,$);"
                    "#15=IFCPROPERTYREFERENCEVALUE('Of',$,$,#19);"
                    "#16=IFCPROPERTYSINGLEVALUE('Unknown',$,$,$);"
                    "#17=IFCPROPERTYLISTVALUE('Of',$,(IFCLABEL('x, y'),IFCLABEL('z')),$);"
                    "#19=IFCMATERIAL('oak');"
                    "#20=IFCPROJECT('0000000000000000000020',$,$,$,$,$,$,(),#21);"
                    "#21=IFCUNITASSIGNMENT((#22));"
                    "#22=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);");
}

class PropsTest : public testing::Test {
protected:
    PropsTest() { m_folder.write("model.ifc", model()); }

    Outcome run(const std::string& arguments) const { return m_folder.run("kpifc props model.ifc " + arguments); }
    std::string printed(const std::string& arguments) const {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        return outcome.out;
    }

    WorkFolder m_folder;
};

constexpr const char* kTable = "#1 IfcWall 0000000000000000000001 'Tür'\n"
                               "  Set\n"
                               "    Length    2.5         mm  IfcLengthMeasure\n"
                               "    External  true            IfcBoolean\n"
                               "    Range      .. 5           IfcInteger\n"
                               "    Curve     0: 3; 1: 4      IfcReal\n"
                               "    Of        #19\n"
                               "    Unknown\n"
                               "  Made\n"
                               "    Of        x, y; z         IfcLabel          from type\n";
constexpr const char* kTypesTable = "#6 IfcWallType 0000000000000000000006 'Type'\n"
                                    "  Made\n"
                                    "    Of  x, y; z  IfcLabel\n";

TEST_F(PropsTest, ATableForEachObject) {
    EXPECT_EQ(printed("'#1'"), kTable);
    EXPECT_EQ(printed("0000000000000000000001"), kTable);
    EXPECT_EQ(printed("ifcWALLtype"), kTypesTable);
    EXPECT_EQ(printed("'#9'"), "#9 IfcSlab 0000000000000000000009\n  no properties\n");
    const std::string walls = printed("IfcWall"); // with subtypes
    EXPECT_EQ(walls.find(kTable), 0u);
    EXPECT_EQ(printed(""), walls + kTypesTable);
    EXPECT_EQ(printed("IfcObject"), walls);
    EXPECT_EQ(printed("IfcDoor"), "");
}

TEST_F(PropsTest, CsvHasALineForEachObjectOfAType) {
    const std::string header = "id,GlobalId,type,name,Set.Length,Set.External,Set.Range,Set.Curve,Set.Of,Set.Unknown,"
                               "Made.Of\n";
    EXPECT_EQ(printed("IfcWall --csv"),
              header + "1,0000000000000000000001,IfcWall,Tür,2.5,true,\" .. 5\",0: 3; 1: 4,#19,,\"x, y; z\"\n"
                       "2,0000000000000000000002,IfcWallStandardCase,\"a,\"\"b\"\"\",,,,,,,\"x, y; z\"\n");
    const std::string all = printed("--csv"); // that have any: two walls, their type
    EXPECT_EQ(all.substr(0, all.find('\n') + 1), header);
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 4);
    EXPECT_EQ(printed("ifcslab --csv"), "id,GlobalId,type,name\n9,0000000000000000000009,IfcSlab,\n");
}

TEST_F(PropsTest, JsonTellsEverything) {
    const auto object = nlohmann::json::parse(printed("'#1' --json"));
    EXPECT_EQ(object["id"], 1);
    EXPECT_EQ(object["type"], "IfcWall");
    EXPECT_EQ(object["global_id"], "0000000000000000000001");
    EXPECT_EQ(object["name"], "Tür");
    ASSERT_EQ(object["properties"].size(), 7u);
    EXPECT_EQ(object["properties"][0], nlohmann::json::parse(R"({
        "set": "Set", "name": "Length", "kind": "single", "value": 2.5, "measure": "IfcLengthMeasure", "unit": "mm",
        "unit_id": 22, "from_type": false, "set_id": 4, "property_id": 11})"));
    EXPECT_EQ(object["properties"][3], nlohmann::json::parse(R"({
        "set": "Set", "name": "Curve", "kind": "table", "value": [[0.0, 1.0], [3.0, 4.0]], "measure": "IfcReal",
        "unit": null, "unit_id": null, "defining_measure": "IfcReal", "defining_unit": null, "defining_unit_id": null,
        "from_type": false, "set_id": 4, "property_id": 14})"));
    const std::vector<std::string> values{"2.5",          "true", "[null,5]",        "[[0.0,1.0],[3.0,4.0]]",
                                          "{\"ref\":19}", "null", "[\"x, y\",\"z\"]"};
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(object["properties"][i]["value"].dump(), values[i]);
    }
    EXPECT_EQ(object["properties"][6]["from_type"], true);
    // Every object that has any, a line each.
    const std::string all = printed("--json");
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 3);
}

/// RFC 4180, clause 2: what is quoted, and how.
TEST_F(PropsTest, CsvQuotes) {
    const auto name = [this](const std::string& encoded) {
        m_folder.write("model.ifc", stepFile("#1=IFCWALL('0000000000000000000001',$,'" + encoded + "',$,$,$,$,$);"));
        const std::string line = printed("'#1' --csv").substr(std::string("id,GlobalId,type,name\n").size());
        return line.substr(std::string("1,0000000000000000000001,IfcWall,").size());
    };
    EXPECT_EQ(name("a;b \\X2\\6728\\X0\\"), "a;b 木\n");
    EXPECT_EQ(name("a,b"), "\"a,b\"\n");
    EXPECT_EQ(name("a\"b"), "\"a\"\"b\"\n");
    EXPECT_EQ(name("a\\X\\0Ab"), "\"a\nb\"\n");
    EXPECT_EQ(name("a\\X\\0Db"), "\"a\rb\"\n");
    EXPECT_EQ(name(" a"), "\" a\"\n");
}

TEST_F(PropsTest, TellsWhyNot) {
    static constexpr const char* kCases[][2] = {
        {"'#99'", "there is no instance #99"},
        {"'#11'", "IfcPropertySingleValue is no type of objects"},
        {"IfcMaterial", "IfcMaterial is no type of objects"},
        {"IfcWal", "did you mean IfcWall"},
        {"'#1' --csv --json", "excludes"},
        {"1000000000000000000001", "no instance has the GlobalId"},
    };
    for (const auto& [arguments, said] : kCases) {
        SCOPED_TRACE(arguments);
        expectRefusal(run(arguments), said);
    }
}

} // namespace
