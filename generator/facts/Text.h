#pragma once

#include <string>
#include <string_view>

namespace kpifcgen {

/// ASCII only; identifiers of a schema have no other letters.
std::string lowerCase(std::string_view text);
std::string upperCase(std::string_view text);

/// In apostrophes, for messages.
std::string quoted(std::string_view text);

} // namespace kpifcgen
