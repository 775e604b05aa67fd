#include <KpIfcCore/KpIfcReport.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using namespace KP_SDAI;

KpIfcReportEntry entry(KpIfcSeverity severity, KpIfcFinding finding) {
    KpIfcReportEntry made;
    made.severity = severity;
    made.finding = finding;
    return made;
}

TEST(Report, CountsAllAndListsTheFirstOfEachKind) {
    KpIfcReport report;
    const auto limit = KpIfcReport::kListedPerKind;
    for (std::size_t i = 0; i < limit + 5; ++i) {
        KpIfcReportEntry unknown = entry(KpIfcSeverity::error, KpIfcFinding::unknownEntity);
        unknown.instanceName = i + 1;
        report.add(unknown);
    }
    report.add(entry(KpIfcSeverity::note, KpIfcFinding::textEncoding));
    EXPECT_EQ(report.entries().size(), limit + 1);
    EXPECT_EQ(report.entries()[limit - 1].instanceName, limit);
    EXPECT_EQ(report.entries()[limit].finding, KpIfcFinding::textEncoding);
    EXPECT_EQ(report.count(KpIfcFinding::unknownEntity), limit + 5);
    EXPECT_EQ(report.count(KpIfcSeverity::error), limit + 5);
    EXPECT_EQ(report.count(KpIfcSeverity::warning), 0u);
    report.clear();
    EXPECT_TRUE(report.entries().empty());
    EXPECT_EQ(report.count(KpIfcSeverity::error), 0u);
    EXPECT_EQ(report.count(KpIfcFinding::unknownEntity), 0u);
}

TEST(Report, ListsAsManyAsItIsTold) {
    KpIfcReport report(2);
    report.addUnlisted(KpIfcFinding::missingValue, KpIfcSeverity::note, 1);
    EXPECT_TRUE(report.lists(KpIfcFinding::missingValue));
    report.add(entry(KpIfcSeverity::warning, KpIfcFinding::missingValue));
    report.add(entry(KpIfcSeverity::warning, KpIfcFinding::missingValue));
    EXPECT_FALSE(report.lists(KpIfcFinding::missingValue));
    EXPECT_EQ(report.entries().size(), 1u);
    EXPECT_EQ(report.count(KpIfcFinding::missingValue), 3u);
    EXPECT_EQ(report.count(KpIfcFinding::missingValue, KpIfcSeverity::note), 1u);
    EXPECT_EQ(report.count(KpIfcSeverity::warning), 2u);
    report.clear();
    EXPECT_EQ(report.listedPerKind(), 2u);
}

TEST(Report, IsCleanWithNotesOnly) {
    KpIfcReport report;
    EXPECT_TRUE(report.isClean());
    report.add(entry(KpIfcSeverity::note, KpIfcFinding::textEncoding));
    EXPECT_TRUE(report.isClean());
    EXPECT_FALSE(report.isTruncated());
    report.add(entry(KpIfcSeverity::warning, KpIfcFinding::truncated));
    EXPECT_FALSE(report.isClean());
    EXPECT_TRUE(report.isTruncated());
    KpIfcReport failed;
    failed.add(entry(KpIfcSeverity::error, KpIfcFinding::unreadableRecord));
    EXPECT_FALSE(failed.isClean());
}

TEST(Report, EntriesSayWhereTheyBelong) {
    KpIfcReportEntry one = entry(KpIfcSeverity::warning, KpIfcFinding::wrongValue);
    one.found = "what";
    one.expected = "this";
    one.done = "kept";
    EXPECT_EQ(one.text(), "warning: found what, expected this; kept");
    one.line = 12;
    one.column = 5;
    EXPECT_EQ(one.text(), "12:5: warning: found what, expected this; kept");
    one.entity = "FILE_NAME";
    one.attribute = "time_stamp";
    EXPECT_EQ(one.text(), "12:5: warning: FILE_NAME.time_stamp: found what, expected this; kept");
    one.entity.clear();
    one.attribute.clear();
    one.instanceName = 7;
    EXPECT_EQ(one.text(), "12:5: warning: #7: found what, expected this; kept");
    one.entity = "IFCWALL";
    one.attribute = "Name";
    EXPECT_EQ(one.text(), "12:5: warning: #7 IFCWALL.Name: found what, expected this; kept");
}

TEST(Report, EveryFindingHasANameOfItsOwn) {
    std::set<std::string> names;
    const auto count = static_cast<std::size_t>(KpIfcFinding::count_);
    for (std::size_t i = 0; i < count; ++i) names.insert(findingName(static_cast<KpIfcFinding>(i)));
    EXPECT_EQ(names.size(), count);
    EXPECT_STREQ(findingName(KpIfcFinding::unknownEntity), "unknown-entity");
    EXPECT_STREQ(findingName(KpIfcFinding::notFinite), "not-finite");
    EXPECT_STREQ(findingName(KpIfcFinding::truncated), "truncated");
}

} // namespace
