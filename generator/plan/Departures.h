#pragma once

#include <string_view>

namespace kpifcgen::plan {

/// Attributes whose field stands in files but is neither read nor kept.
bool isNotKept(std::string_view schema, std::string_view entity, std::string_view attribute);

} // namespace kpifcgen::plan
