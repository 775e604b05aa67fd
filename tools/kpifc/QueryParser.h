#pragma once

#include "QueryExpression.h"
#include "QueryNames.h"

#include <KpIfcCore/KpIfcSchema.h>

#include <string_view>
#include <vector>

namespace kpifc::query {

/// An expression, and the entities that the instances that it finds can be of.
struct ParsedQuery {
    Query query;
    Types types;
};

/// Takes an expression apart; names of entities and attributes are those of the schema. Throws QueryError.
ParsedQuery parseQuery(std::string_view text, const KP_SDAI::KpIfcSchema& schema);
/// Takes paths with commas between them apart, of instances of these types.
std::vector<Path> parsePaths(std::string_view text, const Types& types, const KP_SDAI::KpIfcSchema& schema);

} // namespace kpifc::query
