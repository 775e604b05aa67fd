#pragma once

#include "Runner.h"

#include <gtest/gtest.h>

/// Looks at a page in a browser: a case of page/check_page.py with further arguments, which are quoted already. Skips
/// the test where there is no browser.
inline void checkInBrowser(const WorkFolder& folder, const std::string& name, const std::string& page,
                           const std::string& arguments = "") {
    const std::filesystem::path checker =
        std::filesystem::path(KP_SOURCE_DIR) / "tests" / "cli" / "page" / "check_page.py";
    const Outcome outcome =
        folder.run("python3 " + quoted(checker) + ' ' + name + ' ' + quoted(folder.path(page)) + ' ' + arguments);
    if (outcome.exitCode == 77) {
        GTEST_SKIP() << "there is no browser; cmake/packages.txt names one";
    }
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out << outcome.err;
    EXPECT_NE(outcome.out.find(" checks, 0 failed"), std::string::npos) << outcome.out;
}
