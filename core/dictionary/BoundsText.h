#pragma once

#include <string>

namespace KP_SDAI {

/// "[0:?]" for 0 and Consts::KpIntUnset.
std::string boundsText(int lower, int upper);

} // namespace KP_SDAI
