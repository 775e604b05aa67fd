#include "properties/InstanceCopies.h"

#include <KpIfcCore/KpIfcGlobalIds.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpRx/KcString.h>

namespace KP_SDAI {

KpIfcEntityBase& InstanceCopies::create(const KpIfcEntityType* entity) {
    return *m_model.create(entity);
}

KpIfcEntityBase& InstanceCopies::createRooted(const KpIfcEntityType* entity, const KpIfcEntityBase& owner) {
    KpIfcEntityBase& instance = *m_model.createRooted(entity);
    put(instance, m_entities.ownerHistory, m_entities.ownerHistory.value(owner));
    return instance;
}

KpIfcEntityBase* InstanceCopies::copy(const KpIfcEntityBase& instance) {
    KpIfcEntityBase& copy = create(instance.getInstanceType());
    for (const KpIfcAttributeFacts* row : instance.getInstanceType()->recordFields()) {
        KpIfcVariant value;
        readAttribute(const_cast<KpIfcEntityBase&>(instance), *row, value); // looks only
        if (!value.isEmpty()) copy.putAttr(row->name, value);
    }
    if (isKind(instance, m_entities.root)) put(copy, m_entities.globalId, newGlobalId());
    return &copy;
}

void InstanceCopies::put(KpIfcEntityBase& instance, const PropertyAttribute& attribute, const KpIfcVariant& value) {
    instance.putAttr(attribute.row->name, value);
}

void InstanceCopies::putText(KpIfcEntityBase& instance, const PropertyAttribute& attribute, const std::string& utf8) {
    KcString text;
    text.assign(utf8.c_str());
    put(instance, attribute, text);
}

void InstanceCopies::append(KpIfcEntityBase& instance, const PropertyAttribute& attribute, const KpDbObjectId& handle) {
    KpIfcArray<KpDbObjectId> members(8);
    visitReferences(instance, *attribute.row, [&](const KpDbObjectId& member) { members.append(member); });
    members.append(handle);
    put(instance, attribute, members);
}

void InstanceCopies::replace(KpIfcEntityBase& instance, const PropertyAttribute& attribute, const KpDbObjectId& former,
                             const KpDbObjectId& handle) {
    KpIfcArray<KpDbObjectId> members(8);
    visitReferences(instance, *attribute.row, [&](const KpDbObjectId& member) {
        if (!(member == former))
            members.append(member);
        else if (!handle.isNull())
            members.append(handle);
    });
    put(instance, attribute, members);
}

std::size_t InstanceCopies::holderCount(const KpIfcEntityBase& entry) const {
    std::size_t count = 0;
    for (const KpDbObjectId& handle : m_model.referrers(entry.objectId())) {
        const KpIfcEntityBase& referrer = *handle.openObject();
        count += m_entities.members(referrer).owner || isKind(referrer, m_entities.overridesProperties);
    }
    return count;
}

} // namespace KP_SDAI
