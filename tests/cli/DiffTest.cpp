#include "Renumbered.h"
#include "SmallModel.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

using Json = nlohmann::json;

namespace {

/// The small model and a wall with what stands below it.
std::string model() {
    std::string text = smallModel();
    const std::string records = "#20=IFCWALL('0123456789012345678901',#11,'Wall',$,$,#21,$,$);\n"
                                "#21=IFCLOCALPLACEMENT($,#22);\n"
                                "#22=IFCAXIS2PLACEMENT3D(#23,$,$);\n"
                                "#23=IFCCARTESIANPOINT((0.,0.,0.));\n"
                                "#24=IFCPROPERTYSET('0123456789012345678902',#11,'Set',$,(#25,#26,#27));\n"
                                "#25=IFCPROPERTYSINGLEVALUE('A',$,IFCREAL(1.),$);\n"
                                "#26=IFCPROPERTYSINGLEVALUE('B',$,IFCREAL(1.),$);\n"
                                "#27=IFCPROPERTYSINGLEVALUE('C',$,IFCLABEL('x'),$);\n"
                                "#28=IFCPRESENTATIONLAYERASSIGNMENT('layer',$,(#29),$);\n"
                                "#29=IFCGEOMETRICSET((#30));\n"
                                "#30=IFCCARTESIANPOINT((5.,5.,5.));\n"
                                "#31=IFCFOO('kept',#30);\n"
                                "#32=IFCPERSON('short',#30);\n"
                                "#33=IFCACTORROLE(.NOROLE.,$,$);\n";
    return text.replace(text.find("ENDSEC;\nEND-ISO"), 0, records);
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

struct Case {
    const char* name;
    const char* from;
    const char* to;
    std::vector<std::string> lines; ///< but the last one
    bool byName = false;            ///< nothing but the instance name tells what was changed
};

class DiffTest : public testing::TestWithParam<Case> {};

TEST_P(DiffTest, TellsTheOneChange) {
    const WorkFolder folder;
    folder.write("a.ifc", model());
    const std::string changed = replaced(model(), GetParam().from, GetParam().to);
    folder.write("b.ifc", changed);
    const int code = GetParam().lines.empty() ? 0 : 1;
    const Outcome outcome = folder.run("kpifc diff a.ifc b.ifc");
    EXPECT_EQ(outcome.exitCode, code) << outcome.err;
    std::vector<std::string> lines = linesOf(outcome.out);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back() == "no differences", code == 0) << lines.back();
    lines.pop_back();
    EXPECT_EQ(lines, GetParam().lines);

    // Whatever things are called and in which order they stand; names in the lines are left out.
    const std::regex names(" \\(now #\\d+\\)|#\\d+");
    const auto nameless = [&names](std::vector<std::string> all) {
        for (std::string& line : all) {
            line = std::regex_replace(line, names, "");
        }
        std::sort(all.begin(), all.end());
        return all;
    };
    for (unsigned seed = 1; seed <= 3 && !GetParam().byName; ++seed) {
        folder.write("c.ifc", renumbered(changed, seed));
        const Outcome other = folder.run("kpifc diff a.ifc c.ifc");
        EXPECT_EQ(other.exitCode, code) << other.out;
        lines = linesOf(other.out);
        lines.pop_back();
        EXPECT_EQ(nameless(lines), nameless(GetParam().lines)) << "seed " << seed;
    }
}

const Case kCases[] = {
    {"Nothing", "#1=", "#1=", {}},
    {"Spelling", "(0.,1.5)", "( -0.0E+00, 15.E-1 )", {}},
    {"Encoding", "\\X\\E9", "\\X2\\00E9\\X0\\", {}},
    {"OrderOfASet", "(#25,#26,#27)", "(#27,#25,#26)", {}},
    {"OneOfEqualInstancesForTwo", "#30=", "#34=IFCCARTESIANPOINT((5.,5.,5.));\n#30=", {"+ #34 IfcCartesianPoint"}},
    {"Text", "'Doe'", "'Meier'", {"~ #1 IfcPerson FamilyName: \"Doe\" -> \"Meier\""}},
    {"TextToNone", "'Doe'", "$", {"~ #1 IfcPerson FamilyName: \"Doe\" -> -"}},
    {"TypeOfASelect",
     "IFCREAL(1.)",
     "IFCLABEL('1')",
     {"~ #25 IfcPropertySingleValue \"A\" NominalValue: IfcReal 1 -> IfcLabel \"1\""}},
    {"NameOfAProperty", "'B',$", "'D',$", {"~ #26 IfcPropertySingleValue \"B\" Name: \"B\" -> \"D\""}},
    {"PointBelowAPlacement",
     "((0.,0.,0.))",
     "((1.,0.,0.))",
     {"~ #23 IfcCartesianPoint Coordinates: [0, 0, 0] -> [1, 0, 0]"}},
    {"PointBelowWhatNothingRefersTo",
     "((5.,5.,5.))",
     "((5.,5.,6.))",
     {"~ #30 IfcCartesianPoint Coordinates: [5, 5, 5] -> [5, 5, 6]"}},
    {"NameOfWhatNothingRefersTo",
     "'layer'",
     "'other'",
     {"~ #28 IfcPresentationLayerAssignment \"layer\" Name: \"layer\" -> \"other\""}},
    {"GlobalId",
     "'0123456789012345678901'",
     "'0123456789012345678909'",
     {"~ #20 IfcWall \"Wall\" GlobalId: \"0123456789012345678901\" -> \"0123456789012345678909\""}},
    {"Entity", "IFCWALL(", "IFCWALLSTANDARDCASE(", {"~ #20 IfcWall \"Wall\" is now #20 IfcWallStandardCase \"Wall\""}},
    {"Reference",
     "IFCPOLYLINE((#4,#16))",
     "IFCPOLYLINE((#4,#23))",
     {"~ #15 IfcPolyline Points: [#4 IfcCartesianPoint, #16 IfcCartesianPoint] -> [#4 IfcCartesianPoint, "
      "#23 IfcCartesianPoint]"}},
    {"Removed", "#8=IFCDIMENSIONALEXPONENTS(1,0,0,0,0,0,0);\n", "", {"- #8 IfcDimensionalExponents"}},
    {"Added", "#21=", "#40=IFCWALL('0123456789012345678905',#11,'New',$,$,$,$,$);\n#21=", {"+ #40 IfcWall \"New\""}},
    {"MemberOfASet",
     "(#25,#26,#27)",
     "(#25,#27)",
     {"~ #24 IfcPropertySet \"Set\" HasProperties: no longer #26 IfcPropertySingleValue \"B\"; 3 -> 2 members"}},
    {"RecordKeptAsText",
     "IFCFOO('kept'",
     "IFCFOO( 'changed'",
     {"~ #31 (kept as text) record: #31=IFCFOO('kept',#30); -> #31=IFCFOO( 'changed',#30);"}},
    {"BlanksOfARecordKeptAsText", "IFCFOO('kept',#30", "IFCFOO( 'kept' , /* x */ #30", {}},
    {"ParametersKeptAsText", "'short',#30", "'short',$", {"~ #32 IfcPerson record: 'short',#30 -> 'short',$"}, true},
    {"FieldKeptAsText", ".NOROLE.", ".NONE.", {"~ #33 IfcActorRole Role: .NOROLE. -> .NONE."}, true},
    {"Header", "('nobody')", "('A','B')", {"~ header author: \"nobody\" -> \"A\", \"B\""}},
};

INSTANTIATE_TEST_SUITE_P(Changes, DiffTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return test.param.name; });

