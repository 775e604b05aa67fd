#pragma once

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcSelect.h>

#include <type_traits>
#include <utility>

/// Aggregate attributes by name: one getter and one setter for every class of aggregate.
namespace KP_SDAI::detail {

template <class Aggr>
void getAggregate(KpIfcAggr& field, KpIfcVariant& value) {
    value.set(static_cast<typename Aggr::Family*>(&static_cast<Aggr&>(field)));
}

/// The value as attributes of `owner` take it: a host's text, in `scratch`, in the form that its model's texts have;
/// any other value as it is.
KPIFCCORE_EXPORT const KpIfcVariant& inModelsForm(const KpIfcVariant& value, const KpIfcEntityBase& owner,
                                                  KpIfcVariant& scratch);

/// One element of an array of variants.
template <class T>
bool convertElement(const KpIfcVariant& given, const KpIfcEntityBase& owner, T& element) {
    KpIfcVariant text;
    const KpIfcVariant& value = inModelsForm(given, owner, text);
    if constexpr (std::is_base_of_v<KpIfcSelect, T>) {
        KpIfcVariant scratch;
        const KpIfcVariant* converted = value.convert(KpIfcVariantType::Desc<T>::value(), scratch);
        const T* select = converted ? converted->template getIf<T>() : nullptr;
        if (select) element = *select;
        return select != nullptr;
    } else {
        return value.get(element);
    }
}

/// The elements that a value stands for; false where it stands for none or one does not convert.
template <class Aggr>
bool convertElements(const KpIfcVariant& value, const KpIfcEntityBase& owner,
                     KpIfcArray<typename Aggr::Element>& elements) {
    using T = typename Aggr::Element;
    using Family = typename Aggr::Family;
    if (const auto* array = value.getIf<KpIfcArray<T>>()) {
        elements = *array;
        return true;
    }
    if (Family* const* aggregate = value.getIf<Family*>()) {
        if (*aggregate) (*aggregate)->copyTo(elements);
        return *aggregate != nullptr;
    }
    if (const auto* variants = value.getIf<KpIfcArray<KpIfcVariant>>()) {
        elements.reserve(variants->length());
        for (const KpIfcVariant& variant : *variants) {
            T element{};
            if (!convertElement(variant, owner, element)) return false;
            elements.append(element);
        }
        return true;
    }
    if constexpr (std::is_base_of_v<KpIfcSelect, T>) {
        if (const auto* handles = value.getIf<KpIfcArray<KpDbObjectId>>()) {
            elements.reserve(handles->length());
            for (const KpDbObjectId& handle : *handles) {
                T element;
                if (!element.setHandle(handle)) return false;
                elements.append(element);
            }
            return true;
        }
    }
    return false;
}

template <class Aggr>
bool putAggregate(KpIfcAggr& field, const KpIfcVariant& value, KpIfcEntityBase& owner) {
    KpIfcArray<typename Aggr::Element> elements; // a copy: the value may be this aggregate
    if (!convertElements<Aggr>(value, owner, elements)) return false;
    KpIfcChange::before(owner);
    static_cast<Aggr&>(field).replace(std::move(elements));
    return true;
}

} // namespace KP_SDAI::detail
