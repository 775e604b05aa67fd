#include <KpIfcCore/KpIfcPropertySets.h>

#include "properties/PropertyWalk.h"
#include "properties/UnitSymbols.h"

#include <KpIfcCore/KpIfcModel.h>

#include <algorithm>

namespace KP_SDAI {

namespace {

using Kind = KpIfcPropertyValueKind;

/// Arrays of two, of which either may be missing; no value where both are.
KpIfcVariant pairOf(KpIfcVariant first, KpIfcVariant second) {
    if (first.isEmpty() && second.isEmpty()) return {};
    return KpIfcArray<KpIfcVariant>{std::move(first), std::move(second)};
}

/// The type of a value, or the one that all values of an aggregate have that have one.
std::string commonMeasure(const KpIfcVariant& held) {
    const KpIfcAggr* aggregate = held.type() ? held.type()->aggregate(held.data()) : nullptr;
    if (!aggregate) return measureTypeOf(held);
    std::string common;
    KpIfcVariant element;
    for (std::size_t i = 0; aggregate->implementation()->getElement(i, element); ++i) {
        const std::string type = measureTypeOf(element);
        if (!common.empty() && !type.empty() && type != common) return {};
        if (common.empty()) common = type;
    }
    return common;
}

std::string hidingKey(const KpIfcPropertyValue& value) {
    return value.set + '\0' + value.name;
}

} // namespace

const char* kindName(KpIfcPropertyValueKind kind) {
    constexpr const char* names[] = {"single", "bounded",   "enumerated", "list",
                                     "table",  "reference", "quantity",   "attribute"};
    return names[static_cast<std::size_t>(kind)];
}

class KpIfcPropertySets::Reader {
public:
    explicit Reader(const KpIfcModel& model)
        : m_model(model), m_entities(model.schema()), m_units(model, m_entities), m_walk(m_entities) {}

    std::vector<KpIfcPropertyValue> read(const KpIfcEntityBase& object) {
        m_values.clear();
        if (m_model.mode() == kAccessUndefined || object.owningModel() != &m_model) return {};
        std::unordered_set<std::string> hiding;
        bool isFilled = false;
        for (const AttachedSet& attached : attachedSets(object, m_entities)) {
            if (attached.fromType && !isFilled) {
                for (const KpIfcPropertyValue& own : m_values) hiding.insert(hidingKey(own));
                isFilled = true;
            }
            const std::size_t former = m_values.size();
            readSet(attached);
            if (!attached.fromType) continue;
            const auto hidden =
                std::remove_if(m_values.begin() + static_cast<std::ptrdiff_t>(former), m_values.end(),
                               [&](const KpIfcPropertyValue& value) { return hiding.count(hidingKey(value)) != 0; });
            m_values.erase(hidden, m_values.end());
        }
        return std::move(m_values);
    }

    KpIfcMeasure measureOf(const KpIfcAttributeDefinition& attribute) {
        return m_units.measure(measureTypeOf(attribute), nullptr);
    }

private:
    void readSet(const AttachedSet& attached) {
        m_set.set = m_entities.setName(*attached.set);
        m_set.setInstance = attached.set->objectId();
        m_set.fromType = attached.fromType;
        m_walk.walk(attached, [&](const PropertyEntry& entry) {
            KpIfcPropertyValue value = m_set;
            value.name = entry.path;
            value.propertyInstance = entry.instance->objectId();
            if (readEntry(*entry.instance, value)) m_values.push_back(std::move(value));
        });
        if (!m_entities.members(*attached.set).owner) readAttributes(*attached.set);
    }

