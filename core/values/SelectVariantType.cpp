#include <KpIfcCore/KpIfcVariantTypes.h>

#include <cstring>
#include <utility>

namespace KP_SDAI {

KpIfcSelectVariantType::~KpIfcSelectVariantType() = default;

bool KpIfcSelectVariantType::subEqualTo(const void* a, const void* b) const {
    const KpIfcSelect* x = select(a);
    const KpIfcSelect* y = select(b);
    return x == y || (x && y && *x == *y);
}

bool KpIfcSelectVariantType::subToValueType(const KpIfcVariantType& target, const KpIfcVariant& value,
                                            KpIfcVariant& result) const {
    const KpIfcSelect* stored = storedSelect(value);
    return stored && KpIfcSelectConversion::_subToValueType(target, *stored, result);
}

bool KpIfcSelectVariantType::subToString(KcString& out, const void* value, StringFormat format) const {
    const KpIfcSelect* shown = value ? select(value) : nullptr;
    return shown && KpIfcSelectConversion::_subToString(out, *shown, format);
}

const char* KpIfcSelectVariantType::subTypePath(const void* value) const {
    const KpIfcSelect* shown = select(value);
    return shown ? shown->underlyingTypeName() : nullptr;
}

KpDbObjectId KpIfcSelectVariantType::reference(const KpIfcVariant& value) const {
    return KpIfcSelectConversion::reference(storedSelect(value));
}

KpIfcSelect* KpIfcSelectVariantType::storedSelect(const KpIfcVariant& value) const {
    return value.type() == this ? select(value.data()) : nullptr;
}

KpIfcSelectValueVariantType::~KpIfcSelectValueVariantType() = default;

bool KpIfcSelectValueVariantType::subFromValueType(const KpIfcVariant& value, KpIfcVariant& result) const {
    KpIfcVariant converted;
    createVariant(converted);
    if (!KpIfcSelectConversion::_subFromValueType(value, *select(converted.data()))) return false;
    result = std::move(converted);
    return true;
}

KpIfcSelect* KpIfcSelectValueVariantType::select(const void* value) const {
    return const_cast<KpIfcSelect*>(static_cast<const KpIfcSelect*>(value));
}

KpIfcSelectPtrVariantType::KpIfcSelectPtrVariantType(const wchar_t* displayName, KpIfcDescriptorSlot& held)
    : KpIfcSelectVariantType(displayName, sizeof(KpIfcSelect*), nullptr, nullptr), m_held(held) {}

KpIfcSelectPtrVariantType::~KpIfcSelectPtrVariantType() = default;

bool KpIfcSelectPtrVariantType::subToValueType(const KpIfcVariantType& target, const KpIfcVariant& value,
                                               KpIfcVariant& result) const {
    const KpIfcSelect* pointed = storedSelect(value);
    if (!pointed || &target != &m_held.value()) return KpIfcSelectVariantType::subToValueType(target, value, result);
    result.setCopy(target, pointed);
    return true;
}

bool KpIfcSelectPtrVariantType::subFromValueType(const KpIfcVariant& value, KpIfcVariant& result) const {
    const KpIfcVariantType& held = m_held.value();
    if (value.type() != &held) return false;
    result.setPlain(*this, held.select(value.data()));
    return true;
}

bool KpIfcSelectPtrVariantType::createVariant(KpIfcVariant& value) const {
    value.setPlain(*this, static_cast<KpIfcSelect*>(nullptr));
    return true;
}

KpIfcSelect* KpIfcSelectPtrVariantType::select(const void* value) const {
    // The class of the select is the module's own; its base stands at its beginning.
    KpIfcSelect* pointed;
    std::memcpy(&pointed, value, sizeof pointed);
    return pointed;
}

} // namespace KP_SDAI
