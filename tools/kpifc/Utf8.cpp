#include "Utf8.h"

#include <fmt/format.h>

namespace kpifc {

std::size_t utf8Length(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    if (first < 0x80) {
        return 1;
    }
    const std::size_t length = first >= 0xC2 && first < 0xE0   ? 2
                               : first >= 0xE0 && first < 0xF0 ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    if (length == 0 || text.size() < length) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    // Longer forms than needed, surrogates and what lies above U+10FFFF show in the second byte.
    const unsigned second = byte(1);
    if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second >= 0xA0) || (first == 0xF0 && second < 0x90) ||
        (first == 0xF4 && second >= 0x90)) {
        return 0;
    }
    return length;
}

static bool isControl(std::string_view character) {
    const auto byte = [character](std::size_t i) { return static_cast<unsigned char>(character[i]); };
    return character.size() == 1 ? byte(0) < 0x20 || byte(0) == 0x7F
                                 : character.size() == 2 && byte(0) == 0xC2 && byte(1) < 0xA0;
}

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        const std::string_view character = text.substr(0, length);
        result += length == 0 || isControl(character) ? kReplacementCharacter : character;
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

std::size_t displayWidth(std::string_view text) {
    // {fmt} knows which characters take two columns; it tells by how far it pads to a column. No text is wider than
    // long.
    return 2 * text.size() - fmt::formatted_size("{:<{}}", text, text.size());
}

} // namespace kpifc