    /// False for what is no property or quantity.
    bool readEntry(const KpIfcEntityBase& entry, KpIfcPropertyValue& value) {
        const PropertyEntities& e = m_entities;
        if (isKind(entry, e.single)) {
            readValue(entry, Kind::single, e.singleValue, e.singleUnit.target(entry), value);
        } else if (const auto* attribute = e.quantityValue(entry)) {
            value.kind = Kind::quantity;
            value.value = presented(entry, PropertyAttribute{attribute->owner(), attribute->facts()}.value(entry));
            value.measure = m_units.measure(measureTypeOf(*attribute), e.quantityUnit.target(entry));
        } else if (isKind(entry, e.bounded)) {
            bounded(entry, value);
        } else if (isKind(entry, e.enumerated)) {
            const KpIfcEntityBase* enumeration = e.enumeration.target(entry);
            const KpIfcEntityBase* unit = enumeration ? e.enumerationUnit.target(*enumeration) : nullptr;
            readValue(entry, Kind::enumerated, e.enumeratedValues, unit, value);
        } else if (isKind(entry, e.list)) {
            readValue(entry, Kind::list, e.listValues, e.listUnit.target(entry), value);
        } else if (isKind(entry, e.table)) {
            table(entry, value);
        } else if (isKind(entry, e.reference)) {
            value.kind = Kind::reference;
            value.value = presented(entry, e.referenced.value(entry));
        } else {
            return false;
        }
        return true;
    }

    /// What one attribute of an entry holds, one value or several.
    void readValue(const KpIfcEntityBase& entry, Kind kind, const PropertyAttribute& attribute,
                   const KpIfcEntityBase* unit, KpIfcPropertyValue& value) {
        const KpIfcVariant held = attribute.value(entry);
        value.kind = kind;
        value.value = presented(entry, held);
        value.measure = m_units.measure(commonMeasure(held), unit);
    }

    void bounded(const KpIfcEntityBase& entry, KpIfcPropertyValue& value) {
        const KpIfcVariant lower = m_entities.lowerBound.value(entry);
        const KpIfcVariant upper = m_entities.upperBound.value(entry);
        value.kind = Kind::bounded;
        value.value = pairOf(presented(entry, lower), presented(entry, upper));
        const std::string type = measureTypeOf(lower);
        value.measure =
            m_units.measure(type.empty() ? measureTypeOf(upper) : type, m_entities.boundedUnit.target(entry));
    }

    void table(const KpIfcEntityBase& entry, KpIfcPropertyValue& value) {
        const KpIfcVariant defining = m_entities.definingValues.value(entry);
        const KpIfcVariant defined = m_entities.definedValues.value(entry);
        value.kind = Kind::table;
        value.value = pairOf(presented(entry, defining), presented(entry, defined));
        value.measure = m_units.measure(commonMeasure(defined), m_entities.definedUnit.target(entry));
        value.definingMeasure = m_units.measure(commonMeasure(defining), m_entities.definingUnit.target(entry));
    }

    /// A set whose properties are the attributes that its entity adds.
    void readAttributes(const KpIfcEntityBase& set) {
        for (const KpIfcAttributeDefinition* attribute : set.getInstanceType()->allAttributes()) {
            const auto* own = attribute->as<KpIfcExplicitAttributeDefinition>();
            const bool isAdded =
                own && own->owner() != m_entities.setDefinition && own->owner()->isKindOf(m_entities.setDefinition);
            if (!isAdded || !own->facts()) continue;
            const KpIfcVariant held = PropertyAttribute{own->owner(), own->facts()}.value(set);
            KpIfcPropertyValue value = m_set;
            value.name = own->name();
            value.kind = Kind::attribute;
            value.value = presented(set, held);
            const std::string type = measureTypeOf(held);
            value.measure = m_units.measure(type.empty() ? measureTypeOf(*own) : type, nullptr);
            m_values.push_back(std::move(value));
        }
    }

    const KpIfcModel& m_model;
    const PropertyEntities m_entities;
    MeasureUnits m_units;
    PropertyWalk m_walk;
    KpIfcPropertyValue m_set; ///< what values of the current set have in common
    std::vector<KpIfcPropertyValue> m_values;
};

KpIfcPropertySets::KpIfcPropertySets(const KpIfcModel& model) : m_reader(std::make_unique<Reader>(model)) {}
KpIfcPropertySets::~KpIfcPropertySets() = default;

std::vector<KpIfcPropertyValue> KpIfcPropertySets::of(const KpIfcEntityBase& object) {
    return m_reader->read(object);
}

KpIfcMeasure KpIfcPropertySets::measureOf(const KpIfcAttributeDefinition& attribute) {
    return m_reader->measureOf(attribute);
}

std::vector<KpIfcPropertyValue> propertiesOf(const KpIfcEntityBase& object) {
    const KpIfcModel* model = object.owningModel();
    if (!model) return {};
    return KpIfcPropertySets(*model).of(object);
}

} // namespace KP_SDAI
