#include "LazyComparison.h"
#include "Samples.h"
#include "StepFiles.h"

namespace {

class LazySamplesTest : public OfSamples {};

TEST_P(LazySamplesTest, GiveWhatFullReadingGives) {
    const UnpackedFile sample(GetParam());
    for (unsigned seed = 0; seed < 2; ++seed) {
        compareWithFullReading(contentOf(sample.path()), seed);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, LazySamplesTest, testing::ValuesIn(samples()), nameOf);

} // namespace
