#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kpifc {

/// A text broken at blanks into lines of `width` columns; words that are longer get a line of their own.
std::vector<std::string> wrapped(std::string_view text, std::size_t width);

/// A piece of a longer text: running text, or lines that are to stay as they are.
struct TextBlock {
    bool isFixed;
    std::string text; ///< fixed ones with their line ends
    bool isApart;     ///< an empty line stands before it
};
/// Takes a text of paragraphs apart: lines that begin with a blank are fixed, others are joined.
std::vector<TextBlock> blocksOf(std::string_view text);
/// Such a text in lines of `width` columns.
std::string filled(std::string_view text, std::size_t width);

} // namespace kpifc
