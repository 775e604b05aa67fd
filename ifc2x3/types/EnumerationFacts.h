#pragma once

#include <IFC2X3/Enumeration.h>
#include <KpIfcCore/KpIfcVariantTypes.h>

namespace IFC2X3 {

/// The name that the descriptor of an enumeration shows. Every generated enumeration specialises it.
template <class E>
inline constexpr const wchar_t* enumerationDescriptorName = nullptr;

template <class E>
KP_SDAI::KpIfcVariantType* createEnumerationDescriptor() {
    return new KP_SDAI::KpIfcVariantTypeEnum<E>(enumerationDescriptorName<E>, EnumFacts<E>::value);
}

} // namespace IFC2X3
