#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace KP_SDAI {

/// Texts and numbers as STEP files spell them (ISO 10303-21, clause 6).
namespace KpStepText {

/// What decoding met that the standard does not know; flags.
enum Issue : unsigned {
    kNone = 0,
    kRawUtf8 = 1,      ///< bytes above 127 that are UTF-8 (allowed from the third edition on)
    kRawLatin1 = 2,    ///< bytes above 127 that are not; taken as ISO 8859-1
    kBadDirective = 4, ///< a reverse solidus that opens no directive, or one cut short; kept as text
    kBadCodePoint = 8, ///< half of a surrogate pair, or beyond U+10FFFF; replaced by U+FFFD
    kControl = 16,     ///< control characters inside the text other than tabs and line ends; kept
    kLineEnd = 32,     ///< tabs and line ends inside the text; kept
    kLowerHex = 64,    ///< hexadecimal digits in lower case
    kEmptyRun = 128,   ///< `\X2\` or `\X4\` with nothing behind it
    kSurrogates = 256  ///< a surrogate pair, read as the character that it stands for
};

/// The UTF-8 text of what stands between the apostrophes of a string. Doubled apostrophes and solidi and the directives
/// `\S\`, `\P.\`, `\X\`, `\X2\`, `\X4\` are decoded; line ends inside a text stay. Adds what it met to `issues`.
KPIFCCORE_EXPORT void decode(std::string_view encoded, std::string& utf8, unsigned& issues);
KPIFCCORE_EXPORT std::string decode(std::string_view encoded);

/// What stands between the apostrophes for a UTF-8 text: printable ASCII as it is, the rest as `\X2\` runs, beyond the
/// basic plane as `\X4\` runs. Bytes that are not UTF-8 are taken as ISO 8859-1. Appends.
KPIFCCORE_EXPORT void encode(std::string_view utf8, std::string& encoded);

/// True where a text can stand between apostrophes as it is: its directives are complete, no apostrophe is alone.
KPIFCCORE_EXPORT bool isEncoded(std::string_view text);

/// The position behind the closing apostrophe of the string whose opening one stands before `begin`; null where it does
/// not end before `end`. An apostrophe behind `\S\` closes nothing.
KPIFCCORE_EXPORT const char* stringEnd(const char* begin, const char* end);

/// Room that writeReal() needs.
constexpr std::size_t kRealRoom = 40;
/// Writes the shortest text that reads back to the same finite number, always with a point; returns its end.
KPIFCCORE_EXPORT char* writeReal(double value, char* to);

} // namespace KpStepText

} // namespace KP_SDAI
