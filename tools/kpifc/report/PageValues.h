#pragma once

#include "report/PageNodes.h"

#include <KpIfcCore/KpIfcVariant.h>

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace kpifc::page {

/// The entities that a page names: indexes in the order in which they are first asked for.
class PageTypes {
public:
    std::uint32_t of(const KP_SDAI::KpIfcEntityType& type);
    const std::vector<const KP_SDAI::KpIfcEntityType*>& all() const { return m_types; }

private:
    std::vector<const KP_SDAI::KpIfcEntityType*> m_types;
    std::unordered_map<const KP_SDAI::KpIfcEntityType*, std::uint32_t> m_indexes;
};

/// Values of attributes as JSON: numbers, truth values and texts as they are, "UNKNOWN", literals as texts, aggregates
/// as arrays, null for no value, and
///
///     {"p":3}         an instance of the page by its place
///     {"i":15,"t":2}  any other one by its name and entity; without t a record kept as text or none at all
///     {"v":1,"t":"IfcLengthMeasure"}  the value of a select that is of a defined type
///     {"more":1000}   the last element of a long aggregate: how many there are in all
class PageValues {
public:
    PageValues(std::string& out, const PageNodes& nodes, PageTypes& types, bool isUtf8)
        : m_out(out), m_nodes(nodes), m_types(types), m_isUtf8(isUtf8) {}

    void append(const KP_SDAI::KpIfcVariant& value);

private:
    std::string& m_out;
    const PageNodes& m_nodes;
    PageTypes& m_types;
    bool m_isUtf8;
};

} // namespace kpifc::page
