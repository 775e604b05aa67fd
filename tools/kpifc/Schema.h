#pragma once

#include <KpIfcCore/KpIfcSchema.h>

#include <string>

namespace kpifc {

/// What `kpifc schema` tells about a schema, and about one entity or named type of it.
namespace schema_text { // for people, in 80 columns

std::string overview(const KP_SDAI::KpIfcSchema& schema);
std::string entity(const KP_SDAI::KpIfcEntityType& entity);
std::string type(const KP_SDAI::KpIfcSchema& schema, const KP_SDAI::KpIfcDefinedType& type);

} // namespace schema_text

namespace schema_json { // for programs; one JSON object

std::string overview(const KP_SDAI::KpIfcSchema& schema);
std::string entity(const KP_SDAI::KpIfcEntityType& entity);
std::string type(const KP_SDAI::KpIfcSchema& schema, const KP_SDAI::KpIfcDefinedType& type);

} // namespace schema_json

} // namespace kpifc
