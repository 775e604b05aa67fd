#include "properties/AttributeProperty.h"

#include "entities/EntityClass.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcException.h>
#include <KpIfcCore/KpIfcInverseMembers.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcReferences.h>
#include <KpIfcCore/TextEncodeDecode.h>
#include <KpRx/KcString.h>

#include <cstring>

namespace IFC2X3 {

using KP_SDAI::KpIfcChange;
using KP_SDAI::KpIfcModel;
using KP_SDAI::KpIfcVariantType;

namespace {

bool isOf(const KpIfcEntityBase* instance, const KpIfcEntityType* type) {
    return instance && instance->isKindOf(type);
}

bool mayChange(const KpIfcEntityBase& instance) {
    const KpIfcModel* model = instance.owningModel();
    return !model || model->mode() == KP_SDAI::kReadWrite;
}

/// The marker of an unset text stands for itself, so that what was got can be put.
KcString shown(const KpIfcEntityBase& instance, const KpAnsiString& text) {
    KcString shown;
    KP_SDAI::TextEncodeDecode().decodeText(text, shown, text.isUnset() ? KP_SDAI::kCodecUtf8 : codecOf(instance));
    return shown;
}
bool isUnset(const KcString& text) {
    return text.view() == Consts::KpStringUnset;
}

/// Appends what an attribute of a relation refers to. Not by name: that would count as a change of the relation.
void appendRelated(const KpDbObjectId& relation, const char* attribute, KpIfcArray<KpDbObjectId>& members) {
    KpIfcEntityBase* instance = relation.openObject();
    if (!instance) return;
    const auto* definition = instance->getInstanceType()->findAttribute(attribute);
    const auto* explicitOne = definition ? definition->as<KP_SDAI::KpIfcExplicitAttributeDefinition>() : nullptr;
    if (!explicitOne) return;
    KP_SDAI::visitReferences(*instance, *explicitOne->facts(), [&](const KpDbObjectId& handle) {
        if (!handle.isNull()) members.append(handle);
    });
}

template <class T>
KP::ErrorStatus store(KpIfcEntityBase& instance, T& member, const KpIfcVariant& value) {
    KpIfcChange::before(instance);
    member = *value.getIf<T>();
    return KP::eOk;
}

template <class Property>
void add(KP_SDAI::KpIfcPropertyCollection& collection, const KpIfcEntityType* type, Property* property) {
    collection.add(property); // first, so that it is owned
    property->init(property->attributeName(), property->descriptor(), type);
}

} // namespace

ExplicitProperty::ExplicitProperty(const KpIfcEntityFacts& facts, std::uint32_t index) noexcept
    : m_row(facts.attributes[index]) {}
InverseProperty::InverseProperty(const KpIfcEntityFacts& facts, std::uint32_t index) noexcept
    : m_row(facts.inverses[index]) {}
HierarchyProperty::HierarchyProperty(const KpIfcEntityFacts& facts, std::uint32_t index, const char* related) noexcept
    : m_row(facts.inverses[index]), m_related(related) {}

void addProperty(KP_SDAI::KpIfcPropertyCollection& collection, const KpIfcEntityType* type,
                 ExplicitProperty* property) {
    add(collection, type, property);
}
void addProperty(KP_SDAI::KpIfcPropertyCollection& collection, const KpIfcEntityType* type, InverseProperty* property) {
    add(collection, type, property);
}
void addProperty(KP_SDAI::KpIfcPropertyCollection& collection, const KpIfcEntityType* type,
                 HierarchyProperty* property) {
    add(collection, type, property);
    property->propertyFeatures().reserve(2); // so that nobody loses one
    property->propertyFeatures().push_back(new KP_SDAI::KpIfcDispAsPropFeature);
    property->propertyFeatures().push_back(new KP_SDAI::KpIfcHierarchicalPropFeature);
}

const KpIfcVariantType& ExplicitProperty::descriptor() const {
    switch (m_row.kind) {
    case KpIfcFieldKind::string: return KpIfcVariantType::Desc<KpAnsiString>::value();
    case KpIfcFieldKind::guid: return KpIfcVariantType::Desc<KpIfcGUID>::value();
    case KpIfcFieldKind::real: return KpIfcVariantType::Desc<double>::value();
    case KpIfcFieldKind::integer: return KpIfcVariantType::Desc<int>::value();
    case KpIfcFieldKind::logical: return KpIfcVariantType::Desc<KpIfcLogical>::value();
    case KpIfcFieldKind::enumeration: return m_row.enumeration->descriptor->value();
    case KpIfcFieldKind::reference: return KpIfcVariantType::Desc<KpDbObjectId>::value();
    case KpIfcFieldKind::select: return m_row.select->value.value();
    case KpIfcFieldKind::aggregate: return m_row.aggregate->arrayType();
    case KpIfcFieldKind::boolean:
    case KpIfcFieldKind::derived:
    case KpIfcFieldKind::notKept: break;
    }
    return KpIfcVariantType::Desc<KpIfcBoolean>::value();
}

KP::ErrorStatus ExplicitProperty::getAttribute(const KpIfcEntityBase* entity, KpIfcVariant& value) const {
    if (!isOf(entity, entityType())) return KP::eRefused;
    auto& instance = const_cast<KpIfcEntityBase&>(*entity); // the rows' members are not const; nothing is changed
    switch (m_row.kind) {
    case KpIfcFieldKind::string: value.set(shown(instance, instance.*m_row.member.string)); break;
    case KpIfcFieldKind::select: value.setCopy(descriptor(), &m_row.member.select(instance)); break;
    case KpIfcFieldKind::aggregate: m_row.aggregate->toArray(m_row.member.aggregate(instance), value); break;
    default: KP_SDAI::readAttribute(instance, m_row, value);
    }
    return KP::eOk;
}

KP::ErrorStatus ExplicitProperty::putAttribute(KpIfcEntityBase* entity, const KpIfcVariant& value) const {
    if (!isOf(entity, entityType()) || !mayChange(*entity)) return KP::eRefused;
    KpIfcEntityBase& instance = *entity;
    if (m_row.kind == KpIfcFieldKind::string) {
        const KcString* text = value.getIf<KcString>();
        if (!text) return KP::eRefused;
        KpIfcChange::before(instance);
        KP_SDAI::TextEncodeDecode().encodeText(*text, instance.*m_row.member.string,
                                               isUnset(*text) ? KP_SDAI::kCodecUtf8 : codecOf(instance));
        return KP::eOk;
    }
    if (value.type() != &descriptor()) return KP::eRefused;
    switch (m_row.kind) {
    case KpIfcFieldKind::guid: return store(instance, instance.*m_row.member.guid, value);
    case KpIfcFieldKind::real: return store(instance, instance.*m_row.member.real, value);
    case KpIfcFieldKind::integer: return store(instance, instance.*m_row.member.integer, value);
    case KpIfcFieldKind::notKept:
    case KpIfcFieldKind::boolean: return store(instance, instance.*m_row.member.boolean, value);
    case KpIfcFieldKind::logical: return store(instance, instance.*m_row.member.logical, value);
    case KpIfcFieldKind::reference: return store(instance, instance.*m_row.member.reference, value);
    case KpIfcFieldKind::enumeration:
        KpIfcChange::before(instance);
        std::memcpy(m_row.member.enumeration(instance), value.data(), sizeof(int));
        return KP::eOk;
    case KpIfcFieldKind::select:
        KpIfcChange::before(instance);
        descriptor().objectMemAllocator()->assign(&m_row.member.select(instance), value.data());
        return KP::eOk;
    case KpIfcFieldKind::aggregate:
        return m_row.aggregate->put(m_row.member.aggregate(instance), value, instance) ? KP::eOk : KP::eRefused;
    case KpIfcFieldKind::string:
    case KpIfcFieldKind::derived: break;
    }
    return KP::eRefused;
}

KP::ErrorStatus RedeclaredProperty::putAttribute(KpIfcEntityBase*, const KpIfcVariant&) const {
    return KP::eRefused;
}

const KpIfcVariantType& InverseProperty::descriptor() const {
    return KpIfcVariantType::Desc<KpIfcArray<KpDbObjectId>>::value();
}

KP::ErrorStatus InverseProperty::getAttribute(const KpIfcEntityBase* instance, KpIfcVariant& value) const {
    if (!isOf(instance, entityType())) return KP::eRefused;
    KpIfcArray<KpDbObjectId> referrers(8);
    m_row.members(const_cast<KpIfcEntityBase&>(*instance)).copyTo(*instance, m_row.index, referrers);
    value.set(referrers);
    return KP::eOk;
}

const KpIfcVariantType& HierarchyProperty::descriptor() const {
    return KpIfcVariantType::Desc<KpIfcArray<KpDbObjectId>>::value();
}

KP::ErrorStatus HierarchyProperty::getCollection(const KpIfcEntityBase* instance,
                                                 KpIfcArray<KpDbObjectId>& members) const {
    if (!instance) return KP::eNullEntity;
    try {
        KpIfcVariant relations;
        KpIfcArray<KpDbObjectId> handles(8);
        if (!instance->getAttr(m_row.name, relations) || !relations.get(handles)) return KP::eRefused;
        members.clear();
        for (const KpDbObjectId& handle : handles) appendRelated(handle, m_related, members);
        return KP::eOk;
    } catch (const KP_SDAI::KpIfcException&) {
        return KP::eRefused; // the model's access is not defined
    }
}

} // namespace IFC2X3
