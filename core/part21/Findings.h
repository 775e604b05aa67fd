#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcReport.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace KP_SDAI {

/// A report entry about a place of the source. Its line is counted when everything is read.
KpIfcReportEntry findingAt(KpIfcFinding finding, KpIfcSeverity severity, std::uint64_t offset, std::string message);

/// The same about a field of an instance, counted from 0; about the whole record where it has no such field.
KpIfcReportEntry findingOn(const KpIfcEntityBase& instance, std::uint32_t field, KpIfcFinding finding,
                           KpIfcSeverity severity, std::uint64_t offset, std::string message);

/// A short piece of source text for a message.
std::string excerpt(std::string_view text);

} // namespace KP_SDAI
