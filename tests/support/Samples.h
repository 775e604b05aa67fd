#pragma once

#include "SampleFiles.h"

#include <gtest/gtest.h>

/// The real files beside the checkout as parameters of a suite, one case a file; where there are none, an empty path.
std::vector<std::filesystem::path> samples();
/// The name of a case.
std::string nameOf(const testing::TestParamInfo<std::filesystem::path>& info);

/// A suite with a case a file, skipped where there are none.
class OfSamples : public testing::TestWithParam<std::filesystem::path> {
protected:
    void SetUp() override;
};
