#pragma once

#include <cstdint>

namespace KP_SDAI {

/// The code point of a byte in a page of \P.\ (ISO 10303-21, clause 6.4.3): 'A' to 'I' for ISO 8859-1 to -9. U+FFFD
/// where the page assigns none.
std::uint32_t codePointOf(std::uint32_t byte, char page);

} // namespace KP_SDAI
