#pragma once

#include <cstddef>
#include <vector>

namespace KP_SDAI {

/// Finds the ends of records without reading them, as fast as memory gives them.
class ParameterScan {
public:
    /// So many zeros must stand behind the end of what is scanned.
    static constexpr std::size_t kZeros = 64;
    enum class Result {
        sound,
        cut, ///< the record does not end before `end`
        odd  ///< whether it can be bound only reading it can tell
    };
    /// Looks at the parameters of a record from its '(' at `p` on, and moves `p` behind the ';' where they are sound:
    /// texts and parentheses are closed, no parameter is empty, and nothing but blanks stands between the last ')' and
    /// the ';'. A sound record of a known entity is always bound, whatever its values are.
    using Pass = Result (*)(const char*& p, const char* end);
    /// All that this processor can go, which differ in speed only; the fastest is the last.
    static std::vector<Pass> ways();
};

} // namespace KP_SDAI
