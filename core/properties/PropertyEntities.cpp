#include "properties/PropertyEntities.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcSchema.h>
#include <KpIfcCore/KpIfcSelectType.h>
#include <KpIfcCore/TextEncodeDecode.h>
#include <KpRx/KcString.h>

namespace KP_SDAI {

namespace {

PropertyAttribute attribute(const KpIfcEntityType* entity, std::string_view name) {
    const auto* definition = entity ? entity->findAttribute(name) : nullptr;
    const auto* explicitOne = definition ? definition->as<KpIfcExplicitAttributeDefinition>() : nullptr;
    if (!explicitOne || !explicitOne->facts()) return {};
    return {explicitOne->owner(), explicitOne->facts()};
}

template <class T>
bool isSet(const T& value) {
    return value.isSet();
}
bool isSet(double value) {
    return value != Consts::KpRealUnset;
}
bool isSet(int value) {
    return value != Consts::KpIntUnset;
}
bool isSet(const KpDbObjectId& value) {
    return !value.isNull();
}

/// Copies a value of type T unless it marks no value; true where the value is of that type.
template <class T>
bool copyIf(const KpIfcVariant& held, KpIfcVariant& value) {
    const T* own = held.getIf<T>();
    if (own && isSet(*own)) value.set(*own);
    return own != nullptr;
}

KpIfcVariant shown(const KpIfcEntityBase& owner, const KpAnsiString& text) {
    KpIfcVariant value;
    if (text.isUnset()) return value;
    KcString shown;
    TextEncodeDecode().decodeText(text, shown, codecOf(owner));
    value.set(shown);
    return value;
}

} // namespace

KpIfcVariant presented(const KpIfcEntityBase& owner, const KpIfcVariant& held) {
    const KpIfcVariantType* const type = held.type();
    if (!type) return {};
    KpIfcVariant value;
    if (copyIf<double>(held, value) || copyIf<int>(held, value) || copyIf<KpIfcBoolean>(held, value) ||
        copyIf<KpIfcLogical>(held, value) || copyIf<KpDbObjectId>(held, value))
        return value;
    if (const char* const* text = held.getIf<const char*>()) return shown(owner, *text);
    if (const KpAnsiString* text = held.getIf<KpAnsiString>()) return shown(owner, *text);
    if (const KpIfcGUID* guid = held.getIf<KpIfcGUID>()) return shown(owner, guid->constStr());
    if (const KpIfcEnumFacts* facts = type->enumeration()) {
        int code;
        std::memcpy(&code, held.data(), sizeof code);
        const char* const literal = facts->text(code);
        return shown(owner, literal ? KpAnsiString(literal) : KpAnsiString::unset());
    }
    if (const KpIfcSelect* select = type->select(held.data())) {
        select->getValue(value); // which never gives a select
        return presented(owner, value);
    }
    const KpIfcAggr* const aggregate = type->aggregate(held.data());
    if (!aggregate || aggregate->empty()) return {};
    KpIfcArray<KpIfcVariant> elements;
    for (std::size_t i = 0; aggregate->implementation()->getElement(i, value); ++i)
        elements.append(presented(owner, value));
    return elements;
}

std::string measureTypeOf(const KpIfcVariant& held) {
    const KpIfcSelect* select = held.type() ? held.type()->select(held.data()) : nullptr;
    return select && select->valueKind() != kTypeEntity ? select->underlyingTypeName() : "";
}

std::string measureTypeOf(const KpIfcAttributeDefinition& attribute) {
    const auto* named = attribute.domain() ? attribute.domain()->as<KpIfcDefinedType>() : nullptr;
    const auto* underlying = named ? named->underlyingType() : nullptr;
    const bool isMeasure = underlying && !named->isAnonymous() && !underlying->as<KpIfcSelectType>();
    return isMeasure ? named->displayName() : "";
}

std::string PropertyAttribute::text(const KpIfcEntityBase& instance) const {
    const KpIfcVariant shown = presented(instance, value(instance));
    const KcString* text = shown.getIf<KcString>();
    return text ? std::string(text->view()) : std::string();
}

KpIfcEntityBase* PropertyAttribute::target(const KpIfcEntityBase& instance) const {
    const KpIfcVariant held = presented(instance, value(instance));
    const KpDbObjectId* handle = held.getIf<KpDbObjectId>();
    return handle ? handle->openObject() : nullptr;
}

std::string PropertyEntities::nameOf(const KpIfcEntityBase& entry) const {
    return isKind(entry, propertyName.owner) ? propertyName.text(entry) : quantityName.text(entry);
}

std::string PropertyEntities::setName(const KpIfcEntityBase& set) const {
    const std::string name = rootName.text(set);
    return name.empty() ? set.getInstanceType()->displayName() : name;
}

PropertyAttribute PropertyEntities::members(const KpIfcEntityBase& holder) const {
    for (const Attribute& members : {setProperties, setQuantities, complexProperties, complexQuantities})
        if (isKind(holder, members.owner)) return members;
    return {};
}

const KpIfcExplicitAttributeDefinition* PropertyEntities::quantityValue(const KpIfcEntityBase& quantity) const {
    if (!isKind(quantity, simpleQuantity)) return nullptr;
    for (const KpIfcEntityType* type = quantity.getInstanceType(); type != simpleQuantity; type = type->superType())
        for (const auto& attribute : type->attributes())
            if (const auto* value = attribute->as<KpIfcExplicitAttributeDefinition>()) return value;
    return nullptr;
}

PropertyEntities::PropertyEntities(const KpIfcSchema& schema) {
    const auto entity = [&](std::string_view name) { return schema.findEntity(name); };

    object = entity("IfcObject");
    typeObject = entity("IfcTypeObject");
    typeSets = attribute(typeObject, "HasPropertySets");
    root = entity("IfcRoot");
    globalId = attribute(root, "GlobalId");
    ownerHistory = attribute(root, "OwnerHistory");
    rootName = attribute(root, "Name");

    definesByProperties = entity("IfcRelDefinesByProperties");
    relatedObjects = attribute(definesByProperties, "RelatedObjects");
    relatingDefinition = attribute(definesByProperties, "RelatingPropertyDefinition");
    overridesProperties = entity("IfcRelOverridesProperties");
    overriding = attribute(overridesProperties, "OverridingProperties");
    definesByType = entity("IfcRelDefinesByType");
    relatingType = attribute(definesByType, "RelatingType");

    setDefinition = entity("IfcPropertySetDefinition");
    propertySet = entity("IfcPropertySet");
    setProperties = attribute(propertySet, "HasProperties");
    elementQuantity = entity("IfcElementQuantity");
    setQuantities = attribute(elementQuantity, "Quantities");

    propertyName = attribute(entity("IfcProperty"), "Name");
    single = entity("IfcPropertySingleValue");
    singleValue = attribute(single, "NominalValue");
    singleUnit = attribute(single, "Unit");
    bounded = entity("IfcPropertyBoundedValue");
    lowerBound = attribute(bounded, "LowerBoundValue");
    upperBound = attribute(bounded, "UpperBoundValue");
    boundedUnit = attribute(bounded, "Unit");
    enumerated = entity("IfcPropertyEnumeratedValue");
    enumeratedValues = attribute(enumerated, "EnumerationValues");
    enumeration = attribute(enumerated, "EnumerationReference");
    enumerationUnit = attribute(entity("IfcPropertyEnumeration"), "Unit");
    list = entity("IfcPropertyListValue");
    listValues = attribute(list, "ListValues");
    listUnit = attribute(list, "Unit");
    table = entity("IfcPropertyTableValue");
    definingValues = attribute(table, "DefiningValues");
    definedValues = attribute(table, "DefinedValues");
    definingUnit = attribute(table, "DefiningUnit");
    definedUnit = attribute(table, "DefinedUnit");
    reference = entity("IfcPropertyReferenceValue");
    referenced = attribute(reference, "PropertyReference");
    complex = entity("IfcComplexProperty");
    complexProperties = attribute(complex, "HasProperties");

    quantityName = attribute(entity("IfcPhysicalQuantity"), "Name");
    complexQuantity = entity("IfcPhysicalComplexQuantity");
    complexQuantities = attribute(complexQuantity, "HasQuantities");
    simpleQuantity = entity("IfcPhysicalSimpleQuantity");
    quantityUnit = attribute(simpleQuantity, "Unit");

    project = entity("IfcProject");
    unitsInContext = attribute(project, "UnitsInContext");
    units = attribute(entity("IfcUnitAssignment"), "Units");
    unitType = attribute(entity("IfcNamedUnit"), "UnitType");
    siUnit = entity("IfcSIUnit");
    siPrefix = attribute(siUnit, "Prefix");
    siName = attribute(siUnit, "Name");
    conversionName = attribute(entity("IfcConversionBasedUnit"), "Name");
    contextName = attribute(entity("IfcContextDependentUnit"), "Name");
    derivedUnit = entity("IfcDerivedUnit");
    derivedElements = attribute(derivedUnit, "Elements");
    derivedType = attribute(derivedUnit, "UnitType");
    elementUnit = attribute(entity("IfcDerivedUnitElement"), "Unit");
    elementExponent = attribute(entity("IfcDerivedUnitElement"), "Exponent");
    monetaryUnit = entity("IfcMonetaryUnit");
    currency = attribute(monetaryUnit, "Currency");
}

} // namespace KP_SDAI
