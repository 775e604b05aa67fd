#include <KpIfcCore/KpStepText.h>

#include <charconv>
#include <cstdint>
#include <cstring>

namespace KP_SDAI::KpStepText {

namespace {

/// The upper halves of ISO 8859-1 to -9, pages A to I of \P.\: code points of bytes A0 to FF; 0 where none is assigned.
/// Parts 1 and 9 are computed, see below.
constexpr std::uint16_t kPages[7][96] = {
    // ISO 8859-2
    {0x00A0, 0x0104, 0x02D8, 0x0141, 0x00A4, 0x013D, 0x015A, 0x00A7, 0x00A8, 0x0160, 0x015E, 0x0164, 0x0179, 0x00AD,
     0x017D, 0x017B, 0x00B0, 0x0105, 0x02DB, 0x0142, 0x00B4, 0x013E, 0x015B, 0x02C7, 0x00B8, 0x0161, 0x015F, 0x0165,
     0x017A, 0x02DD, 0x017E, 0x017C, 0x0154, 0x00C1, 0x00C2, 0x0102, 0x00C4, 0x0139, 0x0106, 0x00C7, 0x010C, 0x00C9,
     0x0118, 0x00CB, 0x011A, 0x00CD, 0x00CE, 0x010E, 0x0110, 0x0143, 0x0147, 0x00D3, 0x00D4, 0x0150, 0x00D6, 0x00D7,
     0x0158, 0x016E, 0x00DA, 0x0170, 0x00DC, 0x00DD, 0x0162, 0x00DF, 0x0155, 0x00E1, 0x00E2, 0x0103, 0x00E4, 0x013A,
     0x0107, 0x00E7, 0x010D, 0x00E9, 0x0119, 0x00EB, 0x011B, 0x00ED, 0x00EE, 0x010F, 0x0111, 0x0144, 0x0148, 0x00F3,
     0x00F4, 0x0151, 0x00F6, 0x00F7, 0x0159, 0x016F, 0x00FA, 0x0171, 0x00FC, 0x00FD, 0x0163, 0x02D9},
    // ISO 8859-3
    {0x00A0, 0x0126, 0x02D8, 0x00A3, 0x00A4, 0x0000, 0x0124, 0x00A7, 0x00A8, 0x0130, 0x015E, 0x011E, 0x0134, 0x00AD,
     0x0000, 0x017B, 0x00B0, 0x0127, 0x00B2, 0x00B3, 0x00B4, 0x00B5, 0x0125, 0x00B7, 0x00B8, 0x0131, 0x015F, 0x011F,
     0x0135, 0x00BD, 0x0000, 0x017C, 0x00C0, 0x00C1, 0x00C2, 0x0000, 0x00C4, 0x010A, 0x0108, 0x00C7, 0x00C8, 0x00C9,
     0x00CA, 0x00CB, 0x00CC, 0x00CD, 0x00CE, 0x00CF, 0x0000, 0x00D1, 0x00D2, 0x00D3, 0x00D4, 0x0120, 0x00D6, 0x00D7,
     0x011C, 0x00D9, 0x00DA, 0x00DB, 0x00DC, 0x016C, 0x015C, 0x00DF, 0x00E0, 0x00E1, 0x00E2, 0x0000, 0x00E4, 0x010B,
     0x0109, 0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB, 0x00EC, 0x00ED, 0x00EE, 0x00EF, 0x0000, 0x00F1, 0x00F2, 0x00F3,
     0x00F4, 0x0121, 0x00F6, 0x00F7, 0x011D, 0x00F9, 0x00FA, 0x00FB, 0x00FC, 0x016D, 0x015D, 0x02D9},
    // ISO 8859-4
    {0x00A0, 0x0104, 0x0138, 0x0156, 0x00A4, 0x0128, 0x013B, 0x00A7, 0x00A8, 0x0160, 0x0112, 0x0122, 0x0166, 0x00AD,
     0x017D, 0x00AF, 0x00B0, 0x0105, 0x02DB, 0x0157, 0x00B4, 0x0129, 0x013C, 0x02C7, 0x00B8, 0x0161, 0x0113, 0x0123,
     0x0167, 0x014A, 0x017E, 0x014B, 0x0100, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C6, 0x012E, 0x010C, 0x00C9,
     0x0118, 0x00CB, 0x0116, 0x00CD, 0x00CE, 0x012A, 0x0110, 0x0145, 0x014C, 0x0136, 0x00D4, 0x00D5, 0x00D6, 0x00D7,
     0x00D8, 0x0172, 0x00DA, 0x00DB, 0x00DC, 0x0168, 0x016A, 0x00DF, 0x0101, 0x00E1, 0x00E2, 0x00E3, 0x00E4, 0x00E5,
     0x00E6, 0x012F, 0x010D, 0x00E9, 0x0119, 0x00EB, 0x0117, 0x00ED, 0x00EE, 0x012B, 0x0111, 0x0146, 0x014D, 0x0137,
     0x00F4, 0x00F5, 0x00F6, 0x00F7, 0x00F8, 0x0173, 0x00FA, 0x00FB, 0x00FC, 0x0169, 0x016B, 0x02D9},
    // ISO 8859-5
    {0x00A0, 0x0401, 0x0402, 0x0403, 0x0404, 0x0405, 0x0406, 0x0407, 0x0408, 0x0409, 0x040A, 0x040B, 0x040C, 0x00AD,
     0x040E, 0x040F, 0x0410, 0x0411, 0x0412, 0x0413, 0x0414, 0x0415, 0x0416, 0x0417, 0x0418, 0x0419, 0x041A, 0x041B,
     0x041C, 0x041D, 0x041E, 0x041F, 0x0420, 0x0421, 0x0422, 0x0423, 0x0424, 0x0425, 0x0426, 0x0427, 0x0428, 0x0429,
     0x042A, 0x042B, 0x042C, 0x042D, 0x042E, 0x042F, 0x0430, 0x0431, 0x0432, 0x0433, 0x0434, 0x0435, 0x0436, 0x0437,
     0x0438, 0x0439, 0x043A, 0x043B, 0x043C, 0x043D, 0x043E, 0x043F, 0x0440, 0x0441, 0x0442, 0x0443, 0x0444, 0x0445,
     0x0446, 0x0447, 0x0448, 0x0449, 0x044A, 0x044B, 0x044C, 0x044D, 0x044E, 0x044F, 0x2116, 0x0451, 0x0452, 0x0453,
     0x0454, 0x0455, 0x0456, 0x0457, 0x0458, 0x0459, 0x045A, 0x045B, 0x045C, 0x00A7, 0x045E, 0x045F},
    // ISO 8859-6
    {0x00A0, 0x0000, 0x0000, 0x0000, 0x00A4, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x060C, 0x00AD,
     0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x061B,
     0x0000, 0x0000, 0x0000, 0x061F, 0x0000, 0x0621, 0x0622, 0x0623, 0x0624, 0x0625, 0x0626, 0x0627, 0x0628, 0x0629,
     0x062A, 0x062B, 0x062C, 0x062D, 0x062E, 0x062F, 0x0630, 0x0631, 0x0632, 0x0633, 0x0634, 0x0635, 0x0636, 0x0637,
     0x0638, 0x0639, 0x063A, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0640, 0x0641, 0x0642, 0x0643, 0x0644, 0x0645,
     0x0646, 0x0647, 0x0648, 0x0649, 0x064A, 0x064B, 0x064C, 0x064D, 0x064E, 0x064F, 0x0650, 0x0651, 0x0652, 0x0000,
     0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000},
    // ISO 8859-7
    {0x00A0, 0x2018, 0x2019, 0x00A3, 0x20AC, 0x20AF, 0x00A6, 0x00A7, 0x00A8, 0x00A9, 0x037A, 0x00AB, 0x00AC, 0x00AD,
     0x0000, 0x2015, 0x00B0, 0x00B1, 0x00B2, 0x00B3, 0x0384, 0x0385, 0x0386, 0x00B7, 0x0388, 0x0389, 0x038A, 0x00BB,
     0x038C, 0x00BD, 0x038E, 0x038F, 0x0390, 0x0391, 0x0392, 0x0393, 0x0394, 0x0395, 0x0396, 0x0397, 0x0398, 0x0399,
     0x039A, 0x039B, 0x039C, 0x039D, 0x039E, 0x039F, 0x03A0, 0x03A1, 0x0000, 0x03A3, 0x03A4, 0x03A5, 0x03A6, 0x03A7,
     0x03A8, 0x03A9, 0x03AA, 0x03AB, 0x03AC, 0x03AD, 0x03AE, 0x03AF, 0x03B0, 0x03B1, 0x03B2, 0x03B3, 0x03B4, 0x03B5,
     0x03B6, 0x03B7, 0x03B8, 0x03B9, 0x03BA, 0x03BB, 0x03BC, 0x03BD, 0x03BE, 0x03BF, 0x03C0, 0x03C1, 0x03C2, 0x03C3,
     0x03C4, 0x03C5, 0x03C6, 0x03C7, 0x03C8, 0x03C9, 0x03CA, 0x03CB, 0x03CC, 0x03CD, 0x03CE, 0x0000},
    // ISO 8859-8
    {0x00A0, 0x0000, 0x00A2, 0x00A3, 0x00A4, 0x00A5, 0x00A6, 0x00A7, 0x00A8, 0x00A9, 0x00D7, 0x00AB, 0x00AC, 0x00AD,
     0x00AE, 0x00AF, 0x00B0, 0x00B1, 0x00B2, 0x00B3, 0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x00B9, 0x00F7, 0x00BB,
     0x00BC, 0x00BD, 0x00BE, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000,
     0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000,
     0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x2017, 0x05D0, 0x05D1, 0x05D2, 0x05D3, 0x05D4, 0x05D5,
     0x05D6, 0x05D7, 0x05D8, 0x05D9, 0x05DA, 0x05DB, 0x05DC, 0x05DD, 0x05DE, 0x05DF, 0x05E0, 0x05E1, 0x05E2, 0x05E3,
     0x05E4, 0x05E5, 0x05E6, 0x05E7, 0x05E8, 0x05E9, 0x05EA, 0x0000, 0x0000, 0x200E, 0x200F, 0x0000},
};

/// Page I: ISO 8859-9 is 8859-1 with six Turkish letters.
std::uint32_t latin5(std::uint32_t byte) {
    switch (byte) {
    case 0xD0: return 0x011E;
    case 0xDD: return 0x0130;
    case 0xDE: return 0x015E;
    case 0xF0: return 0x011F;
    case 0xFD: return 0x0131;
    case 0xFE: return 0x015F;
    default: return byte;
    }
}

std::uint32_t codePointOf(std::uint32_t byte, char page) {
    if (byte < 0xA0 || page == 'A') return byte;
    if (page == 'I') return latin5(byte);
    const std::uint32_t codePoint = kPages[page - 'B'][byte - 0xA0];
    return codePoint ? codePoint : 0xFFFD;
}

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
            if (byte < 0x20) issues |= kControl;
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

char* writeReal(double value, char* to) {
    char* const end = std::to_chars(to, to + kRealRoom - 4, value).ptr;
    char* exponent = to;
    bool point = false;
    for (; exponent != end && *exponent != 'e'; ++exponent) point |= *exponent == '.';
    if (exponent == end) {
        if (!point) *exponent++ = '.';
        return exponent;
    }
    // "1e-05" becomes "1.E-05"
    char tail[8];
    const char* from = exponent + 1;
    if (*from == '+') ++from;
    const auto length = static_cast<std::size_t>(end - from);
    std::memcpy(tail, from, length);
    if (!point) *exponent++ = '.';
    *exponent++ = 'E';
    std::memcpy(exponent, tail, length);
    return exponent + length;
}

} // namespace KP_SDAI::KpStepText
