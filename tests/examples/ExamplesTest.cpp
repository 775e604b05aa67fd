#include "Examples.h"
#include "Runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

const std::string kHouse = quoted(KP_SOURCE_DIR "/examples/small_house.ifc");

TEST(Examples, DoWhatTheySay) {
    static const struct {
        std::string call;
        std::string out; ///< a part of it
    } kCases[] = {
        {"first_steps " + kHouse + " out.ifc && kpifc get out.ifc '#74.Description'", "'seen by first_steps'"},
        {"walls " + kHouse, "#106 2h035ZNjD5DQN8eHIcU5sj West wall, Ground floor\n"},
        {"edit " + kHouse + " out.ifc IfcWall Description thick && kpifc diff " + kHouse +
             " out.ifc --quiet; kpifc get out.ifc '#74.Description' '#163.Description'",
         "'thick'\n$\n"},
        {"properties " + kHouse + " IfcWindow", "80. mm\n"},
        {"new_building out.ifc && walls out.ifc", " Wall, BuildingStorey\n"},
        {"host " + quoted(KP_MODULE_FILE) + ' ' + kHouse, "IFC2X3: 653 entities\nReference = BRICK-300\n"},
    };
    const WorkFolder folder;
    for (const auto& [call, out] : kCases) {
        const Outcome outcome = folder.run(withExamples(call));
        EXPECT_EQ(outcome.exitCode, 0) << call << '\n' << outcome.err;
        EXPECT_THAT(outcome.out, HasSubstr(out)) << call;
    }
}

TEST(Examples, SayWhatIsWrongAndWriteNothing) {
    const WorkFolder folder;
    for (const std::string call :
         {"first_steps none.ifc out.ifc", "walls none.ifc", "walls", "edit none.ifc out.ifc IfcWall Name a",
          "edit small.ifc out.ifc IfcSlab PredefinedType a", "edit small.ifc out.ifc IfcWall OwnerHistory a",
          "properties none.ifc IfcWall", "host none.so none.ifc"}) {
        const std::string copy = "cp " + kHouse + " small.ifc; ";
        const Outcome outcome = folder.run(withExamples(copy + call));
        EXPECT_EQ(outcome.exitCode, 2) << call;
        EXPECT_NE(outcome.err, "") << call;
        EXPECT_FALSE(std::filesystem::exists(folder.path("out.ifc"))) << call;
    }
}

/// What another program would look at in a new building.
TEST(Examples, TheNewBuildingIsWhole) {
    const WorkFolder folder;
    const Outcome made = folder.run(withExamples("new_building out.ifc && kpifc check out.ifc --all"));
    EXPECT_EQ(made.exitCode, 0) << made.out << made.err;
    EXPECT_THAT(made.out + made.err, HasSubstr("no findings"));
    const Outcome tree = folder.run("kpifc tree out.ifc");
    EXPECT_THAT(tree.out, testing::ContainsRegex("IfcProject .*\n  IfcSite .*\n    IfcBuilding .*\n"
                                                 "      IfcBuildingStorey .*\n        IfcWall 4"));
    const Outcome properties = folder.run(withExamples("properties out.ifc IfcWall | grep -c 'IsExternal  *true'"));
    EXPECT_EQ(properties.out, "4\n");

    const std::filesystem::path shared = KP_SHARED_DIR;
    if (!std::filesystem::exists(shared / "check")) GTEST_SKIP() << "no checkers in " << shared / "check";
    const std::string schema = ' ' + quoted(shared / "schema/ifc2x3.schema") + ' ';
    const Outcome dumped = folder.run("kpifc dump --inverse out.ifc >out.jsonl && python3 " +
                                      quoted(shared / "check/check_dump.py") + " out.ifc" + schema + "out.jsonl");
    EXPECT_THAT(dumped.out, HasSubstr(" 0 differences")) << dumped.err;
    const Outcome again = folder.run("kpifc convert out.ifc --normalise -o again.ifc && python3 " +
                                     quoted(shared / "check/roundtrip.py") + " out.ifc again.ifc" + schema);
    EXPECT_THAT(again.out, HasSubstr(" 0 differences")) << again.err;
}

} // namespace
