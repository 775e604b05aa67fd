#pragma once

#include <KpIfcCore/KpIfcPropertySets.h>

#include <string>

namespace kpifc {

/// A value for people and tables: numbers and texts as they are, "true", "#22" for an instance, "1; 2" for several
/// values, "1 .. 5" for bounds, "0: 1; 10: 2.5" for a table; "" for no value. Not made fit for a terminal.
std::string valueText(const KP_SDAI::KpIfcPropertyValue& value);

/// A value as JSON: as kpifc dump prints values, but without the types of selects; several values as arrays, a table as
/// two of them; null for no value.
void appendValueJson(std::string& out, const KP_SDAI::KpIfcVariant& value);

} // namespace kpifc
