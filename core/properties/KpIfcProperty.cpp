#include <KpIfcCore/KpIfcProperty.h>

namespace KP_SDAI {

KpIfcPropertyFeature::~KpIfcPropertyFeature() = default;
KpIfcDispAsPropFeature::~KpIfcDispAsPropFeature() = default;
KpIfcHierarchicalPropFeature::~KpIfcHierarchicalPropFeature() = default;

KpIfcProperty::KpIfcProperty() noexcept = default;
KpIfcProperty::~KpIfcProperty() {
    for (const KpIfcPropertyFeature* feature : m_features) delete feature;
}

KP::ErrorStatus KpIfcProperty::countMembers(const KpIfcEntityBase* instance, std::uint32_t& count) const {
    KpIfcArray<KpDbObjectId> members(8);
    const KP::ErrorStatus status = getCollection(instance, members);
    if (status == KP::eOk) count = members.length();
    return status;
}

void KpIfcProperty::init(const KpAnsiString& name, const KpIfcVariantType& type, const KpIfcEntityType* entityType) {
    m_name = name;
    m_type = &type;
    m_entityType = entityType;
}

KpIfcCollectionProperty::~KpIfcCollectionProperty() = default;

KpIfcPropertyKind KpIfcCollectionProperty::kind() const {
    return kCollectionProperty;
}

KpIfcPropertyCollection::KpIfcPropertyCollection() = default;
KpIfcPropertyCollection::~KpIfcPropertyCollection() = default;

void KpIfcPropertyCollection::add(KpIfcProperty* property) {
    m_properties.push_back(std::unique_ptr<KpIfcProperty>(property));
}

const KpIfcProperty* KpIfcPropertyCollection::find(std::string_view name) const {
    for (const auto& property : m_properties)
        if (equalNoCase(name.data(), name.size(), property->name().constStr())) return property.get();
    return nullptr;
}

} // namespace KP_SDAI
