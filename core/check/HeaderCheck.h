#pragma once

#include <KpIfcCore/KpIfcHeader.h>
#include <KpIfcCore/KpIfcReport.h>

#include <cstdint>
#include <span>
#include <string_view>

namespace KP_SDAI {

/// Reports where a header section is not as the standard wants it (ISO 10303-21, clause 8) or does not name the schema
/// as that is called. `offsets` says where its records begin, for findings with a place; empty where nobody knows. What
/// is everyday and harmless is a note.
void checkHeader(const KpIfcHeader& header, std::string_view schemaName, KpIfcReport& report,
                 std::span<const std::uint64_t> offsets = {});

} // namespace KP_SDAI
