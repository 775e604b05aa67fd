#pragma once

#include <IFC2X3/Types.h>

#include <cstdint>
#include <string_view>

namespace IFC2X3 {

/// The facts of an enumeration type; every generated enumeration specialises it with static members `value`
/// and `descriptor`.
template <class E>
struct EnumFacts;

/// Where the descriptor of an enumeration is kept (KpIfcVariantType::Desc).
template <class E>
KpIfcDescriptorSlot& descriptorSlot(E) requires requires {
    EnumFacts<E>::descriptor;
}
{ return EnumFacts<E>::descriptor; }

/// Text of a literal as the schema writes it; null for the unset code and codes that are no literal's.
template <class E>
const char* literalText(E code) {
    return EnumFacts<E>::value.text(static_cast<int>(code));
}

/// Code of a literal in any letter case; the unset code where there is no such literal.
///
///     IfcRoleEnum role = literalCode<IfcRoleEnum>("Architect");
template <class E>
E literalCode(std::string_view text) {
    return static_cast<E>(EnumFacts<E>::value.code(text.data(), text.size()));
}

} // namespace IFC2X3
