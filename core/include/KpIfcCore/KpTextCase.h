#pragma once

#include <cstddef>

namespace KP_SDAI {

/// Letter case as names of schemas need it: ASCII only, never the locale's.
constexpr char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
constexpr char upperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

/// Compares two zero-terminated names without regard to ASCII case: below, equal to or above 0.
constexpr int compareNoCase(const char* a, const char* b) {
    for (;; ++a, ++b) {
        const unsigned char x = static_cast<unsigned char>(lowerAscii(*a));
        const unsigned char y = static_cast<unsigned char>(lowerAscii(*b));
        if (x != y) return x < y ? -1 : 1;
        if (x == 0) return 0;
    }
}

/// True where the `length` bytes at `text` spell the zero-terminated `name` without regard to ASCII case.
constexpr bool equalNoCase(const char* text, std::size_t length, const char* name) {
    for (std::size_t i = 0; i < length; ++i)
        if (name[i] == 0 || lowerAscii(text[i]) != lowerAscii(name[i])) return false;
    return name[length] == 0;
}

} // namespace KP_SDAI
