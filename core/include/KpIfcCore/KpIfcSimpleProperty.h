#pragma once

#include <KpIfcCore/KpIfcProperty.h>

class KcString;

/// Properties that are instances themselves: entries of property sets and element quantities.
namespace KP_SDAI {

/// A property whose value one attribute of the instance holds.
///
/// getAttribute() gives the value as its kind says (double, int, KpIfcBoolean, KpIfcLogical, KpDbObjectId; texts and
/// literals as KcString); eRefused where there is none. putAttribute() converts; a select keeps the type that it has,
/// or takes that of a select that is put.
class KPIFCCORE_EXPORT KpIfcSimpleProperty : public KpIfcProperty {
public:
    explicit KpIfcSimpleProperty(const KpAnsiString& attribute) : m_attribute(attribute) {}
    ~KpIfcSimpleProperty() override;

    KP::ErrorStatus getAttribute(const KpIfcEntityBase* instance, KpIfcVariant& value) const override;
    KP::ErrorStatus putAttribute(KpIfcEntityBase* instance, const KpIfcVariant& value) const override;

    /// The attribute that holds the value, in lower case.
    const KpAnsiString& attribute() const { return m_attribute; }
    /// What the instance is called; eRefused where it has no name.
    KP::ErrorStatus getName(const KpIfcEntityBase* instance, KcString& name) const;
    KP::ErrorStatus putName(KpIfcEntityBase* instance, const KcString& name) const;
    /// The unit that the instance names; eRefused where it names none, so that the project's counts.
    KP::ErrorStatus getUnit(const KpIfcEntityBase* instance, KpDbObjectId& unit) const;
    KP::ErrorStatus putUnit(KpIfcEntityBase* instance, const KpDbObjectId& unit) const;
    /// The defined type of the value ("IfcLengthMeasure"); "" where there is no value or its attribute decides.
    const char* measureType(const KpIfcEntityBase* instance) const;

protected:
    /// The same operations for another attribute of the instance.
    static KP::ErrorStatus getValue(const KpIfcEntityBase* instance, std::string_view attribute, KpIfcVariant& value);
    static KP::ErrorStatus putValue(KpIfcEntityBase* instance, std::string_view attribute, const KpIfcVariant& value);

private:
    KpAnsiString m_attribute;
};

/// An entry with one value.
class KPIFCCORE_EXPORT KpIfcPropertySingleValue : public KpIfcSimpleProperty {
public:
    KpIfcPropertySingleValue() : KpIfcSimpleProperty("nominalvalue") {}
    ~KpIfcPropertySingleValue() override;

protected:
    using KpIfcSimpleProperty::KpIfcSimpleProperty;

private:
    KpDbObjectId m_instance; ///< of a property that stands for one instance; null
};

/// An entry with a lowest and a highest value. getAttribute() gives an array of two variants, the lowest first, each of
/// them without value where there is no such bound; putAttribute() takes one.
class KPIFCCORE_EXPORT KpIfcPropertyBoundedValue : public KpIfcPropertySingleValue {
public:
    KpIfcPropertyBoundedValue() : KpIfcPropertySingleValue("upperboundvalue") {}
    ~KpIfcPropertyBoundedValue() override;
    KP::ErrorStatus getAttribute(const KpIfcEntityBase* instance, KpIfcVariant& value) const override;
    KP::ErrorStatus putAttribute(KpIfcEntityBase* instance, const KpIfcVariant& value) const override;
};

/// An entry that holds entries. Its kind is that of a simple property; getCollection() gives what it holds, whether its
/// attribute is HasQuantities or HasProperties.
class KPIFCCORE_EXPORT KpIfcComplexProperty : public KpIfcSimpleProperty {
public:
    explicit KpIfcComplexProperty(const KpAnsiString& attribute) : KpIfcSimpleProperty(attribute) {}
    ~KpIfcComplexProperty() override;
    /// The array of the handles.
    KP::ErrorStatus getAttribute(const KpIfcEntityBase* instance, KpIfcVariant& value) const override;
    KP::ErrorStatus putAttribute(KpIfcEntityBase* instance, const KpIfcVariant& value) const override;
    KP::ErrorStatus getCollection(const KpIfcEntityBase* instance, KpIfcArray<KpDbObjectId>& members) const override;
};

/// One quantity: a number in an attribute of its own ("areavalue").
class KPIFCCORE_EXPORT KpIfcQuantityClusterProperty : public KpIfcSimpleProperty {
public:
    explicit KpIfcQuantityClusterProperty(const KpAnsiString& attribute) : KpIfcSimpleProperty(attribute) {}
    ~KpIfcQuantityClusterProperty() override;
};

} // namespace KP_SDAI
