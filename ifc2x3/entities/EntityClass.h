#pragma once

#include <IFC2X3/Entity.h>
#include <IFC2X3/Enumeration.h>
#include <IFC2X3/Select.h>
#include <KpIfcCore/KpIfcAggrAccess.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include <new>
#include <span>
#include <string_view>
#include <type_traits>

/// Marks what the module does not export though its class is exported.
#if defined(_WIN32)
#define KPIFC_INTERNAL
#else
#define KPIFC_INTERNAL __attribute__((visibility("hidden")))
#endif

/// What the classes of all entities share: their rows of facts and the operations that walk them.
namespace IFC2X3 {

using KP_SDAI::KpIfcAggr;
using KP_SDAI::KpIfcCounterpartFacts;
using KP_SDAI::KpIfcFieldKind;
using KP_SDAI::KpIfcSelect;
using KP_SDAI::KpIfcUniqueFacts;

inline constexpr std::uint8_t kOptional = KpIfcAttributeFacts::kOptional;
inline constexpr std::uint8_t kFirst = KpIfcAttributeFacts::kFirst;
inline constexpr std::uint8_t kBinary = KpIfcAttributeFacts::kBinary;
inline constexpr std::uint8_t kDefinedType = KpIfcAttributeFacts::kDefinedType;
inline constexpr std::uint8_t kUnique = KpIfcAttributeFacts::kUnique;

namespace detail {

template <class Class, class Type>
Class classOf(Type Class::*);
template <class Class, class Type>
Type typeOf(Type Class::*);

/// Addresses of members whose pointers have no common type. Each instance that they are given is of the member's class.
template <auto member>
void* codeAddress(KpIfcEntityBase& instance) {
    return &(static_cast<decltype(classOf(member))&>(instance).*member);
}
template <auto member>
KpIfcSelect& selectOf(KpIfcEntityBase& instance) {
    return static_cast<decltype(classOf(member))&>(instance).*member;
}
template <auto member>
KpIfcAggr& aggregateOf(KpIfcEntityBase& instance) {
    return static_cast<decltype(classOf(member))&>(instance).*member;
}

template <auto member>
KP_SDAI::KpIfcInverseMembers& inverseOf(KpIfcEntityBase& instance) {
    return static_cast<decltype(classOf(member))&>(instance).*member;
}

template <class T>
constexpr KpIfcFieldKind fieldKind() {
    if constexpr (std::is_same_v<T, KpAnsiString>) return KpIfcFieldKind::string;
    if constexpr (std::is_same_v<T, KpIfcGUID>) return KpIfcFieldKind::guid;
    if constexpr (std::is_same_v<T, double>) return KpIfcFieldKind::real;
    if constexpr (std::is_same_v<T, int>) return KpIfcFieldKind::integer;
    if constexpr (std::is_same_v<T, KpIfcBoolean>) return KpIfcFieldKind::boolean;
    if constexpr (std::is_same_v<T, KpIfcLogical>) return KpIfcFieldKind::logical;
    if constexpr (std::is_same_v<T, KpDbObjectId>) return KpIfcFieldKind::reference;
    if constexpr (std::is_enum_v<T>) return KpIfcFieldKind::enumeration;
    if constexpr (std::is_base_of_v<KpIfcSelect, T>) return KpIfcFieldKind::select;
    if constexpr (std::is_base_of_v<KpIfcAggr, T>) return KpIfcFieldKind::aggregate;
}

} // namespace detail

constexpr void setName(KpIfcAttributeFacts& row, std::string_view name) {
    row.nameLength = static_cast<std::uint32_t>(name.size());
    row.key = KpIfcAttributeFacts::keyOf(name.data(), name.size());
}

/// The row of an explicit attribute. `target` is given for references and aggregates of references, `width` for
/// binaries and aggregates of binaries.
template <auto member>
constexpr KpIfcAttributeFacts field(const char* name, std::uint8_t flags, KpIfcEntityType* const* target = nullptr,
                                    std::uint16_t width = 0) {
    using Type = decltype(detail::typeOf(member));
    constexpr KpIfcFieldKind kind = detail::fieldKind<Type>();
    KpIfcAttributeFacts row{name, kind, flags, width, {}, target};
    setName(row, name);
    if constexpr (kind == KpIfcFieldKind::enumeration) {
        row.member = detail::codeAddress<member>;
        row.enumeration = &EnumFacts<Type>::value;
    } else if constexpr (kind == KpIfcFieldKind::select) {
        row.member = detail::selectOf<member>;
        row.select = &Type::g_descriptors;
    } else if constexpr (kind == KpIfcFieldKind::aggregate) {
        row.member = detail::aggregateOf<member>;
        row.aggregate = flags & kBinary ? &KP_SDAI::kBinaryAggregateFacts : &KP_SDAI::kAggregateFacts<Type>;
    } else {
        row.member = static_cast<Type KpIfcEntityBase::*>(member);
    }
    return row;
}

/// The row of an inherited attribute that the entity redeclares as derived.
constexpr KpIfcAttributeFacts derived(const char* name, std::uint8_t flags) {
    return {name, KpIfcFieldKind::derived, flags, 0, {}};
}

/// The row of a field that files have and instances do not keep; they have a boolean in its place.
template <auto member>
constexpr KpIfcAttributeFacts notKept(const char* name, std::uint8_t flags) {
    KpIfcAttributeFacts row{name, KpIfcFieldKind::notKept, flags, 0,
                            static_cast<KpIfcBoolean KpIfcEntityBase::*>(member)};
    setName(row, name);
    return row;
}

/// The row of an inverse attribute; `index` counts the entity's own.
template <auto member>
constexpr KpIfcInverseFacts inverse(const char* name, std::uint32_t index) {
    return {name, detail::inverseOf<member>, index, decltype(detail::typeOf(member))::kCount,
            KpIfcAttributeFacts::keyOf(name, std::string_view(name).size())};
}

inline constexpr std::span<const KpIfcAttributeFacts> noAttributes;
inline constexpr std::span<const KpIfcInverseFacts> noInverses;
inline constexpr std::span<const KpIfcCounterpartFacts> noCounterparts;
inline constexpr std::span<const KpIfcUniqueFacts> noUniqueRules;

template <class T>
KpIfcEntityBase* constructEntity(void* memory) noexcept {
    return ::new (memory) T;
}

/// The facts of one entity class. `record` is given where the entity redeclares attributes as derived.
template <class T>
constexpr KpIfcEntityFacts
entityFacts(const char* name, bool isAbstract, const KpIfcEntityFacts* supertype,
            std::span<const KpIfcAttributeFacts> attributes, std::span<const KpIfcAttributeFacts> record,
            std::span<const KpIfcUniqueFacts> uniqueRules, std::span<const KpIfcInverseFacts> inverses,
            std::span<const KpIfcCounterpartFacts> counterparts) {
    static_assert(alignof(T) <= 8);
    return {name,
            isAbstract,
            sizeof(T),
            constructEntity<T>,
            attributes.data(),
            static_cast<std::uint32_t>(attributes.size()),
            record.data(),
            static_cast<std::uint32_t>(record.size()),
            uniqueRules.data(),
            static_cast<std::uint32_t>(uniqueRules.size()),
            inverses.data(),
            static_cast<std::uint32_t>(inverses.size()),
            counterparts.data(),
            static_cast<std::uint32_t>(counterparts.size()),
            supertype};
}

/// Enters an instance in the inverse attributes of those that it refers to through the attributes of `rows`. What
/// cannot be entered is passed over in silence.
void enterCounterParts(KpIfcEntityBase& referrer, std::span<const KpIfcCounterpartFacts> rows);

/// The instance behind a handle, converted unchecked.
template <class T>
T* opened(const KpDbObjectId& handle) {
    return static_cast<T*>(handle.openObject(KP_SDAI::kForRead, false));
}

} // namespace IFC2X3
