#include "SmallModel.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

using Json = nlohmann::json;

namespace {

/// Two findings about one instance, one of them with its place, and one about the header.
std::string faultyModel() {
    std::string text = stepFile("#1=IFCCARTESIANPOINT((0.,0.));\n"
                                "#2=IFCMATERIAL('M\\X\\FCnchen');\n"
                                "#3=IFCPROPERTYENUMERATION('Zoe',(IFCLABEL('x'),IFCLABEL('x'),IFCWALL()),$);\n"
                                "#4=IFCPROPERTYSET('0000000000000000000004',$,'Set',$,(#1));\n"
                                "#5=IFCFOO();");
    return text.replace(text.find("2026-01-02T03:04:05"), 19, "yesterday");
}

TEST(CheckCommand, TellsALineForEachFindingThenCounts) {
    const WorkFolder folder;
    folder.write("good.ifc", smallModel());
    folder.write("a.ifc", faultyModel());
    const Outcome good = folder.run("kpifc check good.ifc");
    EXPECT_EQ(good.exitCode, 0) << good.err;
    EXPECT_EQ(good.out, "good.ifc: no findings in 19 instances\n");
    const Outcome outcome = folder.run("kpifc check a.ifc good.ifc");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(
        outcome.out,
        "a.ifc: warning: FILE_NAME time_stamp: found 'yesterday', expected date and time (ISO 8601), as in "
        "'2026-01-02T03:04:05' [header]\n"
        "a.ifc:10:33: warning: #3 IfcPropertyEnumeration \"Zoe\" EnumerationValues: found "
        "(IFCLABEL('x'),IFCLABEL('x'),IFCWALL()), expected one of the alternatives; its text is kept "
        "[wrong-alternative]\n"
        "a.ifc: warning: #4 IfcPropertySet \"Set\" OwnerHistory: found no value, expected IfcOwnerHistory "
        "[missing-value]\n"
        "a.ifc: warning: #4 IfcPropertySet \"Set\" HasProperties: found 1 element: #1 IfcCartesianPoint, expected SET "
        "[1:?] OF IfcProperty [wrong-reference]\n"
        "a.ifc:12:4: warning: #5 (kept as text): found IFCFOO, expected an entity of schema IFC2X3; the record is "
        "kept as text [unknown-entity]\n"
        "a.ifc: 5 warnings in 4 instances: 1 unknown-entity, 1 wrong-alternative, 1 wrong-reference, 1 header, "
        "1 missing-value\n"
        "good.ifc: no findings in 19 instances\n");
}

TEST(CheckCommand, ListsAHundredOfAKindOrAll) {
    const WorkFolder folder;
    std::string records;
    for (int i = 1; i <= 105; ++i) {
        records += '#' + std::to_string(i) + "=IFCACTORROLE(.KING.,$,$);\n";
    }
    folder.write("a.ifc", stepFile(records));
    const std::vector<std::string> lines = linesOf(folder.run("kpifc check a.ifc").out);
    ASSERT_EQ(lines.size(), 102u);
    EXPECT_EQ(lines[100], "a.ifc: 5 more unknown-literal; --all lists them");
    EXPECT_EQ(lines[101], "a.ifc: 105 warnings in 105 instances: 105 unknown-literal");
    EXPECT_EQ(linesOf(folder.run("kpifc check a.ifc --all").out).size(), 106u);
}

TEST(CheckCommand, TellsThePrograms) {
    const WorkFolder folder;
    folder.write("a.ifc", faultyModel());
    const Outcome outcome = folder.run("kpifc check a.ifc missing.ifc --json");
    EXPECT_EQ(outcome.exitCode, 2) << "one of them could not be read";
    EXPECT_NE(outcome.err.find("missing.ifc"), std::string::npos);
    const Json files = Json::parse(outcome.out)["files"];
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0]["file"], "a.ifc");
    EXPECT_EQ(files[0]["instances"], 4);
    EXPECT_EQ(files[0]["warnings"], 5);
    EXPECT_EQ(files[0]["codes"]["missing-value"], 1);
    EXPECT_EQ(files[0]["findings"][2], Json::parse(R"({"severity":"warning","code":"missing-value","offset":null,
        "line":null,"column":null,"instance":4,"entity":"IfcPropertySet","attribute":"OwnerHistory",
        "found":"no value","expected":"IfcOwnerHistory","done":null,"allowed":false,"name":"Set"})"));
    EXPECT_EQ(files[1]["file"], "missing.ifc");
    EXPECT_FALSE(files[1]["error"].get<std::string>().empty());
}

} // namespace
