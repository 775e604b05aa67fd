#include <KpIfcCore/KpIfcVariant.h>
#include <KpIfcCore/KpIfcVariantType.h>
#include <KpRx/KcString.h>

#include <mutex>

namespace KP_SDAI {

namespace {

std::recursive_mutex& variantTypeMutex() {
    static auto& mutex = *new std::recursive_mutex; // never freed: modules may go after static objects did
    return mutex;
}
constexpr KpLocker g_variantTypeLocker;

} // namespace

void KpLocker::lock() const {
    variantTypeMutex().lock();
}
void KpLocker::unlock() const {
    variantTypeMutex().unlock();
}
const KpLocker* kpifcGetVaraintTypeLocker() {
    return &g_variantTypeLocker;
}

bool KpIfcVariantType::isSelect() const {
    return false;
}
bool KpIfcVariantType::isAggregate() const {
    return false;
}
const KpIfcMemObjectAllocator* KpIfcVariantType::objectMemAllocator() const {
    return m_allocator;
}
const KpIfcEnumFacts* KpIfcVariantType::enumeration() const {
    return nullptr;
}
KpDbObjectId KpIfcVariantType::reference(const KpIfcVariant&) const {
    return {};
}
const KcString* KpIfcVariantType::rxObjectValue(const void*) const {
    return nullptr;
}
bool KpIfcVariantType::subEqualTo(const void*, const void*) const {
    return false;
}
bool KpIfcVariantType::subToValueType(const KpIfcVariantType&, const KpIfcVariant&, KpIfcVariant&) const {
    return false;
}
bool KpIfcVariantType::subFromValueType(const KpIfcVariant&, KpIfcVariant&) const {
    return false;
}
bool KpIfcVariantType::subToString(KcString&, const void*, StringFormat) const {
    return false;
}

bool KpIfcVariantType::toValueType(const KpIfcVariantType& target, const KpIfcVariant& value,
                                   KpIfcVariant& result) const {
    if (value.type() != this) return false;
    if (&target != this) return subToValueType(target, value, result);
    result = value;
    return true;
}
bool KpIfcVariantType::fromValueType(const KpIfcVariant& value, KpIfcVariant& result) const {
    if (value.isEmpty()) return false;
    if (value.type() != this) return subFromValueType(value, result);
    result = value;
    return true;
}
bool KpIfcVariantType::toString(KcString& out, const KpIfcVariant& value, StringFormat format) const {
    return value.type() == this && subToString(out, value.data(), format);
}
const char* KpIfcVariantType::typePath(const KpIfcVariant& value) const {
    return value.type() == this ? subTypePath(value.data()) : nullptr;
}
const char* KpIfcVariantType::subTypePath(const void*) const {
    return nullptr;
}
bool KpIfcVariantType::createVariant(KpIfcVariant&) const {
    return false;
}
KpIfcSelect* KpIfcVariantType::storedSelect(const KpIfcVariant&) const {
    return nullptr;
}
KpIfcSelect* KpIfcVariantType::select(const void*) const {
    return nullptr;
}
KpIfcAggr* KpIfcVariantType::aggregate(const void*) const {
    return nullptr;
}

KpIfcVariantType& KpIfcDescriptorSlot::make() {
    const KpIfcAutoLocker guard(kpifcGetVaraintTypeLocker());
    KpIfcVariantType* descriptor = m_descriptor.load(std::memory_order_relaxed);
    if (!descriptor) {
        descriptor = m_create();
        m_descriptor.store(descriptor, std::memory_order_release);
    }
    return *descriptor;
}

void KpIfcDescriptorSlot::release() {
    const KpIfcAutoLocker guard(kpifcGetVaraintTypeLocker());
    delete m_descriptor.exchange(nullptr, std::memory_order_acq_rel);
}

} // namespace KP_SDAI
