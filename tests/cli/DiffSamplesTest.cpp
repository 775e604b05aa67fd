#include "Renumbered.h"
#include "Runner.h"
#include "Samples.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

namespace {

class DiffSamplesTest : public OfSamples {
protected:
    const WorkFolder m_folder;
};

TEST_P(DiffSamplesTest, FindsNothingWhereOnlyNamesAndOrderChanged) {
    const UnpackedFile sample(GetParam());
    m_folder.write("b.ifc", renumbered(contentOf(sample.path()), 1));
    const Outcome outcome = m_folder.run("kpifc diff " + ::quoted(sample.path()) + " b.ifc");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out.substr(0, 2000);
    EXPECT_EQ(outcome.out, "no differences\n");
}

/// Another value in the notation of STEP files; empty where there is no simple one.
std::string anotherValue(const Json& value, std::mt19937& random) {
    const std::string number = std::to_string(random() % 1000 + 1) + ".125";
    const auto isLower = [](unsigned char c) { return std::islower(c) != 0; };
    if (value.is_number_float()) {
        return number;
    }
    if (value.is_string()) { // no literal of an enumeration, no GlobalId
        const auto& text = value.get_ref<const std::string&>();
        return text.size() != 22 && std::any_of(text.begin(), text.end(), isLower) ? "'edited " + number + "'" : "";
    }
    if (!value.is_array() || value.empty() ||
        !std::all_of(value.begin(), value.end(), [](const Json& member) { return member.is_number_float(); })) {
        return "";
    }
    std::string list;
    const std::size_t place = random() % value.size();
    for (std::size_t i = 0; i < value.size(); ++i) {
        list += (i ? "," : "(") + (i == place ? number : value[i].dump());
    }
    return list + ')';
}

/// Attributes of some instances, set by kpifc set, and nothing else.
TEST_P(DiffSamplesTest, FindsExactlyWhatWasSet) {
    constexpr std::size_t kEdits = 20;
    const UnpackedFile sample(GetParam());
    const std::string file = ::quoted(sample.path());
    const std::vector<std::string> dump = linesOf(m_folder.run("kpifc dump " + file).out);
    std::mt19937 random(static_cast<unsigned>(dump.size()));
    std::set<std::pair<std::uint64_t, std::string>> expected;
    std::set<std::uint64_t> edited;
    std::string assignments;
    for (int attempt = 0; attempt < 2000 && expected.size() < kEdits; ++attempt) {
        const Json instance = Json::parse(dump[random() % dump.size()]);
        const Json& attributes = instance["attributes"];
        if (attributes.empty() || edited.count(instance["id"].get<std::uint64_t>())) {
            continue;
        }
        const auto attribute = std::next(attributes.begin(), static_cast<std::ptrdiff_t>(random() % attributes.size()));
        const std::string value = anotherValue(*attribute, random);
        if (!value.empty() && edited.insert(instance["id"].get<std::uint64_t>()).second) {
            expected.emplace(instance["id"], attribute.key());
            assignments += " '#" + instance["id"].dump() + '.' + attribute.key() + "='" + ::quoted(value);
        }
    }
    ASSERT_FALSE(expected.empty());
    const Outcome set = m_folder.run("kpifc set " + file + assignments + " -o b.ifc");
    ASSERT_LE(set.exitCode, 1) << set.err;
    const Outcome outcome = m_folder.run("kpifc diff --json " + file + " b.ifc");
    EXPECT_EQ(outcome.exitCode, 1) << outcome.err;
    const Json found = Json::parse(outcome.out);
    EXPECT_EQ(found["added"], Json::array());
    EXPECT_EQ(found["removed"], Json::array());
    EXPECT_EQ(found["header"], Json::array());
    std::set<std::pair<std::uint64_t, std::string>> changed;
    for (const Json& instance : found["changed"]) {
        EXPECT_EQ(instance["a"], instance["b"]);
        for (const Json& attribute : instance["attributes"]) {
            changed.emplace(instance["a"], attribute["name"]);
        }
    }
    EXPECT_EQ(changed, expected);
}

INSTANTIATE_TEST_SUITE_P(Files, DiffSamplesTest, testing::ValuesIn(samples()), nameOf);

} // namespace
