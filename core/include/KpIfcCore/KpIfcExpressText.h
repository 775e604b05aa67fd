#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

#include <string>

namespace KP_SDAI {

class DictionaryInstance;
class KpIfcDefinedType;

/// A type as a declaration refers to it, in the notation of EXPRESS: the published name of a named type, else its text
/// ("REAL", "STRING(22) FIXED", "LIST [1:?] OF IfcActorRole"). "?" for null.
KPIFCCORE_EXPORT std::string expressText(const DictionaryInstance* type);

/// What a named type is declared as: "REAL", "IfcLengthMeasure", "LIST [3:4] OF INTEGER",
/// "ENUMERATION OF (SUPPLIER, ...)", "SELECT (IfcCartesianPoint, IfcParameterValue)". One line, however long.
KPIFCCORE_EXPORT std::string definitionText(const KpIfcDefinedType& type);

} // namespace KP_SDAI
