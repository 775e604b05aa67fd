#pragma once

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcReferences.h>

#include <string>

namespace KP_SDAI {

class KpIfcSchema;

inline bool isKind(const KpIfcEntityBase& instance, const KpIfcEntityType* entity) {
    return entity && instance.isKindOf(entity);
}

/// An explicit attribute. Instances of other entities than its owner just have no value of it: references need not be
/// to what the schema wants. Without owner, nothing has it.
struct PropertyAttribute {
    const KpIfcEntityType* owner = nullptr;
    const KpIfcAttributeFacts* row = nullptr;

    /// What the attribute holds, without a copy.
    KpIfcVariant value(const KpIfcEntityBase& instance) const {
        KpIfcVariant value;
        // The rows' members are not const; nothing is changed.
        if (isKind(instance, owner)) readAttribute(const_cast<KpIfcEntityBase&>(instance), *row, value);
        return value;
    }
    /// A text or literal in UTF-8; "" where there is none.
    std::string text(const KpIfcEntityBase& instance) const;
    /// The instance that a reference or a select refers to; null where there is none.
    KpIfcEntityBase* target(const KpIfcEntityBase& instance) const;
    /// Calls `visit(KpIfcEntityBase&)` for the instances that an aggregate refers to.
    template <class Visit>
    void visitTargets(const KpIfcEntityBase& instance, Visit&& visit) const {
        if (!isKind(instance, owner)) return;
        visitReferences(const_cast<KpIfcEntityBase&>(instance), *row, [&](const KpDbObjectId& handle) {
            if (KpIfcEntityBase* target = handle.openObject()) visit(*target);
        });
    }
};

/// The entities and attributes that property sets and units are made of, found by their names once: the only place in
/// the runtime that knows these names. What the schema does not have is null.
struct PropertyEntities {
    using Entity = const KpIfcEntityType*;
    using Attribute = PropertyAttribute;

    explicit PropertyEntities(const KpIfcSchema& schema);

    Entity root, object, typeObject, definesByProperties, definesByType, overridesProperties;
    Entity setDefinition, propertySet, elementQuantity;
    Entity single, bounded, enumerated, list, table, reference, complex, complexQuantity, simpleQuantity;
    Entity project, siUnit, derivedUnit, monetaryUnit;

    Attribute globalId, ownerHistory, rootName;
    Attribute relatedObjects, relatingDefinition, relatingType, overriding, typeSets;
    Attribute setProperties, setQuantities, complexProperties, complexQuantities, propertyName, quantityName;
    Attribute singleValue, singleUnit, lowerBound, upperBound, boundedUnit;
    Attribute enumeratedValues, enumeration, enumerationUnit, listValues, listUnit, referenced;
    Attribute definingValues, definedValues, definingUnit, definedUnit, quantityUnit;
    Attribute unitsInContext, units, unitType, siPrefix, siName, conversionName, contextName, currency;
    Attribute derivedElements, derivedType, elementUnit, elementExponent;

    /// The name of a property or quantity.
    std::string nameOf(const KpIfcEntityBase& entry) const;
    /// The name of a set; that of its entity where it has none.
    std::string setName(const KpIfcEntityBase& set) const;
    /// The attribute through which a set, complex property or complex quantity holds its entries; else none.
    Attribute members(const KpIfcEntityBase& holder) const;
    bool isComplex(const KpIfcEntityBase& entry) const {
        return isKind(entry, complex) || isKind(entry, complexQuantity);
    }
    /// The attribute that holds the value of a simple quantity: the one that its entity adds; null for other instances.
    const KpIfcExplicitAttributeDefinition* quantityValue(const KpIfcEntityBase& quantity) const;
};

/// The inverse attribute by which an object knows the relations to what defines it.
inline constexpr const char* kDefinedBy = "IsDefinedBy";
/// The unit type of a measure: what is between these, in upper case, with "UNIT" behind.
inline constexpr std::string_view kTypePrefix = "Ifc";
inline constexpr std::string_view kMeasureSuffix = "Measure";
inline constexpr std::string_view kUnitSuffix = "UNIT";

/// A value of an attribute of `owner` as programs get it: texts as KcString, aggregates as arrays of variants, selects
/// as what they hold; empty for what marks no value.
KpIfcVariant presented(const KpIfcEntityBase& owner, const KpIfcVariant& held);

/// The defined type of what a select holds; "" for other values.
std::string measureTypeOf(const KpIfcVariant& held);
/// The defined type by whose name an attribute is declared; "" where there is none.
std::string measureTypeOf(const KpIfcAttributeDefinition& attribute);

} // namespace KP_SDAI
