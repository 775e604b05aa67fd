#include "Archives.h"
#include "StepFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <tuple>

using namespace KP_SDAI;
using testing::Combine;
using testing::TestWithParam;
using testing::Values;
using testing::ValuesIn;

namespace {

constexpr int kRecords = 60'000;

/// Records, now and then one that gives a finding, the others as `fill` writes them.
template <class Fill>
std::string records(Fill fill, int from = 1) {
    std::string text;
    for (int i = from; i <= kRecords; ++i) {
        const std::string name = "#" + std::to_string(i) + "=";
        text += i % 7919 == 0 ? name + "IFCNOSUCHTHING(1);" : fill(i, name);
    }
    return text;
}

std::string point(const std::string& name) {
    return name + "IFCCARTESIANPOINT((0.,1.));";
}

struct Form {
    const char* name;
    std::string (*records)();
    char lineEnd;
};

const Form kForms[] = {
    {"Lines", [] { return records([](int, const std::string& name) { return point(name) + '\n'; }); }, '\n'},
    {"CarriageReturns", [] { return records([](int, const std::string& name) { return point(name) + "\r\n"; }); },
     '\n'},
    {"OnlyCarriageReturns", [] { return records([](int, const std::string& name) { return point(name) + '\r'; }); },
     '\r'},
    {"OneLine", [] { return records([](int, const std::string& name) { return point(name); }); }, '\n'},
    {"LinesOfAMegabyte",
     [] { return records([](int i, const std::string& name) { return point(name) + (i % 30'000 == 0 ? "\n" : ""); }); },
     '\n'},
};

class FindingLinesTest : public TestWithParam<std::tuple<Form, unsigned, bool>> {};

/// However much of the file is looked at to find them: lines and columns are those that counting gives.
TEST_P(FindingLinesTest, AreThoseOfTheFile) {
    const auto& [form, threads, isCompressed] = GetParam();
    std::string content = stepFile(form.records());
    if (form.lineEnd == '\r') std::replace(content.begin(), content.end(), '\n', '\r');
    const std::string bytes = isCompressed ? gzipped(content) : content;
    KpIfcFile file;
    file.listedPerKind(KpIfcReport::kAll);
    ASSERT_EQ(file.openMemory(bytes.data(), bytes.size(), "memory", {.threads = threads}), KP::eOk) << file.error();
    ASSERT_EQ(file.report().entries().size(), kRecords / 7919u);
    for (const KpIfcReportEntry& entry : file.report().entries()) {
        const auto place = content.begin() + static_cast<std::ptrdiff_t>(entry.offset);
        const auto lineStart =
            std::find(std::make_reverse_iterator(place), content.rend(), form.lineEnd).base(); // behind that
        EXPECT_EQ(entry.line, static_cast<std::uint64_t>(1 + std::count(content.begin(), place, form.lineEnd)));
        EXPECT_EQ(entry.column, static_cast<std::uint64_t>(place - lineStart) + 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, FindingLinesTest, Combine(ValuesIn(kForms), Values(1u, 3u), Values(false, true)),
                         [](const auto& test) {
                             return std::string(std::get<0>(test.param).name) + "With" +
                                    std::to_string(std::get<1>(test.param)) +
                                    (std::get<2>(test.param) ? "Compressed" : "");
                         });

} // namespace
