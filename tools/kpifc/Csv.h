#pragma once

#include <string>
#include <string_view>

namespace kpifc::csv {

/// Appends a field (RFC 4180): in quotes where it holds what separates fields or has blanks at its ends. Bytes that are
/// not UTF-8 become U+FFFD.
void appendField(std::string& out, std::string_view text);

} // namespace kpifc::csv
