#include "Csv.h"

#include "Utf8.h"

namespace kpifc::csv {

void appendField(std::string& out, std::string_view text) {
    const bool hasBlankEnd = !text.empty() && (text.front() == ' ' || text.back() == ' ');
    const bool isQuoted = hasBlankEnd || text.find_first_of(",\"\r\n") != std::string_view::npos;
    out += isQuoted ? "\"" : "";
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        out += text[0] == '"' ? "\"" : "";
        out += length ? text.substr(0, length) : kReplacementCharacter;
        text.remove_prefix(length ? length : 1);
    }
    out += isQuoted ? "\"" : "";
}

} // namespace kpifc::csv
