#pragma once

#include <KpIfcCore/KpIfcEntityType.h>

#include <string_view>

namespace KP_SDAI {

/// True where two records say the same: equal but for blanks, comments, letter case of keywords, spelling of numbers
/// and encoding of texts, and for the order of members and repeated members in sets. `type` is the second's entity.
bool saysTheSame(std::string_view source, std::string_view written, const KpIfcEntityType& type);

} // namespace KP_SDAI
