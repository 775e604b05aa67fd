#include <KpIfcCore/KpIfcModel.h>

#include "model/ModelData.h"
#include "properties/PropertyEntities.h"

#include <KpRx/KcString.h>

namespace KP_SDAI {

KpDbObjectId KpIfcModel::findByGlobalId(std::string_view globalId) const {
    if (!m_data->isWhole()) {
        const std::vector<KpDbObjectId> found = m_data->findUnread(globalId);
        return found.empty() ? KpDbObjectId() : found.front();
    }
    m_data->commit();
    return m_data->globalIdIndex().find(globalId);
}

KpIfcArray<KpDbObjectId> KpIfcModel::findAllByGlobalId(std::string_view globalId) const {
    KpIfcArray<KpDbObjectId> instances;
    if (!m_data->isWhole()) {
        for (const KpDbObjectId& handle : m_data->findUnread(globalId)) instances.append(handle);
        return instances;
    }
    m_data->commit();
    m_data->globalIdIndex().copyTo(globalId, instances);
    return instances;
}

KpIfcArray<KpIfcSharedGlobalId> KpIfcModel::sharedGlobalIds() const {
    m_data->commit();
    return m_data->globalIdIndex().shared();
}

namespace {

/// A value that is looked for in one attribute, in the forms in which it is compared.
class WantedValue {
public:
    /// `owner` is any instance of the model.
    WantedValue(const KpIfcAttributeFacts& row, const KpIfcVariant& given, const KpIfcEntityBase& owner)
        : m_row(row), m_given(given), m_shown(presented(owner, given)) {
        if (m_shown.isEmpty()) m_shown = given; // of a type that instances do not hold
        if (row.kind != KpIfcFieldKind::enumeration) return;
        const KcString* const text = m_shown.getIf<KcString>();
        m_code = text ? row.enumeration->code(text->utf8Ptr(), text->view().size()) : row.enumeration->count;
    }

    bool isHeldBy(KpIfcEntityBase& instance) const {
        if (m_row.kind == KpIfcFieldKind::derived) return false;
        KpIfcVariant held;
        readAttribute(instance, m_row, held);
        const KpIfcVariant shown = presented(instance, held);
        if (m_given.isEmpty() || shown.isEmpty()) return m_given.isEmpty() && shown.isEmpty();
        if (m_row.kind == KpIfcFieldKind::enumeration) return m_row.enumerationCode(instance) == m_code;
        if (m_row.kind == KpIfcFieldKind::aggregate) {
            if (m_given.holds<KpIfcArray<KpIfcVariant>>()) return m_given == shown;
            m_row.aggregate->toArray(m_row.member.aggregate(instance), held);
            return m_given == held;
        }
        KpIfcVariant scratch;
        const KpIfcVariant* const converted = m_shown.convert(*shown.type(), scratch);
        return converted && *converted == shown;
    }

private:
    const KpIfcAttributeFacts& m_row;
    const KpIfcVariant& m_given;
    KpIfcVariant m_shown; ///< as programs get values
    int m_code = 0;
};

} // namespace

KpIfcArray<KpDbObjectId> KpIfcModel::findByAttribute(std::string_view entityName, std::string_view attributeName,
                                                     const KpIfcVariant& value) const {
    KpIfcArray<KpDbObjectId> found;
    const KpIfcEntityType* const entity = schema().findEntity(entityName);
    const auto* const attribute = entity ? entity->findAttribute(attributeName) : nullptr;
    const auto* const held = attribute ? attribute->as<KpIfcExplicitAttributeDefinition>() : nullptr;
    if (!held || !held->facts()) return found;
    const Range range = instances(entity);
    if (range.begin() == range.end()) return found;
    const WantedValue wanted(*held->facts(), value, **range.begin());
    for (KpIfcEntityBase* instance : range)
        if (wanted.isHeldBy(*instance)) found.append(instance->objectId());
    return found;
}

} // namespace KP_SDAI
