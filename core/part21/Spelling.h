#pragma once

#include <KpIfcCore/KpTextCase.h>

#include <string_view>

/// How the standard wants tokens spelled (ISO 10303-21, clause 6), where reading takes other spellings as well.
namespace KP_SDAI {

/// What a finding about the spelling of a number expects.
inline constexpr const char kRealForm[] = "a real with a point and an exponent behind 'E', if any";

inline bool hasLowerCase(std::string_view keyword) {
    for (const char c : keyword)
        if (c >= 'a' && c <= 'z') return true;
    return false;
}

/// What stands between the quotes of a binary: the number of unused bits, which are zero, and hexadecimal digits.
inline bool isBinary(std::string_view text) {
    if (text.empty() || text[0] > '3' || hasLowerCase(text)) return false;
    if (text.size() == 1) return text[0] == '0';
    const int first = text[1] <= '9' ? text[1] - '0' : text[1] - 'A' + 10;
    return first >> (4 - (text[0] - '0')) == 0;
}

/// True for the names of IFC's types over NUMBER, which the dictionary knows as types over REAL.
inline bool isNumberType(std::string_view name) {
    return equalNoCase(name.data(), name.size(), "IfcCountMeasure") ||
           equalNoCase(name.data(), name.size(), "IfcNumericMeasure");
}

} // namespace KP_SDAI
