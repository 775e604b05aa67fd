#pragma once

#include <string_view>

/// Where records end, damaged ones too.
namespace KP_SDAI {

/// The start of a line in [p, end) that looks like the next record or the end of the section; null where there is none.
/// There a record without end is cut.
const char* nextRecordLine(const char* p, const char* end);

/// Where a record that could not be bound ends: behind its ';', or before a line that looks like the next record, so
/// that a missing semicolon or apostrophe does not take the records behind it along. Null where neither comes before
/// `end`. Looks as far as it must, so that many damaged records cost no more than their length.
const char* damagedRecordEnd(const char* begin, const char* end);

/// Where a record ends if all its texts and comments count, whatever they hold; null where that is not seen.
const char* wholeRecordEnd(const char* p, const char* end);

/// The text or comment that begins in [p, end) and does not end there; null where there is none.
const char* openPiece(const char* p, const char* end);

/// True where a statement of that keyword begins.
bool isStatement(const char* begin, const char* end, std::string_view keyword);
/// True for what ends a data section, understood or not.
inline bool endsSection(const char* begin, const char* end) {
    return isStatement(begin, end, "ENDSEC") || isStatement(begin, end, "END-ISO-10303-21");
}

} // namespace KP_SDAI
