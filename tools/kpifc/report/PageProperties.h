#pragma once

#include <KpIfcCore/KpIfcPropertySets.h>

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace kpifc::page {

/// Property sets and quantities of the objects of a page, as JSON. What objects have in common is there once, whether
/// they share it in the model or it only says the same:
///
///     keys   names of sets and properties, units, types of measures; the first one is empty
///     props  [name, value, unit, measure]: indexes of keys, the value a text, or an array of the name of an
///            instance; what is empty at the end is left out
///     sets   [name, property...]: indexes of keys and of props
class PageProperties {
public:
    explicit PageProperties(const KP_SDAI::KpIfcModel& model) : m_reader(model) { keyOf(""); }

    /// The sets of an object, as indexes of sets; one that it has from its type as -1 - index.
    std::vector<std::int64_t> of(const KP_SDAI::KpIfcEntityBase& object);
    /// The project's unit of what an attribute holds; empty where there is none.
    std::string unitOf(const KP_SDAI::KpIfcAttributeDefinition& attribute) {
        return m_reader.measureOf(attribute).symbol;
    }
    std::string json() const;
    /// How many values all objects have.
    std::uint64_t valueCount() const { return m_valueCount; }

private:
    /// Different texts in the order of their arrival, separated by commas; told apart by their JSON.
    struct Pool {
        std::string json;
        std::unordered_map<std::string, std::uint32_t> indexes;
        std::uint32_t add(std::string item);
    };

    std::uint32_t keyOf(const std::string& text);
    std::uint32_t propertyOf(const KP_SDAI::KpIfcPropertyValue& value);

    KP_SDAI::KpIfcPropertySets m_reader;
    Pool m_keys;
    Pool m_properties;
    Pool m_sets;
    std::uint64_t m_valueCount = 0;
};

} // namespace kpifc::page
