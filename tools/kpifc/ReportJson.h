#pragma once

#include <KpIfcCore/KpIfcReport.h>

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>

/// What reports say, for programs.
namespace kpifc {

/// Null for what is not there: 0 or an empty text.
nlohmann::ordered_json orNull(std::uint64_t number);
nlohmann::ordered_json orNull(const std::string& text);

/// One finding: severity, code, offset, line, column, instance, entity, attribute, found, expected, done, allowed.
nlohmann::ordered_json findingOf(const KP_SDAI::KpIfcReportEntry& entry);

/// The object as text. Paths, and the text of records that could not be read, need not be UTF-8.
std::string spelled(const nlohmann::ordered_json& object);

/// The object for a file that could not be read.
nlohmann::ordered_json failureOf(const std::string& path, const std::string& error);

} // namespace kpifc
