#pragma once

#include <string_view>

/// Forms of texts in header sections.
namespace KP_SDAI {

/// Edition of the file format and conformance class, "2;1"; files of the first edition have "1".
bool isImplementationLevel(std::string_view text);

/// Complete date and time in the extended format of ISO 8601 that exist, "2026-01-02T03:04:05"; a fraction of the
/// second and a time zone ("Z", "+01", "+01:00") may follow.
bool isTimeStamp(std::string_view text);

/// The schema's name in an identifier, without the object identifier behind it: "IFC2X3" for "IFC2X3 { 1 0 10303 }".
std::string_view schemaNameOf(std::string_view identifier);

/// A name in upper case, maybe with an object identifier in braces behind it.
bool isSchemaIdentifier(std::string_view text);

} // namespace KP_SDAI
