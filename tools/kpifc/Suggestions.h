#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kpifc {

/// Names that somebody who wrote `name` may have meant, nearest first, at most five. Letter case and a missing "Ifc" do
/// not matter. Where no spelling is near, names that contain what was written.
std::vector<std::string> suggestions(const std::vector<std::string>& names, std::string_view name);
/// "; did you mean IfcWall, IfcSlab?"; empty where there are none.
std::string didYouMean(const std::vector<std::string>& suggestions);

} // namespace kpifc
