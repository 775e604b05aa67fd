#include "Runner.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using testing::TestWithParam;
using testing::ValuesIn;

namespace {

struct Call {
    const char* name;
    const char* command;
    int exitCode;
};

class CallTest : public TestWithParam<Call> {};

/// Results go to standard output and messages to standard error, never one to the other.
TEST_P(CallTest, EndsWithCode) {
    const WorkFolder folder;
    folder.write("clean.ifc", stepFile("#1=IFCCARTESIANPOINT((0.,1.));"));
    const Outcome outcome = folder.run(GetParam().command);
    EXPECT_EQ(outcome.exitCode, GetParam().exitCode) << outcome.err;
    EXPECT_EQ(outcome.out.empty(), GetParam().exitCode == 2) << outcome.out;
    EXPECT_EQ(outcome.err.empty(), GetParam().exitCode == 0) << outcome.err;
}

const Call kCalls[] = {
    {"Help", "kpifc --help", 0},
    {"HelpOfAll", "kpifc --help-all", 0},
    {"Version", "kpifc --version", 0},
    {"HelpOfInfo", "kpifc info --help", 0},
    {"Info", "kpifc info clean.ifc", 0},
    {"InfoForPrograms", "kpifc info --json clean.ifc", 0},
    {"Dump", "kpifc dump clean.ifc", 0},
    {"DumpWithInverses", "kpifc dump --inverse clean.ifc", 0},
    {"Tree", "kpifc tree clean.ifc", 0},
    {"Show", "kpifc show clean.ifc '#1'", 0},
    {"NegativeDepth", "kpifc tree clean.ifc --depth -1", 2},
    {"NothingToShow", "kpifc show clean.ifc", 2},
    {"UnknownToShow", "kpifc show clean.ifc '#2'", 2},
    {"Get", "kpifc get clean.ifc '#1'", 0},
    {"NoCommand", "kpifc", 2},
    {"UnknownCommand", "kpifc explain clean.ifc", 2},
    {"UnknownOption", "kpifc info --loud clean.ifc", 2},
    {"NoFile", "kpifc dump", 2},
    {"TwoFiles", "kpifc header clean.ifc clean.ifc", 2},
    {"NoOutput", "kpifc convert clean.ifc", 2},
    {"NothingToGet", "kpifc get clean.ifc", 2},
    {"NothingToSet", "kpifc set clean.ifc -o new.ifc", 2},
    {"NoOutputOfSet", "kpifc set clean.ifc '#1.Coordinates=(1.)'", 2},
    {"MissingFileToSet", "kpifc set missing.ifc '#1.Coordinates=(1.)' -o new.ifc", 2},
    {"SetIntoMissingFolder", "kpifc set clean.ifc '#1.Coordinates=(1.)' -o missing/new.ifc", 2},
    {"MissingFile", "kpifc info missing.ifc", 2},
    {"Folder", "kpifc info .", 2},
    {"OutputInMissingFolder", "kpifc convert clean.ifc -o missing/new.ifc", 2},
    {"OutputIsFolder", "mkdir folder; kpifc convert clean.ifc -o folder", 2},
};

INSTANTIATE_TEST_SUITE_P(Calls, CallTest, ValuesIn(kCalls), [](const auto& test) { return test.param.name; });

struct Damage {
    const char* name;
    std::string content;
    int exitCode;
    std::string said; ///< by info: the kind of problem, or part of the reason why the file cannot be read
};

class DamageTest : public TestWithParam<Damage> {};

TEST_P(DamageTest, HasTheSameCodeInEveryCommand) {
    const WorkFolder folder;
    const std::string file = folder.write("damaged.ifc", GetParam().content);
    for (const std::string command : {"kpifc info ", "kpifc info --json "}) {
        const Outcome outcome = folder.run(command + file);
        EXPECT_EQ(outcome.exitCode, GetParam().exitCode) << command << ": " << outcome.err;
        const std::string& text = GetParam().exitCode == 2 ? outcome.err : outcome.out;
        EXPECT_NE(text.find(GetParam().said), std::string::npos) << command << ": " << text;
    }
    for (const std::string command : {"kpifc dump ", "kpifc tree ", "kpifc convert -o new.ifc "}) {
        const Outcome outcome = folder.run(command + file);
        EXPECT_EQ(outcome.exitCode, GetParam().exitCode) << command << ": " << outcome.err;
        EXPECT_NE(outcome.err, "") << command;
    }
}

const std::string kPoint = "#1=IFCCARTESIANPOINT((0.,1.));";

std::string replaced(std::string text, const std::string& part, const std::string& by) {
    return text.replace(text.find(part), part.size(), by);
}

const Damage kDamages[] = {
    {"Empty", "", 2, "damaged.ifc"},
    {"NoStepFile", "PK\x03\x04 this is something else entirely", 2, "damaged.ifc"},
    {"NoText", "\xFF\x1B[2J", 2, "found '\xEF\xBF\xBD"},
    {"OtherSchema", replaced(stepFile(kPoint), "IFC2X3", "IFC4"), 2, "IFC4 has no module; can be read: IFC2X3"},
    {"Truncated", stepFile(kPoint).substr(0, stepFile(kPoint).find("#1=") + 20), 1, "truncated"},
    {"UnknownEntity", stepFile(kPoint + "#2=IFCNOSUCHTHING('x');"), 1, "unknown-entity"},
    {"NoParameters", stepFile(kPoint + "#2=IFCCARTESIANPOINT;"), 1, "unreadable-record"},
    {"DanglingReference", stepFile(kPoint + "#2=IFCPOLYLINE((#1,#3));"), 1, "dangling-reference"},
    {"SameNameTwice", stepFile(kPoint + kPoint), 1, "duplicate-name"},
};

INSTANTIATE_TEST_SUITE_P(Files, DamageTest, ValuesIn(kDamages), [](const auto& test) { return test.param.name; });

class LostOutputTest : public TestWithParam<const char*> {};

TEST_P(LostOutputTest, FullDiskIsAnError) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    const WorkFolder folder;
    folder.write("points.ifc", manyPoints());
    const Outcome outcome = folder.run("kpifc " + std::string(GetParam()) + " >/dev/full");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.err.find("standard output"), std::string::npos) << outcome.err;
}

