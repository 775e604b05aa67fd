#include "properties/UnitSymbols.h"

#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcSchema.h>

#include <limits>

namespace KP_SDAI {

namespace {

struct Symbol {
    std::string_view literal;
    std::string_view symbol;
};

constexpr Symbol kPrefixes[] = {
    {"EXA", "E"},   {"PETA", "P"},  {"TERA", "T"},  {"GIGA", "G"},  {"MEGA", "M"},  {"KILO", "k"},
    {"HECTO", "h"}, {"DECA", "da"}, {"DECI", "d"},  {"CENTI", "c"}, {"MILLI", "m"}, {"MICRO", "\u00B5"},
    {"NANO", "n"},  {"PICO", "p"},  {"FEMTO", "f"}, {"ATTO", "a"},
};

constexpr Symbol kNames[] = {
    {"AMPERE", "A"},        {"BECQUEREL", "Bq"},   {"CANDELA", "cd"},
    {"COULOMB", "C"},       {"CUBIC_METRE", "m3"}, {"DEGREE_CELSIUS", "\u00B0C"},
    {"FARAD", "F"},         {"GRAM", "g"},         {"GRAY", "Gy"},
    {"HENRY", "H"},         {"HERTZ", "Hz"},       {"JOULE", "J"},
    {"KELVIN", "K"},        {"LUMEN", "lm"},       {"LUX", "lx"},
    {"METRE", "m"},         {"MOLE", "mol"},       {"NEWTON", "N"},
    {"OHM", "\u03A9"},      {"PASCAL", "Pa"},      {"RADIAN", "rad"},
    {"SECOND", "s"},        {"SIEMENS", "S"},      {"SIEVERT", "Sv"},
    {"SQUARE_METRE", "m2"}, {"STERADIAN", "sr"},   {"TESLA", "T"},
    {"VOLT", "V"},          {"WATT", "W"},         {"WEBER", "Wb"},
};

/// Measures whose unit types are named otherwise.
constexpr Symbol kOtherwise[] = {
    {"IfcThermalConductivityMeasure", "THERMALCONDUCTANCEUNIT"},
    {"IfcSectionalAreaIntegralMeasure", "SECTIONAREAINTEGRALUNIT"},
};
/// Money is measured by a unit without a unit type.
constexpr std::string_view kMoney = "IfcMonetaryMeasure";

template <std::size_t n>
std::string find(const Symbol (&symbols)[n], const std::string& literal) {
    for (const Symbol& each : symbols)
        if (each.literal == literal) return std::string(each.symbol);
    return literal;
}

std::string unitTypeOf(std::string_view measure) {
    for (const Symbol& each : kOtherwise)
        if (each.literal == measure) return std::string(each.symbol);
    if (!measure.starts_with(kTypePrefix) || !measure.ends_with(kMeasureSuffix)) return {};
    measure.remove_prefix(kTypePrefix.size());
    measure.remove_suffix(kMeasureSuffix.size());
    std::string type;
    for (const char c : measure) type += upperAscii(c);
    return type.append(kUnitSuffix);
}

/// Factors of a derived unit, "m2" and the like.
struct Factors {
    std::string text;
    int count = 0;

    void add(const std::string& symbol, int exponent) {
        const bool isPower = exponent != 1 && !symbol.empty() && symbol.back() >= '0' && symbol.back() <= '9';
        text += count++ ? "\u00B7" : "";
        text += isPower ? '(' + symbol + ')' : symbol;
        if (exponent != 1) text += std::to_string(exponent);
    }
};

std::string derivedSymbol(const KpIfcEntityBase& unit, const PropertyEntities& entities) {
    Factors above;
    Factors below;
    entities.derivedElements.visitTargets(unit, [&](const KpIfcEntityBase& element) {
        const KpIfcEntityBase* named = entities.elementUnit.target(element);
        const KpIfcVariant held = presented(element, entities.elementExponent.value(element));
        const int* exponent = held.getIf<int>();
        // A file may refer to any instance here, even to the derived unit itself.
        if (!named || !exponent || isKind(*named, entities.derivedUnit)) return;
        const std::string symbol = unitSymbol(*named, entities);
        if (symbol.empty()) return;
        if (*exponent > 0) above.add(symbol, *exponent);
        if (*exponent < 0 && *exponent != std::numeric_limits<int>::min()) below.add(symbol, -*exponent);
    });
    if (below.count == 0) return above.text;
    return (above.count ? above.text : "1") + '/' + (below.count > 1 ? '(' + below.text + ')' : below.text);
}

} // namespace

std::string unitSymbol(const KpIfcEntityBase& unit, const PropertyEntities& entities) {
    if (isKind(unit, entities.siUnit)) {
        const std::string prefix = entities.siPrefix.text(unit);
        return (prefix.empty() ? "" : find(kPrefixes, prefix)) + find(kNames, entities.siName.text(unit));
    }
    if (isKind(unit, entities.derivedUnit)) return derivedSymbol(unit, entities);
    if (isKind(unit, entities.monetaryUnit)) return entities.currency.text(unit);
    const std::string name = entities.conversionName.text(unit);
    return name.empty() ? entities.contextName.text(unit) : name;
}

MeasureUnits::MeasureUnits(const KpIfcModel& model, const PropertyEntities& entities)
    : m_model(model), m_entities(entities) {
    for (const KpIfcEntityBase* project : model.instances(entities.project)) {
        const KpIfcEntityBase* assignment = entities.unitsInContext.target(*project);
        if (!assignment) continue;
        entities.units.visitTargets(*assignment, [&](const KpIfcEntityBase& unit) {
            const bool isMoney = isKind(unit, entities.monetaryUnit);
            const auto& typed = isKind(unit, entities.derivedUnit) ? entities.derivedType : entities.unitType;
            const std::string type = isMoney ? std::string(kMoney) : typed.text(unit);
            if (!type.empty()) m_project.emplace(type, symbolOf(unit)); // the first of a type counts
        });
    }
}

KpIfcMeasure MeasureUnits::measure(const std::string& type, const KpIfcEntityBase* unit) {
    if (unit) {
        const Unit& named = symbolOf(*unit);
        return {type, named.unit, named.symbol};
    }
    if (type.empty()) return {};
    auto found = m_measures.find(type);
    if (found == m_measures.end()) found = m_measures.emplace(type, projectUnit(type)).first;
    return {type, found->second.unit, found->second.symbol};
}

const MeasureUnits::Unit& MeasureUnits::symbolOf(const KpIfcEntityBase& unit) {
    auto found = m_named.find(&unit);
    if (found == m_named.end())
        found = m_named.emplace(&unit, Unit{unit.objectId(), unitSymbol(unit, m_entities)}).first;
    return found->second;
}

/// A type is measured as that by which it is defined: a positive length as a length.
MeasureUnits::Unit MeasureUnits::projectUnit(const std::string& measureType) const {
    const KpIfcDefinedType* type = m_model.schema().findType(measureType);
    while (type) {
        const std::string name = type->displayName();
        const auto found = m_project.find(name == kMoney ? name : unitTypeOf(name));
        if (found != m_project.end()) return found->second;
        type = type->underlyingType() ? type->underlyingType()->as<KpIfcDefinedType>() : nullptr;
    }
    return {};
}

} // namespace KP_SDAI
