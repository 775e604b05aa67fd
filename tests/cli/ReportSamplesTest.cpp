#include "PageInBrowser.h"
#include "PageReader.h"
#include "Samples.h"

namespace fs = std::filesystem;

namespace {

class ReportSamplesTest : public OfSamples {};

TEST_P(ReportSamplesTest, ArePagesThatCanBeRead) {
    const UnpackedFile sample(GetParam());
    const WorkFolder folder;
    const Outcome outcome = folder.run("kpifc report " + ::quoted(sample.path()) + " -o page.html");
    ASSERT_LE(outcome.exitCode, 1) << outcome.err;
    EXPECT_EQ(PageReader(contentOf(folder.path("page.html"))).faults(), "");
    EXPECT_LT(fs::file_size(folder.path("page.html")), fs::file_size(sample.path()) + 200'000);
    if (fs::file_size(sample.path()) > 3'000'000) {         // those that could be slow
        checkInBrowser(folder, "model", "page.html", "20"); // seconds, on a machine with other work
    }
}

INSTANTIATE_TEST_SUITE_P(Files, ReportSamplesTest, testing::ValuesIn(samples()), nameOf);

} // namespace
