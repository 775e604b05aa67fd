#include <KpIfcCore/KpStepText.h>

#include "part21/CodePages.h"
#include "part21/Spelling.h"

#include <cstdint>

namespace KP_SDAI::KpStepText {

namespace {

void appendUtf8(std::string& out, std::uint32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

/// Length of the well-formed UTF-8 sequence at the start of `text` and its code point; 0 where there is none.
std::size_t utf8Sequence(std::string_view text, std::uint32_t& c) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80) {
        c = lead;
        return 1;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
    c = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return 0;
        c = (c << 6) | (byte(i) & 0x3Fu);
    }
    const bool overlong = (length == 3 && c < 0x800) || (length == 4 && c < 0x10000);
    return overlong || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000) ? 0 : length;
}

bool isUtf8(std::string_view text) {
    std::uint32_t c = 0;
    while (!text.empty()) {
        const std::size_t length = utf8Sequence(text, c);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

/// Reads `digits` hexadecimal digits; false where there are fewer.
bool hexNumber(std::string_view text, std::size_t digits, std::uint32_t& value) {
    if (text.size() < digits) return false;
    value = 0;
    for (std::size_t i = 0; i < digits; ++i) {
        const int digit = hexDigit(text[i]);
        if (digit < 0) return false;
        value = (value << 4) | static_cast<std::uint32_t>(digit);
    }
    return true;
}

/// Length of a run of code units of `digits` hexadecimal digits up to and with \X0\; 0 where it is not well formed.
std::size_t runLength(std::string_view text, std::size_t digits) {
    std::size_t length = 0;
    while (length < text.size() && hexDigit(text[length]) >= 0) ++length;
    return length % digits == 0 && text.substr(length, 4) == "\\X0\\" ? length + 4 : 0;
}

/// Decodes a well-formed run of code units of `digits` digits, its \X0\ included.
void decodeRun(std::string_view run, std::size_t digits, std::string& out, unsigned& issues) {
    run.remove_suffix(4);
    if (run.empty()) issues |= kEmptyRun;
    if (hasLowerCase(run)) issues |= kLowerHex;
    std::uint32_t high = 0; // the first half of a surrogate pair, waiting for the second
    const auto replace = [&] {
        appendUtf8(out, 0xFFFD);
        issues |= kBadCodePoint;
    };
    for (; !run.empty(); run.remove_prefix(digits)) {
        std::uint32_t unit = 0;
        hexNumber(run, digits, unit);
        if (high && unit >= 0xDC00 && unit < 0xE000) {
            appendUtf8(out, 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00));
            issues |= kSurrogates;
            high = 0;
            continue;
        }
        if (high) replace();
        high = unit >= 0xD800 && unit < 0xDC00 ? unit : 0;
        if (high) continue;
        if ((unit >= 0xDC00 && unit < 0xE000) || unit > 0x10FFFF)
            replace();
        else
            appendUtf8(out, unit);
    }
    if (high) replace();
}

/// Length of the directive at the start of `text`, which is a reverse solidus; 0 where there is none.
std::size_t directiveLength(std::string_view text) {
    if (text.substr(0, 2) == "\\\\") return 2;
    if (text.size() >= 4 && text.substr(0, 3) == "\\S\\") return text[3] >= ' ' && text[3] <= '~' ? 4 : 0;
    if (text.size() >= 4 && text[1] == 'P' && text[2] >= 'A' && text[2] <= 'I' && text[3] == '\\') return 4;
    std::uint32_t value = 0;
    if (text.substr(0, 3) == "\\X\\") return hexNumber(text.substr(3), 2, value) ? 5 : 0;
    if (text.substr(0, 4) != "\\X2\\" && text.substr(0, 4) != "\\X4\\") return 0;
    const std::size_t run = runLength(text.substr(4), text[2] == '2' ? 4 : 8);
    return run ? run + 4 : 0;
}

} // namespace

