#pragma once

#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcPropertySets.h>

#include <cstdint>
#include <string>
#include <vector>

/// What is read of an object, a line a value:
///
///     set|name|kind|value|measure|unit|type     the last word where the value comes from the type
std::vector<std::string> linesOf(const KP_SDAI::KpIfcModel& model, std::uint64_t object);
/// A line for one value.
std::string lineOf(const KP_SDAI::KpIfcPropertyValue& value);