TEST(Diff, TellsOfLongAggregatesWhatIsNotInBoth) {
    const WorkFolder folder;
    const auto line = [](const std::string& points) {
        return stepFile("#1=IFCCARTESIANPOINT((1.));\n#2=IFCCARTESIANPOINT((2.));\n#3=IFCCARTESIANPOINT((3.));\n"
                        "#4=IFCPOLYLINE((" +
                        points + "));");
    };
    folder.write("a.ifc", line("#1,#2,#1,#2,#1"));
    folder.write("b.ifc", line("#1,#2,#1,#2,#3,#1"));
    folder.write("c.ifc", line("#2,#1,#1,#2,#1"));
    EXPECT_EQ(linesOf(folder.run("kpifc diff a.ifc b.ifc").out).front(),
              "~ #4 IfcPolyline Points: now also #3 IfcCartesianPoint; 5 -> 6 members");
    EXPECT_EQ(linesOf(folder.run("kpifc diff a.ifc c.ifc").out).front(),
              "~ #4 IfcPolyline Points: in another order; 5 members");
}

TEST(Diff, WritesAllAsJson) {
    const WorkFolder folder;
    folder.write("a.ifc", model());
    std::string changed = replaced(model(), "'Doe'", "$");
    changed = replaced(changed, "IFCWALL(", "IFCWALLSTANDARDCASE(");
    changed = replaced(changed, "#8=", "#80=");
    changed = replaced(changed, "(1,0,0,0,0,0,0)", "(2,0,0,0,0,0,1)");
    changed = replaced(changed, ".NOROLE.", ".NONE.");
    folder.write("b.ifc", replaced(changed, "'test.ifc'", "''"));
    const Outcome outcome = folder.run("kpifc diff a.ifc b.ifc --json");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(Json::parse(outcome.out), Json::parse(R"({
        "removed": [{"id":8,"type":"IfcDimensionalExponents","globalId":null,"name":null}],
        "added": [{"id":80,"type":"IfcDimensionalExponents","globalId":null,"name":null}],
        "changed": [
            {"a":1,"b":1,"type":"IfcPerson","globalId":null,
             "attributes":[{"name":"FamilyName","a":"Doe","b":null}]},
            {"a":20,"b":20,"type":"IfcWall","globalId":"0123456789012345678901","newType":"IfcWallStandardCase",
             "attributes":[]},
            {"a":33,"b":33,"type":"IfcActorRole","globalId":null,
             "attributes":[{"name":"Role","a":{"keptText":".NOROLE."},"b":{"keptText":".NONE."}}]}],
        "header": [{"name":"name","a":["test.ifc"],"b":[""]}]})"));
    EXPECT_EQ(Json::parse(folder.run("kpifc diff a.ifc b.ifc --json --no-header").out)["header"], Json::array());
}

