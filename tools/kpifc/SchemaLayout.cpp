#include "SchemaLayout.h"

#include <algorithm>

namespace kpifc {

static constexpr std::size_t kColumns = 80;
static constexpr std::size_t kGap = 2;

void SchemaLayout::line(std::string_view text) {
    m_text += text;
    m_text += '\n';
}

void SchemaLayout::row(std::string_view label, std::size_t column, const std::vector<std::string>& pieces) {
    m_text += label;
    if (!label.empty() && label.size() + kGap > column) {
        m_text += '\n';
        label = "";
    }
    m_text.append(column - label.size(), ' ');
    std::size_t end = column; // of the line so far
    for (const std::string& piece : pieces) {
        if (end > column && end + 1 + piece.size() > kColumns) {
            // A piece for which there is no room even so begins farther to the left.
            end = std::min(column, kColumns - std::min(piece.size(), kColumns));
            m_text += '\n';
            m_text.append(end, ' ');
        } else if (end > column) {
            m_text += ' ';
            ++end;
        }
        m_text += piece;
        end += piece.size();
    }
    m_text += '\n';
}

void SchemaLayout::list(std::string_view label, std::size_t column, std::vector<std::string> names) {
    for (std::size_t i = 0; i + 1 < names.size(); ++i) {
        names[i] += ',';
    }
    row(label, column, names);
}

void SchemaLayout::append(const SchemaLayout& other) {
    if (!other.m_text.empty()) {
        emptyLine();
        m_text += other.m_text;
    }
}

std::size_t columnBehind(std::size_t indent, const std::vector<std::string>& labels, std::size_t most) {
    std::size_t column = 0;
    for (const std::string& label : labels) {
        if (const std::size_t behind = indent + label.size() + kGap; behind <= most) {
            column = std::max(column, behind);
        }
    }
    return column == 0 ? most : column;
}

} // namespace kpifc
