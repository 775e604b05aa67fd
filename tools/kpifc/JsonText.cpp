#include "JsonText.h"

#include "Utf8.h"

#include <cmath>

namespace kpifc::json {

/// True for the bytes that stand for themselves: ASCII without controls, quotes and backslashes.
static constexpr bool isPlain(char c) {
    return c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
}

static void appendEscaped(std::string& out, char c) {
    switch (c) {
    case '"': out += "\\\""; return;
    case '\\': out += "\\\\"; return;
    case '\n': out += "\\n"; return;
    case '\r': out += "\\r"; return;
    case '\t': out += "\\t"; return;
    default: {
        constexpr char digits[] = "0123456789abcdef";
        out += "\\u00";
        out += digits[static_cast<unsigned char>(c) >> 4];
        out += digits[static_cast<unsigned char>(c) & 15];
    }
    }
}

void appendText(std::string& out, std::string_view text) {
    out += '"';
    while (!text.empty()) {
        std::size_t plain = 0;
        while (plain < text.size() && isPlain(text[plain])) {
            ++plain;
        }
        out += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty()) {
            break;
        }
        const std::size_t length = utf8Length(text);
        if (length == 0) {
            out += kReplacementCharacter;
        } else if (length == 1) {
            appendEscaped(out, text[0]);
        } else {
            out += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    out += '"';
}

void appendNumber(std::string& out, double value) {
    if (!std::isfinite(value)) {
        out += "null";
        return;
    }
    char digits[32];
    const char* end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    const std::string_view text(digits, static_cast<std::size_t>(end - digits));
    out += text;
    if (text.find_first_of(".e") == std::string_view::npos) {
        out += ".0";
    }
}

} // namespace kpifc::json
