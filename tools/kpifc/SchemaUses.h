#pragma once

#include <KpIfcCore/KpIfcSchema.h>

#include <utility>
#include <vector>

namespace kpifc {

/// Where a schema uses an entity or a named type, each sorted by name.
struct SchemaUses {
    SchemaUses(const KP_SDAI::KpIfcSchema& schema, const KP_SDAI::KpIfcNameType& type);

    using Attributes = std::vector<const KP_SDAI::KpIfcAttributeDefinition*>;

    std::vector<const KP_SDAI::KpIfcDefinedType*> types;   ///< that stand for it, or for aggregations of it
    std::vector<const KP_SDAI::KpIfcDefinedType*> selects; ///< that have it as a member
    /// The entities that declare attributes of the type or of aggregations of it, with these attributes in the order of
    /// their declaration.
    std::vector<std::pair<const KP_SDAI::KpIfcEntityType*, Attributes>> entities;
};

} // namespace kpifc