TEST_P(LostOutputTest, ClosedOutputIsAnError) {
    const WorkFolder folder;
    folder.write("points.ifc", manyPoints());
    const Outcome outcome = folder.run("kpifc " + std::string(GetParam()) + " >&-");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.err.find("standard output"), std::string::npos) << outcome.err;
}

INSTANTIATE_TEST_SUITE_P(Results, LostOutputTest,
                         testing::Values("--help", "--version", "info points.ifc", "info --json points.ifc",
                                         "dump points.ifc", "get points.ifc '#1'", "tree points.ifc",
                                         "show points.ifc '#1'"),
                         [](const auto& test) { return "Call" + std::to_string(test.index); });

TEST(BrokenPipeTest, EndsQuietly) {
    const WorkFolder folder;
    folder.write("points.ifc", manyPoints());
    const Outcome outcome = folder.run("{ kpifc dump points.ifc; echo $? >code; } | head -c 1 >head; wait; cat code");
    EXPECT_EQ(outcome.out, "141\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(LostMessageTest, DoesNotChangeTheOutcome) {
    const WorkFolder folder;
    folder.write("unknown.ifc", stepFile("#1=IFCCARTESIANPOINT((0.,1.));#2=IFCNOSUCHTHING();"));
    EXPECT_EQ(folder.run("kpifc dump unknown.ifc 2>&-").exitCode, 1);
    EXPECT_EQ(folder.run("kpifc dump missing.ifc 2>&-").exitCode, 2);
}

} // namespace
