#pragma once

#include <string>
#include <string_view>

/// The same STEP file with other instance names and its records in another order, both by the seed. Comments of the
/// data section are left out.
std::string renumbered(std::string_view file, unsigned seed);
