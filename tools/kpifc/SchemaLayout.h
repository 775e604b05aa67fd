#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kpifc {

/// Lines of names and declarations in 80 columns. Texts are plain ASCII: columns are characters.
class SchemaLayout {
public:
    const std::string& text() const { return m_text; }

    /// A text as it is.
    void line(std::string_view text);
    void emptyLine() { m_text += '\n'; }
    /// A label at the left and behind it, from `column` on, pieces separated by blanks, which are broken into lines
    /// between pieces only. A label that is too long for the column gets a line of its own.
    void row(std::string_view label, std::size_t column, const std::vector<std::string>& pieces);
    /// The same with names separated by commas.
    void list(std::string_view label, std::size_t column, std::vector<std::string> names);
    /// What another one holds, behind an empty line; nothing where that is empty.
    void append(const SchemaLayout& other);

private:
    std::string m_text;
};

/// The column behind indented labels; leaves out those that would bring it farther to the right than `most`.
std::size_t columnBehind(std::size_t indent, const std::vector<std::string>& labels, std::size_t most);

} // namespace kpifc
