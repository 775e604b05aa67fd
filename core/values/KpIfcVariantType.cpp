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