TEST(Diff, TellsInstancesOnACycleApart) {
    const WorkFolder folder;
    const std::string cycle = stepFile("#1=IFCLOCALPLACEMENT(#2,$);\n#2=IFCLOCALPLACEMENT(#3,#4);\n"
                                       "#3=IFCLOCALPLACEMENT(#1,$);\n#4=IFCAXIS2PLACEMENT3D(#5,$,$);\n"
                                       "#5=IFCCARTESIANPOINT((0.,0.,0.));\n#6=IFCLOCALPLACEMENT(#6,$);");
    folder.write("a.ifc", cycle);
    for (const unsigned seed : {1u, 2u, 3u}) {
        folder.write("b.ifc", renumbered(cycle, seed));
        const Outcome outcome = folder.run("kpifc diff a.ifc b.ifc");
        EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
    }
    folder.write("c.ifc", replaced(cycle, "(#3,#4)", "(#3,$)"));
    EXPECT_EQ(folder.run("kpifc diff a.ifc c.ifc").exitCode, 1);
}

TEST(Diff, FailsWhereAFileCannotBeRead) {
    const WorkFolder folder;
    folder.write("a.ifc", model());
    for (const char* arguments : {"a.ifc none.ifc", "none.ifc a.ifc", "a.ifc"}) {
        const Outcome outcome = folder.run(std::string("kpifc diff ") + arguments);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(outcome.out, "");
    }
}

} // namespace
