#pragma once

#include <KpIfcCore/KpIfcHeader.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kpifc {

/// A field of the three header records that every file has (ISO 10303-21, clause 8.2).
struct HeaderField {
    const char* name; ///< as the standard calls it
    const char* record;
    std::size_t place;
    bool isList;

    /// The texts of the field; one where it is no list, empty where the file has none.
    std::vector<std::string> texts(const KP_SDAI::KpIfcHeader& header) const;
    void set(KP_SDAI::KpIfcHeader& header, const std::vector<std::string>& texts) const;
};

/// All fields, in the order of the file.
inline constexpr std::array kHeaderFields{
    HeaderField{"description", "FILE_DESCRIPTION", 0, true},
    HeaderField{"implementation_level", "FILE_DESCRIPTION", 1, false},
    HeaderField{"name", "FILE_NAME", 0, false},
    HeaderField{"time_stamp", "FILE_NAME", 1, false},
    HeaderField{"author", "FILE_NAME", 2, true},
    HeaderField{"organization", "FILE_NAME", 3, true},
    HeaderField{"preprocessor_version", "FILE_NAME", 4, false},
    HeaderField{"originating_system", "FILE_NAME", 5, false},
    HeaderField{"authorization", "FILE_NAME", 6, false},
    HeaderField{"schema_identifiers", "FILE_SCHEMA", 0, true},
};

/// The field of a name in any letter case, with '-' for '_' or without both. Throws Failure, which names them all and
/// the nearest, where there is none.
const HeaderField& headerField(std::string_view name);

/// The header records besides those three, keyword and text as the file writes it.
std::vector<std::pair<std::string, std::string>> otherHeaderRecords(const KP_SDAI::KpIfcHeader& header);

} // namespace kpifc
