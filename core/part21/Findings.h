#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcReport.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace KP_SDAI {

/// What a finding says; see KpIfcReportEntry.
struct Said {
    std::string found = {};
    std::string expected = {};
    std::string done = {};
};

/// A report entry about a place of the source. Its line is counted when everything is read.
KpIfcReportEntry findingAt(KpIfcFinding finding, KpIfcSeverity severity, std::uint64_t offset, Said said);

/// The same about a field of an instance, counted from 0; about the whole record where it has no such field.
KpIfcReportEntry findingOn(const KpIfcEntityBase& instance, std::uint32_t field, KpIfcFinding finding,
                           KpIfcSeverity severity, std::uint64_t offset, Said said);

/// A short piece of source text for a finding.
std::string excerpt(std::string_view text);
/// The same between apostrophes, for pieces that begin anywhere.
std::string quoted(std::string_view text);

/// "#5 IfcDoor", "#5, which is no instance". Reads nothing that has not been read.
std::string labelOf(const KpDbObjectId& handle);

/// "no element", "1 element", "7 elements"
std::string countOf(std::size_t count, const std::string& noun);

/// Why reading fails where a source is no longer what it was when it was opened.
inline constexpr const char* kSourceHasChanged = "another program has changed the file since it was opened";
inline constexpr const char* kTextKept = "its text is kept";
inline constexpr const char* kReadAllTheSame = "read all the same";

} // namespace KP_SDAI
