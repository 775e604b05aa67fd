#pragma once

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcTypes.h>

#include <memory>

namespace KP_SDAI {

/// A bound of an aggregation: a number, or "?".
class KpIfcIntegerBound {
public:
    /// "?": no bound.
    KpIfcIntegerBound() = default;
    explicit KpIfcIntegerBound(int value) : m_value(value) {}

    bool isUnbounded() const { return m_value == Consts::KpIntUnset; }
    /// Consts::KpIntUnset for "?".
    int value() const { return m_value; }

private:
    int m_value = Consts::KpIntUnset;
};

/// A list, set or array of elements of one type.
class KPIFCCORE_EXPORT KpIfcAggregationType : public DictionaryInstance {
public:
    ~KpIfcAggregationType() override;

    /// The keyword of EXPRESS: "LIST", "SET" or "ARRAY".
    virtual const char* keyword() const = 0;
    /// Sizes of a list or set, first and last index of an array.
    const KpIfcIntegerBound& lowerBound() const { return *m_lower; }
    const KpIfcIntegerBound& upperBound() const { return *m_upper; }

    /// An entity, a named type or a simple type; null only where its name could not be resolved.
    DictionaryInstance* elementType() const { return m_element; }
    /// Links to a type that somebody else owns.
    void elementType(DictionaryInstance* type) { m_element = type; }

protected:
    /// Takes over the bounds. The element type is somebody else's; null until it is resolved by name.
    KpIfcAggregationType(DictionaryInstance* element, KpIfcIntegerBound* lower, KpIfcIntegerBound* upper);

private:
    DictionaryInstance* m_element;
    std::unique_ptr<KpIfcIntegerBound> m_lower;
    std::unique_ptr<KpIfcIntegerBound> m_upper;
};

class KPIFCCORE_EXPORT KpIfcListType : public KpIfcAggregationType {
public:
    KpIfcListType(DictionaryInstance* element, KpIfcIntegerBound* lower, KpIfcIntegerBound* upper, bool unique);
    ~KpIfcListType() override;
    const char* keyword() const override { return "LIST"; }
    bool isUnique() const { return m_unique; }

private:
    bool m_unique;
};

class KPIFCCORE_EXPORT KpIfcSetType : public KpIfcAggregationType {
public:
    KpIfcSetType(DictionaryInstance* element, KpIfcIntegerBound* lower, KpIfcIntegerBound* upper);
    ~KpIfcSetType() override;
    const char* keyword() const override { return "SET"; }
};

class KPIFCCORE_EXPORT KpIfcArrayType : public KpIfcAggregationType {
public:
    KpIfcArrayType(DictionaryInstance* element, KpIfcIntegerBound* lower, KpIfcIntegerBound* upper, bool optional,
                   bool unique);
    ~KpIfcArrayType() override;
    const char* keyword() const override { return "ARRAY"; }
    /// True where places may be without an element.
    bool isOptional() const { return m_optional; }
    bool isUnique() const { return m_unique; }

private:
    bool m_optional;
    bool m_unique;
};

} // namespace KP_SDAI
