#pragma once

#include <charconv>
#include <concepts>
#include <string>
#include <string_view>

/// JSON written by hand, for output of the size of the model. Everything appends to a text; the locale has no say.
namespace kpifc::json {

/// A quoted text. Bytes that are not UTF-8 become U+FFFD.
void appendText(std::string& out, std::string_view text);

/// The shortest number that reads back equal, with a point or an exponent, so that it is seen to be a real; null for
/// infinities and what is no number.
void appendNumber(std::string& out, double value);

template <std::integral T>
void appendNumber(std::string& out, T value) {
    char digits[24];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

} // namespace kpifc::json
