#include "plan/Departures.h"

#include <algorithm>
#include <iterator>

namespace kpifcgen::plan {

namespace {

struct NotKept {
    std::string_view schema, entity, attribute;
};

constexpr NotKept notKept[] = {
    // The published schema gives the texture's bytes a type that cannot hold them.
    {"IFC2X3", "IfcBlobTexture", "RasterCode"},
};

struct Hierarchy {
    std::string_view schema, entity, inverse;
    const char* related;
};

constexpr Hierarchy hierarchies[] = {
    {"IFC2X3", "IfcObjectDefinition", "IsDecomposedBy", "RelatedObjects"},
    {"IFC2X3", "IfcSpatialStructureElement", "ContainsElements", "RelatedElements"},
};

constexpr ExtraAggregation extra[] = {
    // What IfcCompoundPlaneAngleMeasure is: attributes name it, but have it without its name too.
    {"IFC2X3", "list", 3, 4, "integer"},
};

} // namespace

bool isNotKept(std::string_view schema, std::string_view entity, std::string_view attribute) {
    return std::ranges::any_of(notKept, [&](const NotKept& one) {
        return one.schema == schema && one.entity == entity && one.attribute == attribute;
    });
}

const char* relatedThrough(std::string_view schema, std::string_view entity, std::string_view inverse) {
    const auto* const found = std::ranges::find_if(hierarchies, [&](const Hierarchy& one) {
        return one.schema == schema && one.entity == entity && one.inverse == inverse;
    });
    return found == std::end(hierarchies) ? nullptr : found->related;
}

std::vector<ExtraAggregation> extraAggregations(std::string_view schema) {
    std::vector<ExtraAggregation> rows;
    std::ranges::copy_if(extra, std::back_inserter(rows), [&](const auto& one) { return one.schema == schema; });
    return rows;
}

} // namespace kpifcgen::plan
