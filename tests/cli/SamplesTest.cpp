#include "Samples.h"
#include "Runner.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

const fs::path kShared = KP_SHARED_DIR;

/// "#15.Name": all attributes of up to three instances of each entity in a dump.
std::vector<std::string> firstAttributes(const std::string& dump) {
    std::map<std::string, int> counts;
    std::vector<std::string> names;
    for (const std::string& line : linesOf(dump)) {
        const auto instance = nlohmann::ordered_json::parse(line);
        if (++counts[instance["type"]] > 3) {
            continue;
        }
        for (const auto& [attribute, value] : instance["attributes"].items()) {
            names.push_back('#' + instance["id"].dump() + '.' + attribute);
        }
    }
    return names;
}

/// The checkers read files and schema facts on their own, in Python, and know nothing of this code.
class SamplesTest : public OfSamples {
protected:
    void SetUp() override {
        OfSamples::SetUp();
        if (!fs::exists(kShared / "check")) {
            GTEST_SKIP() << "no checkers in " << kShared / "check";
        }
        if (m_folder.run("python3 --version").exitCode != 0) {
            GTEST_SKIP() << "no python3";
        }
    }

    void expectNoDifferences(const std::string& checker, const std::string& arguments) const {
        const Outcome checked = m_folder.run("python3 -B " + ::quoted(kShared / "check" / checker) + ' ' + arguments);
        EXPECT_EQ(checked.exitCode, 0) << checked.out << checked.err;
        EXPECT_NE(checked.out.find(" 0 differences"), std::string::npos) << checked.out;
    }

    const WorkFolder m_folder;
    const std::string m_facts = ::quoted(kShared / "schema" / "ifc2x3.schema");
};

TEST_P(SamplesTest, AreWrittenBackWithoutLoss) {
    const UnpackedFile sample(GetParam());
    const std::string file = ::quoted(sample.path());
    const Outcome converted = m_folder.run("kpifc convert " + file + " --normalise -o new.ifc");
    ASSERT_LE(converted.exitCode, 1) << converted.err;
    expectNoDifferences("roundtrip.py", file + " new.ifc " + m_facts);
}

TEST_P(SamplesTest, AreDumpedAsTheFileSays) {
    const UnpackedFile sample(GetParam());
    const std::string file = ::quoted(sample.path());
    const Outcome dumped = m_folder.run("kpifc dump --inverse " + file + " >dump.jsonl");
    ASSERT_LE(dumped.exitCode, 1) << dumped.err;
    // The checker compares what is there; nothing may be left out.
    EXPECT_EQ(m_folder.run("grep -cv '},\"inverse\":{.*}}$' dump.jsonl").out, "0\n");
    expectNoDifferences("check_dump.py", file + ' ' + m_facts + " dump.jsonl");
    // Without inverse attributes, each line is the same up to there.
    const std::string plain = "kpifc dump " + file + " >plain.jsonl; ";
    EXPECT_EQ(m_folder.run(plain + "sed 's/,\"inverse\":{.*}}$/}/' dump.jsonl | cmp - plain.jsonl").exitCode, 0);
}

/// The tree follows relations; the dump tells by inverse attributes what is in it.
TEST_P(SamplesTest, HaveEverythingOnceInTheTree) {
    const UnpackedFile sample(GetParam());
    const std::string file = ::quoted(sample.path());
    const auto tree = nlohmann::json::parse(m_folder.run("kpifc tree --json --elements " + file).out);
    std::map<std::uint64_t, int> shown;
    std::vector<const nlohmann::json*> open = {&tree["projects"], &tree["others"]};
    while (!open.empty()) {
        const nlohmann::json& nodes = *open.back();
        open.pop_back();
        for (const nlohmann::json& node : nodes) {
            if (!node.contains("shownAbove")) {
                ++shown[node["id"]];
                open.push_back(&node.at("children"));
                open.push_back(&node.at("elements"));
            }
        }
    }
    std::map<std::uint64_t, int> expected;
    std::map<std::string, int> uncontained;
    for (const std::string& line : linesOf(m_folder.run("kpifc dump --inverse " + file).out)) {
        const auto instance = nlohmann::json::parse(line);
        const nlohmann::json& inverse = instance["inverse"];
        const auto has = [&inverse](const char* name) { return inverse.contains(name) && !inverse[name].empty(); };
        const bool isSpatial = inverse.contains("ContainsElements");
        const bool isFeature = inverse.contains("VoidsElements") || inverse.contains("ProjectsElements");
        const bool isElement = inverse.contains("HasOpenings") && !isFeature;
        if (instance["type"] == "IfcProject" || isSpatial || has("IsDecomposedBy") || has("Decomposes")) {
            expected[instance["id"]] = 1;
        } else if (isElement && !has("ContainedInStructure")) {
            ++uncontained[instance["type"]];
        }
        if (instance["type"] == "IfcRelContainedInSpatialStructure") {
            for (const nlohmann::json& element : instance["attributes"]["RelatedElements"]) {
                expected[element["ref"]] = 1;
            }
        }
    }
    EXPECT_TRUE(shown == expected) << shown.size() << " shown, " << expected.size() << " expected";
    std::map<std::string, int> counted;
    for (const nlohmann::json& group : tree["uncontained"]) {
        counted[group["type"]] = group["count"];
    }
    EXPECT_EQ(counted, uncontained);
}

