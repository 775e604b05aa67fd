#include "SmallModel.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <regex>
#include <string>

using Json = nlohmann::json;

namespace {

/// The header of the small model with further authors and another record.
std::string model() {
    std::string text = smallModel();
    text.replace(text.find("('nobody')"), 10, "('A. Meier','Zo\\X\\EB')");
    return text.insert(text.find("ENDSEC;"), "FILE_POPULATION('x');\n");
}

TEST(HeaderCommand, PrintsAllFieldsOrThoseNamed) {
    const WorkFolder folder;
    folder.write("a.ifc", model());
    EXPECT_EQ(folder.run("kpifc header a.ifc").out, "description           a test\n"
                                                    "implementation_level  2;1\n"
                                                    "name                  test.ifc\n"
                                                    "time_stamp            2026-01-02T03:04:05\n"
                                                    "author                A. Meier\n"
                                                    "                      Zoë\n"
                                                    "organization          nowhere\n"
                                                    "preprocessor_version\n"
                                                    "originating_system\n"
                                                    "authorization\n"
                                                    "schema_identifiers    IFC2X3\n"
                                                    "FILE_POPULATION('x')\n");
    EXPECT_EQ(folder.run("kpifc header a.ifc Time-Stamp AUTHOR preprocessorversion name").out,
              "2026-01-02T03:04:05\nA. Meier\nZoë\n\ntest.ifc\n");
    const Json json = Json::parse(folder.run("kpifc header a.ifc --json").out);
    EXPECT_EQ(json["author"], Json::parse(R"(["A. Meier","Zoë"])"));
    EXPECT_EQ(json["time_stamp"], "2026-01-02T03:04:05");
    EXPECT_EQ(json["other_records"][0]["text"], "FILE_POPULATION('x')");
    EXPECT_EQ(Json::parse(folder.run("kpifc header a.ifc --json name").out), Json::parse(R"({"name":"test.ifc"})"));
}

TEST(HeaderCommand, ChangesWhatIsAssignedAndNothingElse) {
    const WorkFolder folder;
    folder.write("a.ifc", model());
    const Outcome outcome =
        folder.run("kpifc header a.ifc name='Größe=1' author=X author=\"Y'Z\" organization= -o b.ifc");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "a.ifc -> b.ifc: 19 instances, 3 header fields set\n");
    EXPECT_EQ(folder.run("kpifc header b.ifc name author organization time_stamp").out,
              "Größe=1\nX\nY'Z\n\n2026-01-02T03:04:05\n");
    EXPECT_EQ(folder.run("kpifc diff a.ifc b.ifc | tail -1").out, "3 header fields changed\n");
}

TEST(HeaderCommand, SetsTheTimeWhenAsked) {
    const WorkFolder folder;
    folder.write("a.ifc", model());
    EXPECT_EQ(folder.run("kpifc header a.ifc --refresh -o b.ifc").exitCode, 0);
    const std::string out = folder.run("kpifc header b.ifc time_stamp preprocessor_version").out;
    EXPECT_TRUE(
        std::regex_match(out, std::regex("2\\d{3}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\+00:00\nkpifc [0-9.]+\n")))
        << out;
    EXPECT_EQ("kpifc " + out.substr(out.find("kpifc ") + 6), folder.run("kpifc --version").out);
}

TEST(HeaderCommand, RefusesWhatCannotBe) {
    const WorkFolder folder;
    folder.write("a.ifc", model());
    const struct {
        const char* arguments;
        const char* said;
    } cases[] = {
        {"autor", "no field \"autor\"; did you mean author"},
        {"nonsense=1 -o b.ifc", "it has description, implementation_level, name"},
        {"schema_identifiers=IFC4 -o b.ifc", "schema_identifiers cannot be changed: the instances are of that schema"},
        {"name=x name=y -o b.ifc", "name is one text"},
        {"time_stamp=x --refresh -o b.ifc", "time_stamp is one text"},
        {"name=x author -o b.ifc", "\"author\" is no assignment"},
        {"name=x", "Expected -o FILE or --in-place"},
        {"name -o b.ifc", "nothing is to be changed"},
        {"name=x --json -o b.ifc", "--json prints the header"},
        {"name=x -o a.ifc", "a.ifc is the input"},
    };
    for (const auto& [arguments, said] : cases) {
        const Outcome outcome = folder.run(std::string("kpifc header a.ifc ") + arguments);
        EXPECT_EQ(outcome.exitCode, 2) << arguments;
        EXPECT_NE(outcome.err.find(said), std::string::npos) << arguments << ": " << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_FALSE(std::filesystem::exists(folder.path("b.ifc"))) << arguments;
    }
}

} // namespace