void decode(std::string_view encoded, std::string& out, unsigned& issues) {
    out.clear();
    char page = 'A';
    int rawIsUtf8 = -1; // looked at when the first byte above 127 comes
    std::size_t i = 0;
    while (i < encoded.size()) {
        const std::string_view rest = encoded.substr(i);
        const auto byte = static_cast<unsigned char>(rest[0]);
        if (byte == '\'') {
            out += '\'';
            i += rest.size() > 1 && rest[1] == '\'' ? 2 : 1;
        } else if (byte >= 0x80) {
            if (rawIsUtf8 < 0) {
                rawIsUtf8 = isUtf8(encoded);
                issues |= rawIsUtf8 ? kRawUtf8 : kRawLatin1;
            }
            if (rawIsUtf8)
                out += rest[0];
            else
                appendUtf8(out, byte);
            ++i;
        } else if (byte != '\\') {
            if (byte == '\t' || byte == '\n' || byte == '\r')
                issues |= kLineEnd;
            else if (byte < 0x20 || byte == 0x7F)
                issues |= kControl;
            out += rest[0];
            ++i;
        } else if (rest.substr(0, 2) == "\\\\") {
            out += '\\';
            i += 2;
        } else if (const std::size_t length = directiveLength(rest); length == 0) {
            issues |= kBadDirective;
            out += '\\';
            ++i;
        } else {
            std::uint32_t value = 0;
            if (rest[1] == 'S') {
                appendUtf8(out, codePointOf(static_cast<unsigned char>(rest[3]) | 0x80u, page));
            } else if (rest[1] == 'P') {
                page = rest[2];
            } else if (rest[2] == '\\') {
                hexNumber(rest.substr(3), 2, value);
                if (hasLowerCase(rest.substr(3, 2))) issues |= kLowerHex;
                appendUtf8(out, value);
            } else {
                decodeRun(rest.substr(4, length - 4), rest[2] == '2' ? 4 : 8, out, issues);
            }
            i += length;
        }
    }
}

std::string decode(std::string_view encoded) {
    std::string out;
    unsigned issues = 0;
    decode(encoded, out, issues);
    return out;
}

void encode(std::string_view utf8, std::string& out) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    int run = 0; // hexadecimal digits of a unit in the open run; 0 where none is open
    const auto toRun = [&](int digits) {
        if (run == digits) return;
        if (run) out += "\\X0\\";
        if (digits) out += digits == 4 ? "\\X2\\" : "\\X4\\";
        run = digits;
    };
    while (!utf8.empty()) {
        std::uint32_t c = 0;
        std::size_t length = utf8Sequence(utf8, c);
        if (length == 0) {
            c = static_cast<unsigned char>(utf8[0]);
            length = 1;
        }
        if (c >= 0x20 && c < 0x7F) {
            toRun(0);
            out += static_cast<char>(c);
            if (c == '\'' || c == '\\') out += static_cast<char>(c);
        } else {
            toRun(c < 0x10000 ? 4 : 8);
            for (int shift = run * 4 - 4; shift >= 0; shift -= 4) out += kHex[(c >> shift) & 15];
        }
        utf8.remove_prefix(length);
    }
    toRun(0);
}

bool isEncoded(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == '\'') {
            if (text.substr(i, 2) != "''") return false;
            i += 2;
        } else if (text[i] == '\\') {
            const std::size_t length = directiveLength(text.substr(i));
            if (length == 0 && i + 1 == text.size()) return false; // would take the closing apostrophe with it
            i += length ? length : 1;
        } else {
            ++i;
        }
    }
    return true;
}

const char* stringEnd(const char* begin, const char* end) {
    for (const char* p = begin; p < end; ++p) {
        if (*p == '\'') {
            if (p + 1 == end || p[1] != '\'') return p + 1;
            ++p;
        } else if (*p == '\\') {
            const std::size_t length = directiveLength({p, static_cast<std::size_t>(end - p)});
            if (length) p += length - 1;
        }
    }
    return nullptr;
}

} // namespace KP_SDAI::KpStepText
