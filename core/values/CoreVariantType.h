#pragma once

#include <KpIfcCore/KpIfcVariantTypes.h>

namespace KP_SDAI::detail {

/// Descriptor of one of the runtime's own types.
class CoreVariantType final : public KpIfcVariantType {
public:
    constexpr CoreVariantType(CoreType type, const wchar_t* displayName, std::size_t size,
                              const KpIfcMemObjectAllocator* allocator = nullptr, bool onHeap = false)
        : KpIfcVariantType(displayName, size, nullptr, nullptr, allocator, onHeap), m_type(type) {}

    CoreType coreType() const { return m_type; }

    bool isAggregate() const override { return m_type == kAggr; }
    KpDbObjectId reference(const KpIfcVariant& value) const override {
        const KpDbObjectId* handle = value.getIf<KpDbObjectId>();
        return handle ? *handle : KpDbObjectId();
    }
    const KcString* rxObjectValue(const void* value) const override {
        return m_type == kKcString ? static_cast<const KcString*>(value) : nullptr;
    }
    KpIfcAggr* aggregate(const void* value) const override {
        return m_type == kAggr ? *static_cast<KpIfcAggr* const*>(value) : nullptr;
    }
    bool subEqualTo(const void* a, const void* b) const override;
    bool subToValueType(const KpIfcVariantType& target, const KpIfcVariant& value, KpIfcVariant& result) const override;
    bool subToString(KcString& out, const void* value, StringFormat format) const override;
    bool createVariant(KpIfcVariant& value) const override;

private:
    CoreType m_type;
};

/// The descriptor as one of the above; null where it is not.
const CoreVariantType* asCoreType(const KpIfcVariantType& type);

template <class T>
bool give(KpIfcVariant& result, const T& value) {
    result.set(value);
    return true;
}

} // namespace KP_SDAI::detail
