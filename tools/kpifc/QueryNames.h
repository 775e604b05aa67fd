#pragma once

#include "QueryExpression.h"

#include <KpIfcCore/KpIfcSchema.h>

#include <string>
#include <string_view>
#include <vector>

namespace kpifc::query {

/// The entities that instances at one place of an expression can be of, subtypes included.
using Types = std::vector<TypeTest>;
using Attributes = std::vector<const KP_SDAI::KpIfcAttributeDefinition*>;

/// All entities of a schema.
Types anyType(const KP_SDAI::KpIfcSchema& schema);
/// The attributes of a name, in any letter case, that instances of these types can have; each once.
Attributes attributesOf(const Types& types, std::string_view name);
/// The names of all attributes that they can have.
std::vector<std::string> attributeNames(const Types& types);
/// The entities that references in these attributes, also in aggregates and selects, lead to.
Types targetsOf(const Attributes& attributes);
/// The literals of the enumeration that all these attributes hold; empty where they hold anything else.
std::vector<std::string> literalsOf(const Attributes& attributes);
/// For messages: "IfcWall", "IfcWall or IfcSlab", "these instances".
std::string namesOf(const Types& types);

} // namespace kpifc::query
