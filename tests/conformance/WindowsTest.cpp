#include "StepFiles.h"

#include <gtest/gtest.h>

#include <ctime>
#include <ostream>
#include <random>

using namespace KP_SDAI;

namespace {

/// What the reader takes at a time. Where it takes other amounts, these tests still hold but look at other places.
constexpr std::size_t kWindow = 512 * 1024;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double kSlow = 15;
#else
constexpr double kSlow = 1;
#endif

/// What was found, without the places.
std::string kinds(const KpIfcReport& report) {
    std::string out;
    for (const KpIfcReportEntry& entry : report.entries()) {
        out += std::string(findingName(entry.finding)) + " #" + std::to_string(entry.instanceName) + ' ' +
               entry.attribute + ' ' + entry.message() + '\n';
    }
    return out;
}

/// Records that read differently when their end is not seen: texts and comments with what looks like the next record,
/// doubled apostrophes, numbers and names that would go on, damaged records.
constexpr std::string_view kTricky =
    "#1=IFCPERSON('it''s''''','a\n#99=IFCWALL(1);\nENDSEC;\n','\\S\\'\\X2\\00E9\\X0\\',('',''),$,$,$,$);\n"
    "#2=IFCCARTESIANPOINT((1.25E-10,/* \n#98=IFCWALL(2);\nENDSEC;\n*/ -17.,3));/**/\n"
    "#31415=IFCPOLYLINE((#2,#31415,\n#27182,#2));\n"
    "#3=IFCNOTHING(1,'a;b',(#2),/* ; */'\n#97=IFCWALL(3);\n');\n"
    "#4=IFCCARTESIANPOINT((1.,2.);\n"
    "#5=IFCSITE('short',#27182,5,$,$,$,$,$,.COMPLEXX.,(1,2,99999999999),(1,2,3),'1.',$,#98);\n"
    "#6=IFCCARTESIANPOINT((1.,2.))\n"
    "#7=IFCPROPERTYSINGLEVALUE('p',$,IFCLABEL\n('x'),#2);\n"
    "junk;\n"
    "#2=IFCDIRECTION((0.,1.));\n"
    "#8=IFCPERSON('open,$,$,$,$,$,$,$);\n"
    "#9=IFCPERSON('next',$,$,$,$,$,$,$);\n";

TEST(Windows, RecordsReadAlikeWhereverABorderCutsThem) {
    KpIfcFile small = opened(stepFile(kTricky));
    const std::string expected = saved(small);
    const std::string expectedKinds = kinds(small.report());
    const std::string frame = stepFile("");
    const std::size_t dataBegin = frame.find("DATA;\n") + 6;
    for (std::size_t before = 0; before <= kTricky.size() + 1; ++before) {
        const std::string blanks(kWindow - dataBegin - before, '\n');
        KpIfcFile file = opened(stepFile(blanks + std::string(kTricky)));
        const std::string cut(kTricky.substr(0, before));
        ASSERT_EQ(saved(file), expected) << "border behind ..." << cut.substr(cut.size() < 40 ? 0 : cut.size() - 40);
        ASSERT_EQ(kinds(file.report()), expectedKinds) << "border behind ..." << cut;
    }
}

TEST(Windows, HeadersReadAlikeWhereverABorderCutsThem) {
    const std::string header =
        "HEADER;\nFILE_DESCRIPTION(('it''s;'),'2;1');\n/* ; */FILE_NAME('n','',(''),(''),'','','')"
        ";\nFILE_SCHEMA(('IFC2X3'));\nENDSEC;\nDATA;\nENDSEC;\nEND-ISO-10303-21;\n";
    KpIfcFile small = opened("ISO-10303-21;\n" + header);
    const std::string expected = saved(small);
    for (std::size_t before = 0; before <= header.size(); ++before) {
        KpIfcFile file = opened("ISO-10303-21;" + std::string(kWindow - 13 - before, ' ') + header);
        ASSERT_EQ(saved(file), expected) << "border behind " << header.substr(0, before);
        ASSERT_EQ(findings(file.report()), "");
    }
}

TEST(Windows, RecordsMayBeLongerThanAWindow) {
    std::string points = "#2";
    for (int i = 0; i < 300'000; ++i) {
        points += ",#2";
    }
    const std::string longText(3'000'000, 'x');
    const std::string records = "#1=IFCPOLYLINE((" + points + "));\n#2=IFCCARTESIANPOINT((0.,0.));\n#3=IFCPERSON('" +
                                longText + "',$,$,$,$,$,$,$);\n#4=IFCNOTHING('" + longText + "');\n" +
                                "#5=IFCPERSON($,5" + std::string(1'000'000, ' ') + ",$,$,$,$,$,$);\n";
    KpIfcFile file = opened(stepFile(records + "/*" + longText + "*/\n"));
    EXPECT_EQ(file.model()->count(), 4u);
    EXPECT_TRUE(recordsOf(saved(file)) == records);

    std::string lines;
    while (lines.size() < 3 * kWindow) lines += "#9=IFCWALL();\n";
    file = opened(stepFile("#1=IFCPERSON('a',/*\n" + lines + "*/$,$,$,$,$,$,$);\n"));
    EXPECT_EQ(recordsOf(saved(file)), "#1=IFCPERSON('a',$,$,$,$,$,$,$);\n");
    ASSERT_EQ(findings(file.report()), "");
    file = opened(stepFile(records));

    const std::filesystem::path path = temporaryPath("long_records.ifc");
    ASSERT_EQ(file.save(path.string()), KP::eOk) << file.error();
    KpIfcFile fromDisk;
    ASSERT_EQ(fromDisk.open(path.string()), KP::eOk) << fromDisk.error();
    EXPECT_TRUE(recordsOf(saved(fromDisk)) == records);
    EXPECT_EQ(fromDisk.size(), std::filesystem::file_size(path));
    std::filesystem::remove(path);
}

TEST(Windows, FindingsHaveTheirPlacesInLargeFiles) {
    std::string records;
    for (int i = 1; i <= 40'000; ++i) {
        records += '#' + std::to_string(i) + "=IFCCARTESIANPOINT((0.,0.));\n";
    }
    const std::size_t lines = 7;
    records += "#40001=IFCVECTOR($,\n  'x');\n";
    const KpIfcFile file = opened(stepFile(records));
    ASSERT_EQ(file.report().entries().size(), 1u);
    EXPECT_EQ(file.report().entries()[0].line, lines + 40'002);
    EXPECT_EQ(file.report().entries()[0].column, 3u);
}

struct Hostile {
    const char* name;
    const char* before;
    const char* repeated;
    std::size_t bytes;
    const char* behind = "";
};

void PrintTo(const Hostile& hostile, std::ostream* out) {
    *out << hostile.name;
}

class HostileTest : public testing::TestWithParam<Hostile> {};

/// Reading and writing take time in proportion to the bytes, whatever they are: each of these takes a fraction of a
/// second, and minutes where the time grows with the square of the bytes.
TEST_P(HostileTest, TakesLittleTime) {
    const Hostile& hostile = GetParam();
    std::string records = hostile.before;
    while (records.size() < hostile.bytes) {
        records += hostile.repeated;
    }
    const std::string content = stepFile(records + hostile.behind + '\n');
    const std::clock_t begin = std::clock();
    KpIfcFile file = opened(content);
    const double read = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    EXPECT_LT(read, 4 * kSlow);
    const std::string written = saved(file);
    const double all = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    EXPECT_LT(all, 6 * kSlow);
    EXPECT_FALSE(file.report().isClean());
    opened(written);
}

constexpr std::size_t kMegabyte = 1'000'000;

INSTANTIATE_TEST_SUITE_P(
    Inputs, HostileTest,
    testing::Values(Hostile{"parentheses", "", "(", kMegabyte}, Hostile{"apostrophes", "", "'", kMegabyte + 1},
                    Hostile{"comments", "", "/*", kMegabyte}, Hostile{"solidi", "", "/", kMegabyte},
                    Hostile{"semicolons", "", ";", kMegabyte}, Hostile{"hashes", "", "#", kMegabyte},
                    Hostile{"zeros_in_a_name", "#", "0", kMegabyte},
                    Hostile{"digits", "#1=IFCVECTOR($,", "9", kMegabyte},
                    Hostile{"lists", "#1=IFCPOLYLINE(", "(", kMegabyte},
                    Hostile{"typed", "#1=IFCPROPERTYSINGLEVALUE('',$,", "IFCLABEL(", kMegabyte},
                    Hostile{"directives", "#1=IFCPERSON('", "\\X2\\", kMegabyte},
                    Hostile{"long_run", "#1=IFCPERSON('\\X2\\", "00E9", kMegabyte},
                    Hostile{"solidi_in_text", "#1=IFCPERSON('", "\\S", kMegabyte},
                    Hostile{"commas", "#1=IFCPERSON(", ",", kMegabyte},
                    Hostile{"dangling", "#1=IFCPOLYLINE((#1", ",#77", kMegabyte},
                    Hostile{"no_semicolon", "", "#1=IFCWALL($,$)\n", 5 * kMegabyte},
                    Hostile{"no_semicolon_and_open", "", "#1=IFCWALL(5,(\n", 5 * kMegabyte},
                    Hostile{"no_semicolon_on_one_line", "", "#1=IFCWALL(5,(", 5 * kMegabyte},
                    Hostile{"odd_apostrophes", "", "#1=IFCWALL('\n", 5 * kMegabyte},
                    Hostile{"odd_apostrophes_in_texts", "", "#1=IFCPERSON('a'',$,$);\n", 5 * kMegabyte},
                    Hostile{"open_comments", "", "#1=IFCWALL(/*\n", 5 * kMegabyte},
                    Hostile{"comments_of_one_end", "", "#1=IFCWALL(/*\n", 5 * kMegabyte, "*/"},
                    Hostile{"one_name", "", "#1=IFCCARTESIANPOINT((0.,0.));\n", 5 * kMegabyte},
                    Hostile{"kept_fields", "", "#1=IFCCALENDARDATE('',.X.,#9);\n", 5 * kMegabyte},
                    Hostile{"junk_lines", "", "junk\n", 5 * kMegabyte},
                    Hostile{"sections", ";", "ENDSEC;\nDATA;\n", 5 * kMegabyte}),
    [](const testing::TestParamInfo<Hostile>& hostile) { return std::string(hostile.param.name); });

TEST(Hostile, HeadersTakeLittleTime) {
    for (const char* repeated : {"(", "'", "/*", "X;", "X('", "((", "FILE_NAME('a');\n"}) {
        std::string content = "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION(";
        while (content.size() < kMegabyte) {
            content += repeated;
        }
        const std::clock_t begin = std::clock();
        KpIfcFile file;
        EXPECT_EQ(file.openMemory(content.data(), content.size()), KP::eInvalidInput) << repeated;
        EXPECT_LT(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC, 4 * kSlow) << repeated;
    }
}

TEST(Hostile, ScatteredNamesTakeLittleTime) {
    std::mt19937_64 random(1);
    std::string records;
    while (records.size() < 5 * kMegabyte) {
        const std::string name = std::to_string(1 + random() % (std::uint64_t{1} << (random() % 63 + 1)));
        records += '#' + name + "=IFCPOLYLINE((#" + std::to_string(random()) + "));\n";
    }
    const std::string content = stepFile(records);
    const std::clock_t begin = std::clock();
    KpIfcFile file = opened(content);
    EXPECT_LT(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC, 6 * kSlow);
    EXPECT_GT(file.model()->count(), 50'000u);
}

} // namespace
