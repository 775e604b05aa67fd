#include "Runner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace {

const std::filesystem::path kHouse = std::filesystem::path(KP_SOURCE_DIR) / "examples/small_house.ifc";

TEST(ConvertTest, KeepsWhatTheExampleHolds) {
    const WorkFolder folder;
    const Outcome converted = folder.run("kpifc convert " + quoted(kHouse) + " --normalise -o new.ifc");
    EXPECT_EQ(converted.exitCode, 0) << converted.err;
    EXPECT_EQ(converted.out, "");
    EXPECT_EQ(std::count(converted.err.begin(), converted.err.end(), '\n'), 1) << converted.err;

    const Outcome before = folder.run("kpifc dump " + quoted(kHouse));
    const Outcome after = folder.run("kpifc dump new.ifc");
    EXPECT_EQ(after.exitCode, 0) << after.err;
    EXPECT_FALSE(before.out.empty());
    EXPECT_EQ(before.out, after.out);

    folder.run("kpifc convert new.ifc --normalise -o newer.ifc");
    EXPECT_EQ(contentOf(folder.path("new.ifc")), contentOf(folder.path("newer.ifc")));
}

TEST(ConvertTest, KeepsRecordsThatItDoesNotUnderstand) {
    const WorkFolder folder;
    const std::string strange[] = {"#2=IFCNOSUCHTHING('x',(1,2),.Y.);", "#3=(IFCA(1)IFCB(2));",
                                   "#4=IFCCARTESIANPOINT;"};
    std::string records = "#1=IFCCARTESIANPOINT((0.,1.));\n";
    for (const std::string& record : strange) {
        records += record + '\n';
    }
    folder.write("strange.ifc", stepFile(records));
    const Outcome converted = folder.run("kpifc convert strange.ifc -o new.ifc");
    EXPECT_EQ(converted.exitCode, 1) << converted.err;
    EXPECT_NE(converted.err.find("3 records kept as text"), std::string::npos) << converted.err;
    const std::string written = contentOf(folder.path("new.ifc"));
    for (const std::string& record : strange) {
        EXPECT_NE(written.find(record), std::string::npos) << record;
    }
}

TEST(ConvertTest, RefusesToOverwriteTheInput) {
    const WorkFolder folder;
    const std::string content = stepFile("/* as it was */ #1=IFCCARTESIANPOINT((0.,1.));");
    folder.write("house.ifc", content);
    std::filesystem::create_symlink("house.ifc", folder.path("link.ifc"));
    std::filesystem::create_hard_link(folder.path("house.ifc"), folder.path("hard.ifc"));
    for (const std::string name : {"house.ifc", "./house.ifc", "link.ifc", "hard.ifc"}) {
        const Outcome outcome = folder.run("kpifc convert house.ifc -o " + name);
        EXPECT_EQ(outcome.exitCode, 2) << name;
        EXPECT_NE(outcome.err.find("is the input"), std::string::npos) << outcome.err;
    }
    EXPECT_EQ(folder.run("kpifc convert house.ifc").exitCode, 2);
    EXPECT_EQ(contentOf(folder.path("house.ifc")), content);
}

TEST(ConvertTest, LeavesAllAsItIsUnlessToldToNormalise) {
    const WorkFolder folder;
    const std::string content =
        stepFile("/* as it was */ #2 = IFCCARTESIANPOINT( (0.,1.) );\n#1=IFCPERSON($,$,$,$,$,$,$,$);");
    folder.write("house.ifc", content);
    EXPECT_EQ(folder.run("kpifc convert house.ifc -o new.ifc").exitCode, 0);
    EXPECT_EQ(contentOf(folder.path("new.ifc")), content);
    EXPECT_EQ(folder.run("kpifc set house.ifc '#2.Coordinates=(0.,1.)' --in-place").exitCode, 0);
    EXPECT_EQ(contentOf(folder.path("house.ifc")), content);
    EXPECT_EQ(folder.run("kpifc convert house.ifc --normalise --in-place").exitCode, 0);
    EXPECT_EQ(contentOf(folder.path("house.ifc")),
              stepFile("#1=IFCPERSON($,$,$,$,$,$,$,$);\n#2=IFCCARTESIANPOINT((0.,1.));"));
    EXPECT_EQ(folder.run("kpifc convert house.ifc -o new.ifc --in-place").exitCode, 2);
}

TEST(ConvertTest, ReplacesAnOlderOutput) {
    const WorkFolder folder;
    folder.write("house.ifc", stepFile("#1=IFCCARTESIANPOINT((0.,1.));"));
    folder.write("new.ifc", std::string(10'000, 'x'));
    EXPECT_EQ(folder.run("kpifc convert house.ifc -o new.ifc").exitCode, 0);
    EXPECT_EQ(folder.run("kpifc info new.ifc").exitCode, 0);
}

} // namespace
