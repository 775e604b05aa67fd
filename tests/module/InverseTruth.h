#pragma once

#include <KpIfcCore/KpIfcModel.h>

#include <cstdint>
#include <string>
#include <vector>

/// The names of the instances that an inverse attribute holds; fails the test where the entity has no such attribute.
std::vector<std::uint64_t> inverseOf(const KP_SDAI::KpIfcModel& model, std::uint64_t name, const std::string& inverse);

/// What every inverse attribute of the dictionary says about a model must be what the instances say, one by one.
/// Returns the number of entries; failures name the first few differences.
std::size_t expectTrueInverses(const KP_SDAI::KpIfcModel& model);
