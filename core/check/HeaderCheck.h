#pragma once

#include <KpIfcCore/KpIfcHeader.h>
#include <KpIfcCore/KpIfcReport.h>

#include <string_view>

namespace KP_SDAI {

/// Reports where a header section is not as the standard wants it (ISO 10303-21, clause 8) or does not name the schema
/// as that is called.
void checkHeader(const KpIfcHeader& header, std::string_view schemaName, KpIfcReport& report);

} // namespace KP_SDAI
