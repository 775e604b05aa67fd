#pragma once

#include <KpIfcCore/KpIfcSchema.h>

#include <string>
#include <string_view>
#include <vector>

namespace kpifc {

/// The published names of a schema, by kind, each sorted without regard to case.
struct SchemaNames {
    explicit SchemaNames(const KP_SDAI::KpIfcSchema& schema);

    std::vector<std::string> entities;
    std::vector<std::string> types; ///< that are neither enumerations nor selects
    std::vector<std::string> enumerations;
    std::vector<std::string> selects;
};

/// Names that somebody who wrote `name` may have meant, nearest first, at most five. Letter case and a missing "Ifc" do
/// not matter. Where no spelling is near, names that contain what was written.
std::vector<std::string> suggestions(const SchemaNames& names, std::string_view name);
std::vector<std::string> suggestions(const std::vector<std::string>& names, std::string_view name);
/// "; did you mean IfcWall, IfcSlab?"; empty where there are none.
std::string didYouMean(const std::vector<std::string>& suggestions);

} // namespace kpifc
