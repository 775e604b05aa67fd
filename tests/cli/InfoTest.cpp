#include "Runner.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <sstream>
#include <string>

using Json = nlohmann::ordered_json;

namespace {

const std::filesystem::path kHouse = std::filesystem::path(KP_SOURCE_DIR) / "examples/small_house.ifc";

Json infoOf(const WorkFolder& folder, const std::string& file, int exitCode) {
    const Outcome outcome = folder.run("kpifc info --json " + file);
    EXPECT_EQ(outcome.exitCode, exitCode) << outcome.err;
    return Json::parse(outcome.out);
}

TEST(InfoJsonTest, CountsWhatTheExampleHolds) {
    const std::string content = contentOf(kHouse);
    std::map<std::string, int> expected; // by keyword
    int total = 0;
    const std::regex record("\n#\\d+=([A-Z0-9]+)\\(");
    for (std::sregex_iterator it(content.begin(), content.end(), record), end; it != end; ++it, ++total) {
        ++expected[(*it)[1]];
    }

    const WorkFolder folder;
    const Json info = infoOf(folder, quoted(kHouse), 0);
    EXPECT_EQ(info["size"], content.size());
    EXPECT_EQ(info["schema"], "IFC2X3");
    EXPECT_EQ(info["instances"], total);
    EXPECT_EQ(info["types"].size(), expected.size());
    EXPECT_EQ(info["keptRecords"], 0);
    int above = total;
    for (const auto& [name, count] : info["types"].items()) {
        std::string keyword = name;
        std::transform(keyword.begin(), keyword.end(), keyword.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
        EXPECT_EQ(count, expected[keyword]) << name;
        EXPECT_LE(count, above) << name;
        above = count;
    }
}

TEST(InfoJsonTest, TellsTheHeader) {
    const WorkFolder folder;
    std::string content = stepFile("#1=IFCCARTESIANPOINT((0.,1.));");
    const std::string name = "FILE_NAME('test.ifc','2026-01-02T03:04:05',('nobody'),('nowhere'),'','','');";
    content.replace(content.find(name), name.size(),
                    "FILE_NAME('n','2026-01-02T03:04:05',('Zo\\X\\EB','B'),('O'),'pre','sys','auth');");
    const std::string schema = "FILE_SCHEMA(('IFC2X3'));";
    content.insert(content.find(schema) + schema.size(), "\n!OWN_RECORD('what',(1,$));");
    folder.write("house.ifc", content);
    const Json header = infoOf(folder, "house.ifc", 0)["header"];
    const Json expected = {{"description", {"a test"}},
                           {"implementationLevel", "2;1"},
                           {"name", "n"},
                           {"timeStamp", "2026-01-02T03:04:05"},
                           {"author", {"Zo\u00EB", "B"}},
                           {"organization", Json::array({"O"})},
                           {"preprocessorVersion", "pre"},
                           {"originatingSystem", "sys"},
                           {"authorization", "auth"},
                           {"schemaIdentifiers", {"IFC2X3"}},
                           {"otherRecords", {{{"keyword", "!OWN_RECORD"}, {"text", "!OWN_RECORD('what',(1,$))"}}}}};
    EXPECT_EQ(header, expected);
}

TEST(InfoJsonTest, ListsProblemsWithTheirPlace) {
    const WorkFolder folder;
    folder.write("house.ifc", stepFile("#1=IFCCARTESIANPOINT((0.,1.));\n  #7=IFCNOSUCHTHING('x');"));
    const Json info = infoOf(folder, "house.ifc", 1);
    EXPECT_EQ(info["instances"], 1);
    EXPECT_EQ(info["keptRecords"], 1);
    const Json& problems = info["problems"];
    EXPECT_EQ(problems["errors"].get<int>() + problems["warnings"].get<int>(), 1);
    EXPECT_EQ(problems["codes"], (Json{{"unknown-entity", 1}}));
    ASSERT_EQ(problems["listed"].size(), 1);
    const Json& first = problems["listed"][0];
    EXPECT_EQ(first["code"], "unknown-entity");
    EXPECT_EQ(first["line"], 9);
    EXPECT_EQ(first["column"], 6); // of the keyword
    EXPECT_EQ(first["instance"], 7);
    EXPECT_EQ(first["entity"], "IFCNOSUCHTHING");
    EXPECT_EQ(first["attribute"], nullptr);
    EXPECT_EQ(first["found"], "IFCNOSUCHTHING");
    EXPECT_EQ(first["expected"], "an entity of schema IFC2X3");
    EXPECT_EQ(first["done"], "the record is kept as text");
}

/// Strictly, what the standard forbids is a failure, what is merely unusual is none; info lists it all the same.
TEST(StrictTest, FailsForDeparturesOnly) {
    const WorkFolder folder;
    const std::string records = "#1=IFCCARTESIANPOINT((0.,1.));";
    std::string anchored = stepFile(records);
    anchored.insert(anchored.find("DATA;"), "ANCHOR;\n<a>=#1;\nENDSEC;\n");
    folder.write("sound.ifc", stepFile(records));
    folder.write("anchored.ifc", anchored);
    folder.write("raw.ifc", stepFile("#1=IFCPERSON($,'Zo\xC3\xAB',$,$,$,$,$,$);")); // a note: all readers take it
    for (const char* command : {"info", "check", "dump"}) {
        for (const auto& [file, code] : {std::pair{"sound.ifc", 0}, {"anchored.ifc", 0}, {"raw.ifc", 2}}) {
            const std::string line = std::string("kpifc ") + command + ' ' + file;
            EXPECT_EQ(folder.run(line).exitCode, 0) << line;
            EXPECT_EQ(folder.run(line + " --strict").exitCode, code) << line;
        }
    }
    EXPECT_NE(folder.run("kpifc info raw.ifc --strict").out.find("note: #1 IFCPERSON.FamilyName: found UTF-8"),
              std::string::npos);
    EXPECT_NE(folder.run("kpifc dump raw.ifc --strict").err.find("1 departure, the first of them 8:16: note"),
              std::string::npos);
    EXPECT_EQ(folder.run("kpifc convert raw.ifc -o new.ifc --strict").exitCode, 2);
    EXPECT_FALSE(std::filesystem::exists(folder.path("new.ifc")));
}

/// Terminals act on control characters, so texts of files must not bring any.
TEST(InfoTextTest, IsSafeForTerminals) {
    const WorkFolder folder;
    std::string content = stepFile("#1=IFCCARTESIANPOINT((0.,1.));");
    content.replace(content.find("a test"), 6, "red: \\X\\1B[31m \\X2\\009B\\X0\\31m \x1b[32m \xff");
    const Outcome outcome = folder.run("kpifc info " + folder.write("house.ifc", content));
    EXPECT_NE(outcome.out.find("red:"), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.out.find('\x1b'), std::string::npos);
    EXPECT_EQ(outcome.out.find("\xC2\x9B"), std::string::npos);
}

TEST(InfoTextTest, FitsInto80Columns) {
    const WorkFolder folder;
    std::string records;
    for (int i = 1; i <= 200; ++i) {
        records += "#" + std::to_string(i) + "=IFCCARTESIANPOINT((0.,1.),'a parameter that is too much');\n";
    }
    std::string content = stepFile(records);
    std::string words;
    for (int i = 0; i < 50; ++i) {
        words += "m\\X\\FCller ";
    }
    content.replace(content.find("a test"), 6, words);
    for (const std::string& file : {quoted(kHouse), folder.write("house.ifc", content)}) {
        std::istringstream lines(folder.run("kpifc info " + file).out);
        std::size_t count = 0;
        for (std::string line; std::getline(lines, line); ++count) {
            const auto characters = std::count_if(
                line.begin(), line.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
            EXPECT_TRUE(characters <= 80 || line.starts_with("File ")) << line;
        }
        EXPECT_GT(count, 10u);
    }
}

} // namespace
