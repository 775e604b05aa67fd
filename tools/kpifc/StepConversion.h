#pragma once

#include <KpIfcCore/KpIfcAggregationType.h>
#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcSelectType.h>
#include <KpIfcCore/KpIfcVariant.h>
#include <KpIfcCore/KpStepValue.h>

#include <string>

namespace kpifc {

/// Makes values for KpIfcEntityBase::putAttr() of values as files spell them.
///
/// Stricter than putAttr(), which takes what converts: a value must be of the type that the dictionary declares, a
/// literal one of its enumeration, a reference one to an instance of the declared entity. Integers count as reals.
/// Sizes of aggregates are not looked at.
class StepConversion {
public:
    explicit StepConversion(const KP_SDAI::KpIfcModel& model) : m_model(model) {}

    /// Any value but "$". Selects are made by the descriptor `select`; it may be null where the type has none. Throws
    /// Failure that tells what was found and expected. The result may point into the dictionary.
    KP_SDAI::KpIfcVariant convert(const KP_SDAI::KpStepValue& value, const KP_SDAI::DictionaryInstance& type,
                                  const KP_SDAI::KpIfcVariantType* select) const;

private:
    using Value = KP_SDAI::KpStepValue;
    using Type = KP_SDAI::DictionaryInstance;
    using Variant = KP_SDAI::KpIfcVariant;

    Variant simple(const Value& value, const KP_SDAI::KpIfcSimpleType& simple, const Type& declared) const;
    Variant number(const Value& value, const Type& declared) const;
    Variant wholeNumber(const Value& value, const Type& declared) const;
    Variant truth(const Value& value, bool isLogical, const Type& declared) const;
    Variant string(const Value& value, const Type& declared) const;
    Variant binary(const Value& value, const Type& declared) const;
    Variant literal(const Value& value, const KP_SDAI::KpIfcEnumerationType& enumeration, const Type& declared) const;
    Variant reference(const Value& value, const KP_SDAI::KpIfcEntityType& entity) const;
    Variant alternative(const Value& value, const KP_SDAI::KpIfcVariantType& select, const Type& declared) const;
    Variant list(const Value& value, const KP_SDAI::KpIfcAggregationType& aggregation,
                 const KP_SDAI::KpIfcVariantType* select, const Type& declared) const;
    /// The handle that a reference spells; throws Failure where there is no such instance.
    KP_SDAI::KpDbObjectId handle(const Value& value, const Type& declared) const;

    const KP_SDAI::KpIfcModel& m_model;
};

} // namespace kpifc