/// Every value that the independent walk over the records finds, and no other one.
TEST_P(SamplesTest, HaveThePropertiesThatTheRecordsSay) {
    const UnpackedFile sample(GetParam());
    const std::string file = ::quoted(sample.path());
    const Outcome outcome = m_folder.run("kpifc props --json " + file + " >props.jsonl");
    ASSERT_LE(outcome.exitCode, 1) << outcome.err;
    const fs::path checker = fs::path(KP_SOURCE_DIR) / "tests" / "cli" / "check_props.py";
    const Outcome checked = m_folder.run("python3 -B " + ::quoted(checker) + ' ' + ::quoted(kShared / "check") + ' ' +
                                         file + ' ' + m_facts + " props.jsonl");
    EXPECT_EQ(checked.exitCode, 0) << checked.out << checked.err;
    EXPECT_NE(checked.out.find(" 0 differences"), std::string::npos) << checked.out;
}

/// Parts are whole and hold what belongs to them, by an independent walk over the records.
TEST_P(SamplesTest, ArePartedIntoWholeModels) {
    const UnpackedFile sample(GetParam());
    if (fs::file_size(sample.path()) > 10'000'000) {
        GTEST_SKIP() << "the checker takes long; others are like it";
    }
    const std::string file = ::quoted(sample.path());
    std::map<std::string, std::string> choices = {{"IfcWall", "IfcWall"}, {"IfcTypeObject", "IfcTypeObject"}};
    for (const std::string& line : linesOf(m_folder.run("kpifc dump " + file).out)) {
        const auto instance = nlohmann::json::parse(line);
        const std::string type = instance["type"];
        if (type == "IfcBuildingStorey" || type == "IfcCartesianPoint" || type == "IfcRelContainedInSpatialStructure") {
            choices.try_emplace(type, '#' + instance["id"].dump());
        } else if (type == "IfcWallStandardCase" || type == "IfcSlab" || type == "IfcBeam" ||
                   type == "IfcFlowSegment") {
            choices.try_emplace("one by #", '#' + instance["id"].dump());
            choices["one by GlobalId"] = instance["attributes"]["GlobalId"];
        }
    }
    if (fs::file_size(sample.path()) > 1'000'000) { // some are enough where the checker takes long
        std::erase_if(choices, [](const auto& choice) {
            return choice.first != "IfcCartesianPoint" && choice.first != "one by GlobalId";
        });
    }
    std::string parts;
    for (const auto& [what, name] : choices) {
        const std::string part = ::quoted(what + ".ifc");
        const Outcome outcome = m_folder.run("kpifc extract " + file + ' ' + ::quoted(name) + " -o " + part);
        if (outcome.err.find("there is no instance of") == std::string::npos) {
            ASSERT_LE(outcome.exitCode, 1) << outcome.err;
            parts += ' ' + ::quoted(name) + ' ' + part;
        }
    }
    const fs::path checker = fs::path(KP_SOURCE_DIR) / "tests" / "cli" / "check_extract.py";
    const Outcome checked = m_folder.run("python3 -B " + ::quoted(checker) + ' ' + ::quoted(kShared / "check") + ' ' +
                                         file + ' ' + m_facts + parts);
    EXPECT_EQ(checked.exitCode, 0) << checked.out << checked.err;
    EXPECT_NE(checked.out.find(" 0 wrong"), std::string::npos) << checked.out;
}

/// Sets attributes of the first instances of every entity to what they are.
TEST_P(SamplesTest, StayAsTheyAreWhenSetToWhatGetPrints) {
    const UnpackedFile sample(GetParam());
    const std::string file = ::quoted(sample.path());
    const std::vector<std::string> names = firstAttributes(m_folder.run("kpifc dump " + file).out);
    ASSERT_FALSE(names.empty());
    // Read by the shell from a file: too many for one command line of sh -c.
    std::string asked = "set --";
    for (const std::string& name : names) {
        asked += ' ' + ::quoted(name);
    }
    m_folder.write("asked", asked);
    const std::vector<std::string> values = linesOf(m_folder.run(". ./asked; kpifc get " + file + " \"$@\"").out);
    ASSERT_EQ(values.size(), names.size());
    std::string assignments = "set --";
    for (std::size_t i = 0; i < names.size(); ++i) {
        const bool isBadGlobalId = names[i].ends_with(".GlobalId") && values[i].size() != 24; // set refuses those
        if (!isBadGlobalId && values[i].size() < 100'000) {                                   // systems limit arguments
            assignments += ' ' + ::quoted(names[i] + '=' + values[i]);
        }
    }
    m_folder.write("assignments", assignments);
    const Outcome outcome = m_folder.run(". ./assignments; kpifc set " + file + " \"$@\" -o new.ifc");
    ASSERT_LE(outcome.exitCode, 1) << outcome.err;
    const Outcome converted = m_folder.run("kpifc convert " + file + " -o converted.ifc");
    EXPECT_EQ(outcome.exitCode, converted.exitCode);
    EXPECT_TRUE(m_folder.run("kpifc dump new.ifc").out == m_folder.run("kpifc dump converted.ifc").out);
    if (converted.err.find("read with") == std::string::npos) { // else set replaces text that attributes cannot hold
        EXPECT_TRUE(contentOf(m_folder.path("new.ifc")) == contentOf(m_folder.path("converted.ifc")));
    }
}

INSTANTIATE_TEST_SUITE_P(Files, SamplesTest, testing::ValuesIn(samples()), nameOf);

} // namespace
