#include "Samples.h"
#include "Outcome.h"
#include "StepFiles.h"

namespace fs = std::filesystem;
using namespace KP_SDAI;

namespace {

class SamplesTest : public OfSamples {};

/// However a file is read and however often it is written, the bytes are the same; what was written reads as the same.
TEST_P(SamplesTest, AreWrittenAlikeWhereverTheyComeFrom) {
    const UnpackedFile sample(GetParam());
    KpIfcFile fromPath;
    ASSERT_EQ(fromPath.open(sample.path().string()), KP::eOk) << fromPath.error();
    const std::string written = saved(fromPath);
    EXPECT_TRUE(saved(fromPath) == written) << "writing twice gives two files";
    KpIfcFile fromMemory = opened(contentOf(sample.path()));
    EXPECT_TRUE(saved(fromMemory) == written) << "reading from memory gives another model";
    EXPECT_EQ(findings(fromMemory.report()), findings(fromPath.report()));

    const fs::path copy = temporaryPath("sample.ifc");
    ASSERT_EQ(fromPath.save(copy.string(), {.normalise = true}), KP::eOk) << fromPath.error();
    EXPECT_TRUE(contentOf(copy) == written) << "the file on disk differs";
    fs::remove(copy);

    KpIfcFile again = opened(written);
    EXPECT_EQ(again.model()->count(), fromPath.model()->count());
    EXPECT_EQ(again.model()->keptRecordCount(), fromPath.model()->keptRecordCount());
    EXPECT_TRUE(saved(again) == written) << "what was written is not written alike again";
}

/// Nothing that stays what it was is written otherwise, even where it may have changed.
TEST_P(SamplesTest, StayAsTheyAre) {
    const UnpackedFile sample(GetParam());
    const std::string content = contentOf(sample.path());
    const fs::path copy = temporaryPath("sample.ifc");
    KpIfcFile file;
    ASSERT_EQ(file.open(sample.path().string()), KP::eOk) << file.error();
    for (const bool isTouched : {false, true}) {
        if (isTouched) {
            touchAll(file);
        }
        ASSERT_EQ(file.save(copy.string()), KP::eOk) << file.error();
        EXPECT_TRUE(contentOf(copy) == content) << (isTouched ? "touched" : "untouched");
    }
    fs::remove(copy);
}

TEST_P(SamplesTest, AreReadAlikeByAnyNumberOfThreads) {
    const UnpackedFile sample(GetParam());
    const std::string content = contentOf(sample.path());
    const std::string expected = outcomeOf(content, {.threads = 1});
    for (const unsigned threads : {2u, 3u, 8u})
        for (const std::size_t partSize : {0u, 10'000u})
            ASSERT_TRUE(outcomeOf(content, {.threads = threads}, partSize) == expected)
                << threads << " threads, parts of " << partSize;
}

INSTANTIATE_TEST_SUITE_P(Files, SamplesTest, testing::ValuesIn(samples()), nameOf);

} // namespace
