#pragma once

#include "Suggestions.h"

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

/// Names of any kind that somebody who wrote `name` may have meant.
std::vector<std::string> suggestions(const SchemaNames& names, std::string_view name);

} // namespace kpifc
