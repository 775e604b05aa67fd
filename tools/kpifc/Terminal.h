#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What the terminal, or whatever stands in its place, can show.
namespace kpifc {

/// What --color says: "auto", "always" or "never".
std::string& colorMode();

/// How a piece of text is to look.
enum class Style { bold, dim, red, green, yellow, cyan };

/// The text in a style where standard output shows styles: as colorMode() says; by itself on terminals other than dumb
/// ones, unless NO_COLOR is set. The text must have its final width.
std::string styled(Style style, std::string_view text);
/// The same for standard error.
std::string styledMessage(Style style, std::string_view text);

/// Columns of the terminal that standard output is; none (0) where it is no terminal.
std::size_t terminalColumns();
/// Columns for running text: those of the terminal, but no more than read well; 80 where there is none.
std::size_t textColumns();

} // namespace kpifc
