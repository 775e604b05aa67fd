#pragma once

#include <string_view>
#include <vector>

namespace kpifcgen::plan {

/// Attributes whose field stands in files but is neither read nor kept.
bool isNotKept(std::string_view schema, std::string_view entity, std::string_view attribute);

/// Where an inverse attribute is one through which the structure of a building descends: the attribute of its relations
/// that holds what is below. Null elsewhere.
const char* relatedThrough(std::string_view schema, std::string_view entity, std::string_view inverse);

/// An aggregation that the dictionary has although no attribute is declared with it.
struct ExtraAggregation {
    std::string_view schema, keyword;
    int low, high;
    std::string_view element;
};

std::vector<ExtraAggregation> extraAggregations(std::string_view schema);

} // namespace kpifcgen::plan
