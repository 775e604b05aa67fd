#include "Runner.h"

#include <kpifc/Commands.h>
#include <kpifc/HelpText.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

using namespace kpifc;

namespace {

const std::filesystem::path kHouse = std::filesystem::path(KP_SOURCE_DIR) / "examples/small_house.ifc";

TEST(UsageTest, MistakesAreNamedWithWhatWasMeant) {
    const WorkFolder folder;
    static constexpr const char* kCases[][2] = {
        {"inof a.ifc", "there is no command \"inof\"; did you mean info? kpifc help lists them"},
        {"--jsno info a.ifc", "kpifc: there is no option --jsno"},
        {"", "no command is given"},
        {"info a.ifc --jsno", "info: there is no option --jsno; did you mean --json?\nUsage: kpifc info"},
        {"info -x a.ifc", "info: there is no option -x"},
        {"info a.ifc --json=yes", "info: --json takes no value"},
        {"info", "info: needs FILE\nUsage: kpifc info [OPTION]... FILE..."},
        {"convert a.ifc b.ifc", "convert: takes no further operand \"b.ifc\""},
        {"query a.ifc", "query: needs EXPRESSION"},
        {"new a.ifc", "new: needs ENTITY"},
        {"extract a.ifc IfcWall", "extract: needs --output FILE"},
        {"extract a.ifc IfcWall -o", "extract: -o needs a value, FILE"},
        {"erase a.ifc '#1' --policy casacde -o b.ifc",
         "--policy: found \"casacde\", expected refuse, drop, cascade; did you mean cascade?"},
        {"tree a.ifc --depth x", "--depth: found \"x\", expected a number"},
        {"convert a.ifc -o b.ifc --in-place", "convert: --in-place excludes --output"},
        {"info --color=blue a.ifc", "--color: found \"blue\", expected auto, always, never"},
        {"completion csh", "SHELL: found \"csh\", expected bash, zsh, fish"},
        {"help exitcodes", "did you mean exit-codes?"},
        {"set - '#1.Name=$' --in-place", "standard input cannot be replaced"},
    };
    for (const auto& [arguments, said] : kCases) {
        expectRefusal(folder.run(std::string("kpifc ") + arguments), said);
    }
}

/// Wherever options stand, and however they are spelt.
TEST(UsageTest, OptionsInAllSpellings) {
    const WorkFolder folder;
    folder.write("-a.ifc", contentOf(kHouse));
    for (const char* command :
         {"tree --depth 1 ./-a.ifc", "tree ./-a.ifc --depth=1", "--color never tree --depth=1 -- -a.ifc"}) {
        const Outcome outcome = folder.run("kpifc " + std::string(command));
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        EXPECT_EQ(linesOf(outcome.out).size(), 2u) << command << '\n' << outcome.out;
    }
    for (const char* output : {"-ob.ifc", "-o b.ifc", "--output=b.ifc", "--output b.ifc"}) {
        EXPECT_EQ(folder.run("kpifc convert ./-a.ifc " + std::string(output)).exitCode, 0) << output;
        EXPECT_EQ(contentOf(folder.path("b.ifc")), contentOf(kHouse));
        std::filesystem::remove(folder.path("b.ifc"));
    }
}

TEST(StreamsTest, AHyphenIsStandardInputAndOutput) {
    const WorkFolder folder;
    const std::string house = contentOf(kHouse);
    folder.write("a.ifc", house);
    EXPECT_EQ(folder.run("cat a.ifc | kpifc convert - -o -").out, house);
    EXPECT_EQ(folder.run("kpifc set - '#1.FamilyName=$' -o - <a.ifc | kpifc diff a.ifc - --no-header | tail -n 1").out,
              "1 attribute of 1 instance changed\n");
    const Outcome created = folder.run("kpifc new a.ifc IfcDoor -o -");
    EXPECT_NE(created.out.find("IFCDOOR("), std::string::npos);
    EXPECT_NE(created.err.find("#254\n"), std::string::npos) << created.err; // where it does not get into the file
    EXPECT_NE(folder.run("kpifc check - <a.ifc").out.find("standard input: no findings"), std::string::npos);
}

TEST(SeveralFilesTest, AreNamedAndTheHighestCodeCounts) {
    const WorkFolder folder;
    folder.write("a.ifc", stepFile("#1=IFCWALL('0000000000000000000001',$,'a',$,$,$,$,$);"));
    folder.write("b.ifc", stepFile("#1=IFCWALL('0000000000000000000001',$,'b',$,$,$,$,$);#2=IFCNOSUCHTHING();"));
    struct {
        const char* arguments;
        int exitCode;
        std::vector<const char*> told;
    } const cases[] = {
        {"info a.ifc b.ifc", 1, {"a.ifc\n", "b.ifc\n"}},
        {"info missing.ifc b.ifc --json", 2, {"{\"files\":[", "\"error\"", "\"unknown-entity\": 1"}},
        {"props a.ifc b.ifc 0000000000000000000001", 1, {"a.ifc:\n#1 IfcWall", "b.ifc:\n#1 IfcWall"}},
        {"props a.ifc b.ifc '#1' --json", 1, {"{\"file\":\"a.ifc\",\"id\":1", "{\"file\":\"b.ifc\",\"id\":1"}},
        {"check missing.ifc b.ifc a.ifc", 2, {"b.ifc: ", "a.ifc: "}},
        {"tree a.ifc missing.ifc b.ifc --depth 1", 2, {"a.ifc:\nThere", "1\n\nb.ifc:\nThere"}},
        {"tree a.ifc - --json <b.ifc", 1, {"{\"file\":\"a.ifc\",\"projects\"", "{\"file\":\"standard input\",\"pro"}},
        {"dump a.ifc b.ifc", 1, {"{\"file\":\"a.ifc\",\"id\":1", "{\"file\":\"b.ifc\",\"id\":1"}},
        {"show a.ifc b.ifc '#1'", 1, {"a.ifc:\n#1 IfcWall \"a\"", "\n\nb.ifc:\n#1 IfcWall \"b\""}},
        {"show a.ifc b.ifc '#2' --json", 2, {"{\"file\":\"b.ifc\",\"id\":2,\"keptText\""}},
        {"get a.ifc b.ifc '#1.Name' '#1.Tag'", 1, {"a.ifc: 'a'\na.ifc: $\nb.ifc: 'b'\nb.ifc: $\n"}},
        {"get a.ifc b.ifc '#1'", 1, {"a.ifc: Name = 'a'\n", "b.ifc: Tag = $\n"}},
        {"get a.ifc b.ifc '#1.Name' --json",
         1,
         {"{\"file\":\"b.ifc\",\"id\":1,\"attribute\":\"Name\",\"value\":\"b\"}\n"}},
    };
    for (const auto& [arguments, exitCode, told] : cases) {
        const Outcome outcome = folder.run("kpifc " + std::string(arguments));
        EXPECT_EQ(outcome.exitCode, exitCode) << arguments << '\n' << outcome.err;
        for (const char* text : told) {
            EXPECT_NE(outcome.out.find(text), std::string::npos) << arguments << ": " << text << '\n' << outcome.out;
        }
    }
}

TEST(ColourTest, OnlyWhereAskedForOrOnTerminals) {
    const WorkFolder folder;
    folder.write("a.ifc", contentOf(kHouse));
    const std::string escape = "\x1b[";
    const auto isColoured = [&](const std::string& command) {
        return folder.run(command).out.find(escape) != std::string::npos;
    };
    for (const std::string command : {"info a.ifc", "help", "query a.ifc IfcWall --columns Name", "tree a.ifc"}) {
        EXPECT_FALSE(isColoured("TERM=xterm kpifc " + command)) << command; // no terminal
        EXPECT_TRUE(isColoured("NO_COLOR=1 kpifc --color=always " + command)) << command;
    }
    EXPECT_FALSE(isColoured("kpifc query a.ifc IfcWall --json --color=always"));
    if (folder.run("command -v script").exitCode != 0) {
        GTEST_SKIP() << "this system has no script, which makes a terminal";
    }
    const std::string program = quoted(std::filesystem::path(programPath()));
    const auto onTerminal = [&](const std::string& environment, const std::string& arguments) {
        return folder
            .run(environment + " script -qc \"stty cols 50; " + program + " " + arguments + "\" /dev/null </dev/null")
            .out;
    };
    EXPECT_NE(onTerminal("TERM=xterm", "info a.ifc").find(escape), std::string::npos);
    EXPECT_EQ(onTerminal("TERM=dumb", "info a.ifc").find(escape), std::string::npos);
    EXPECT_EQ(onTerminal("TERM=xterm NO_COLOR=1", "info a.ifc").find(escape), std::string::npos);
    for (const std::string& line : linesOf(onTerminal("NO_COLOR=1", "query a.ifc IfcProduct"))) {
        EXPECT_LE(std::count_if(line.begin(), line.end(), [](char c) { return (c & 0xC0) != 0x80 && c != '\r'; }), 60)
            << line; // "a.ifc: 9 found in 177 instances" too
    }
}

class DescriptionTest : public testing::Test {
protected:
    const std::vector<Command> m_commands = allCommands();
};

TEST_F(DescriptionTest, HelpTellsAllOfEachCommand) {
    for (const Command& command : m_commands) {
        const std::string help = helpOf(command);
        const std::string text = std::regex_replace(help, std::regex("\\s+"), " ");
        for (const Operand& operand : command.operands) {
            EXPECT_NE(text.find(operand.help), std::string::npos) << command.name << ' ' << operand.name;
        }
        for (const Option& option : allOptions(command)) {
            EXPECT_EQ(help.find(std::string(option.name)) == std::string::npos, option.isHidden)
                << command.name << ' ' << option.name;
        }
        EXPECT_NE(help.find("Examples:\n  "), std::string::npos) << command.name;
        EXPECT_NE(overview(m_commands).find(command.summary), std::string::npos) << command.name;
        for (const std::string& line : linesOf(help)) {
            EXPECT_LE(line.size(), 100u) << command.name << ": " << line;
        }
    }
}

/// Examples outlive what they show. Each is split by the shell and understood by the parser.
TEST_F(DescriptionTest, ExamplesAreUnderstood) {
    const WorkFolder folder;
    for (const Command& command : m_commands) {
        for (const std::string example : command.examples) {
            const Outcome outcome = folder.run("kpifc() { printf '%s\\n' \"$@\" >words; }; " + example);
            std::vector<std::string> words = linesOf(contentOf(folder.path("words")));
            ASSERT_FALSE(words.empty()) << example << outcome.err;
            EXPECT_EQ(words.front(), command.name) << example;
            words.erase(words.begin());
            EXPECT_NO_THROW(parse(command, words)) << example;
        }
    }
}

TEST_F(DescriptionTest, ExamplesOfQueriesAreUnderstood) {
    const WorkFolder folder;
    for (const char* name : {"house.ifc", "a.ifc", "b.ifc"}) {
        folder.write(name, contentOf(kHouse));
    }
    for (const char* example : queryCommand().examples) {
        const Outcome outcome = folder.run(example);
        EXPECT_LE(outcome.exitCode, 1) << example << '\n' << outcome.err;
    }
}

bool isThere(const WorkFolder& folder, const std::string& program) {
    return folder.run("command -v " + program + " >/dev/null").exitCode == 0;
}

struct Completion {
    const char* line; ///< the words up to the one that is completed, with blanks between them
    const char* offered;
};

const Completion kCompletions[] = {
    {"kpifc in", "info"},
    {"kpifc header --re", "--refresh"},
    {"kpifc erase a.ifc --policy d", "drop"},
    {"kpifc --color n", "never"},
    {"kpifc completion z", "zsh"},
    {"kpifc help exit", "exit-codes"},
    {"kpifc schema IfcWallStand", "IfcWallStandardCase"},
    {"kpifc info ho", "house.ifc"},
    {"kpifc convert house.ifc -o ho", "house.ifc"},
};

TEST(CompletionTest, OfBash) {
    const WorkFolder folder;
    folder.write("house.ifc", "");
    if (!isThere(folder, "bash")) {
        GTEST_SKIP() << "this system has no bash";
    }
    for (const auto& [line, offered] : kCompletions) {
        folder.write("run", "kpifc() { " + quoted(std::filesystem::path(programPath())) +
                                " \"$@\"; }\nsource <(kpifc completion bash)\n"
                                "COMP_WORDS=(" +
                                std::string(line) +
                                ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                                "_kpifc\necho \"${COMPREPLY[@]}\"\n");
        EXPECT_EQ(folder.run("bash run").out, offered + std::string("\n")) << line;
    }
}

TEST(CompletionTest, OfFish) {
    const WorkFolder folder;
    folder.write("house.ifc", "");
    if (!isThere(folder, "fish")) {
        GTEST_SKIP() << "this system has no fish";
    }
    const std::string path = "PATH=" + quoted(std::filesystem::path(programPath()).parent_path()) + ":$PATH ";
    for (const auto& [line, offered] : kCompletions) {
        const Outcome outcome =
            folder.run(path + "fish -c 'kpifc completion fish | source; complete -C\"" + line + "\"'");
        EXPECT_EQ(outcome.out.substr(0, outcome.out.find_first_of("\t\n")), offered) << line << outcome.err;
    }
}

TEST(CompletionTest, OfZshIsWellFormed) {
    const WorkFolder folder;
    if (!isThere(folder, "zsh")) {
        GTEST_SKIP() << "this system has no zsh";
    }
    const Outcome outcome = folder.run("kpifc completion zsh >_kpifc; zsh -n _kpifc && "
                                       "zsh -fc 'autoload -U compinit; compinit -u -D; source ./_kpifc; "
                                       "print $_comps[kpifc]'");
    EXPECT_EQ(outcome.out, "_kpifc\n") << outcome.err;
}

/// One page for each command, without anything that the formatters warn of.
TEST(ManualTest, PagesAreClean) {
    const WorkFolder folder;
    ASSERT_EQ(folder.run("mkdir pages; kpifc help --man-pages pages").exitCode, 0);
    for (const Command& command : allCommands()) {
        const std::string page = contentOf(folder.path("pages") / ("kpifc-" + std::string(command.name) + ".1"));
        EXPECT_EQ(page, folder.run("kpifc help --man " + std::string(command.name)).out);
    }
    const bool haveGroff = isThere(folder, "groff");
    if (haveGroff) {
        EXPECT_EQ(folder.run("groff -man -Tutf8 -ww -z pages/* 2>&1").out, "");
        const std::string text = folder.run("groff -man -Tascii -P-c pages/kpifc-query.1").out;
        EXPECT_NE(text.find("'IfcWall[Name ~ \"^EG\"]'"), std::string::npos) << "characters that roff would change";
    }
    if (isThere(folder, "mandoc")) {
        EXPECT_EQ(folder.run("mandoc -T lint -W warning pages/*").out, "");
    } else if (!haveGroff) {
        GTEST_SKIP() << "this system has neither groff nor mandoc";
    }
}

} // namespace
