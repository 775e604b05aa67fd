#pragma once

#include "properties/PropertyEntities.h"

#include <KpIfcCore/KpIfcPropertySets.h>

#include <string>
#include <unordered_map>

namespace KP_SDAI {

class KpIfcModel;

/// The unit that an instance stands for, as people write it: "mm", "m2", "W/(m2·K)", "FOOT", "EUR"; "" for instances
/// that are no units.
std::string unitSymbol(const KpIfcEntityBase& unit, const PropertyEntities& entities);

/// Units of values: those that values name, else those that the project has for their measure.
class MeasureUnits {
public:
    MeasureUnits(const KpIfcModel& model, const PropertyEntities& entities);

    /// `unit` is what the value names, or null.
    KpIfcMeasure measure(const std::string& type, const KpIfcEntityBase* unit);

private:
    struct Unit {
        KpDbObjectId unit;
        std::string symbol;
    };
    const Unit& symbolOf(const KpIfcEntityBase& unit);
    Unit projectUnit(const std::string& measureType) const;

    const KpIfcModel& m_model;
    const PropertyEntities& m_entities;
    std::unordered_map<std::string, Unit> m_project;          ///< by unit type
    std::unordered_map<std::string, Unit> m_measures;         ///< by measure type, as far as asked for
    std::unordered_map<const KpIfcEntityBase*, Unit> m_named; ///< as far as asked for
};

} // namespace KP_SDAI
