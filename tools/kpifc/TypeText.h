#pragma once

#include <KpIfcCore/KpIfcTypes.h>

#include <string>

namespace kpifc {

/// What a defined type is declared as, down to what is no defined type: "IfcLengthMeasure, which is REAL".
std::string chainText(const KP_SDAI::KpIfcDefinedType& type);

/// The values that a type has, for people: "REAL", "IfcLabel, which is STRING", "IfcUnit, which is one of
/// IfcDerivedUnit, IfcNamedUnit, IfcMonetaryUnit".
std::string valuesText(const KP_SDAI::DictionaryInstance& type);

} // namespace kpifc
