#include "facts/Text.h"

#include <algorithm>

namespace kpifcgen {

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    return lower;
}

std::string upperCase(std::string_view text) {
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(), [](char c) { return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c; });
    return upper;
}

std::string quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

} // namespace kpifcgen
