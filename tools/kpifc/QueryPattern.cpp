#include "QueryExpression.h"

#include <algorithm>
#include <cstddef>

namespace kpifc::query {

namespace {

/// About how many states a pattern needs: repetitions are written out one by one.
std::size_t sizeOf(const std::string& pattern) {
    std::size_t size = std::max<std::size_t>(pattern.size(), 1);
    for (std::size_t i = pattern.find('{'); i != std::string::npos; i = pattern.find('{', i + 1)) {
        std::size_t most = 1;
        for (std::size_t at = i + 1, number = 0; at < pattern.size() && number < Pattern::kLargest; ++at) {
            const char c = pattern[at];
            if ((c < '0' || c > '9') && c != ',') {
                break;
            }
            number = c == ',' ? 0 : number * 10 + static_cast<std::size_t>(c - '0');
            most = std::max(most, number);
        }
        size = std::min(size * most, 2 * Pattern::kLargest);
    }
    return size;
}

} // namespace

Pattern::Pattern(const std::string& text, bool ignoresCase) {
    if (!ignoresCase && text.find_first_of("\\^$.|?*+()[]{}") == std::string::npos) {
        m_part = text;
        return;
    }
    // What makes and runs expressions recurses over their states, and over parentheses more deeply.
    if (text.size() > kLongest || sizeOf(text) > kLargest) {
        throw std::regex_error(std::regex_constants::error_space);
    }
    auto flags = std::regex::ECMAScript | std::regex::optimize;
    if (ignoresCase) {
        flags |= std::regex::icase;
    }
#ifdef __GLIBCXX__
    flags |= std::regex_constants::__polynomial; // the other way recurses for every character of a text
#endif
    m_regex = std::make_unique<std::regex>(text, flags);
}

bool Pattern::isIn(const std::string& text) const {
    return m_regex ? std::regex_search(text, *m_regex) : text.find(m_part) != std::string::npos;
}

} // namespace kpifc::query
