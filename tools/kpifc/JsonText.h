#pragma once

#include <charconv>
#include <cmath>
#include <concepts>
#include <string>
#include <string_view>

/// JSON written by hand, for output of the size of the model. Everything appends to a text; the locale has no say.
namespace kpifc::json {

/// A quoted text. Bytes that are not UTF-8 become U+FFFD.
void appendText(std::string& out, std::string_view text);

/// The shortest number that reads back equal, never without a point or exponent, so that readers that tell integers
/// from reals take it for a real; null for infinities and what is no number.
inline void appendNumber(std::string& out, double value) {
    if (!std::isfinite(value)) {
        out += "null";
        return;
    }
    char digits[32];
    const std::string_view text(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    out += text;
    if (text.find_first_of(".e") == std::string_view::npos) {
        out += ".0";
    }
}

template <std::integral T>
void appendNumber(std::string& out, T value) {
    char digits[24];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

} // namespace kpifc::json
