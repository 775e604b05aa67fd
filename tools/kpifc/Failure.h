#pragma once

#include <stdexcept>

namespace kpifc {

/// What a run ended with, as the shell sees it.
enum ExitCode : int {
    kFine = 0,
    kProblems = 1,     ///< done, but what was read or written has warnings or errors
    kDifferent = 1,    ///< of kpifc diff: done, and the files are not the same
    kNothingFound = 1, ///< of kpifc query: done, and nothing was found
    kFailed = 2        ///< could not be done
};

/// Something that was asked for could not be done; the text tells the user why.
struct Failure : std::runtime_error {
    using runtime_error::runtime_error;
};

} // namespace kpifc
