#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kpifc {

/// What stands for bytes that are no text: U+FFFD.
inline constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

/// Bytes of the character at the start of a text; 0 where the text is empty or does not start with well-formed UTF-8.
std::size_t utf8Length(std::string_view text);

/// A text for the terminal: well-formed UTF-8 without control characters, which could drive the terminal.
std::string printable(std::string_view text);

/// Columns that a printable text takes in a terminal.
std::size_t displayWidth(std::string_view text);

} // namespace kpifc
