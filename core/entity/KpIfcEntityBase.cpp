#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcModel.h>

#include "model/ModelData.h"

namespace KP_SDAI {

KpIfcEntityBase::~KpIfcEntityBase() = default;

KpArena* arenaOf(const KpIfcEntityBase& instance) {
    KpIfcModel* const model = instance.owningModel();
    return model ? &model->data().arena : nullptr;
}

void KpIfcEntityBase::noteChange() {
    if (KpIfcModel* model = owningModel()) model->data().noteChange(*this);
    m_self |= kUncommitted;
}

void KpIfcEntityBase::noteHandOut() {
    const KpIfcModel* model = owningModel();
    if (!model || model->mode() == kReadWrite) noteChange();
}

bool KpIfcEntityBase::getAttr(const KpAnsiString&, KpIfcVariant&) const {
    return false;
}
KpIfcEntityType* KpIfcEntityBase::getInstanceType() const {
    return nullptr;
}
bool KpIfcEntityBase::putAttr(const KpAnsiString&, const KpIfcVariant&) {
    return false;
}
bool KpIfcEntityBase::testByDefinition(const KpIfcAttributeDefinition* attribute) const {
    const KpIfcEntityType* type = getInstanceType();
    return attribute && type && type->isKindOf(attribute->owner()) && testAttr(KpAnsiString(attribute->name()));
}
bool KpIfcEntityBase::testAttr(const KpAnsiString&) const {
    return false;
}
void KpIfcEntityBase::unsetAttr(const KpAnsiString&) {}
KP::ErrorStatus KpIfcEntityBase::inFields(KpSpfFilerBase*) {
    return KP::eOk;
}
KP::ErrorStatus KpIfcEntityBase::outFields(KpSpfFilerBase*) {
    return KP::eOk;
}
bool KpIfcEntityBase::unsetIfKnown(const KpAnsiString& name) {
    unsetAttr(name);
    const KpIfcEntityType* type = getInstanceType();
    const KpIfcAttributeDefinition* attribute = type ? type->findAttribute(name.view()) : nullptr;
    return attribute && attribute->kind() == KpIfcAttributeKind::explicitAttribute;
}
bool KpIfcEntityBase::isInstanceOf(const KpIfcEntityType*) const {
    return false;
}
bool KpIfcEntityBase::isInstanceOf(const char*) const {
    return false;
}
bool KpIfcEntityBase::isKindOf(const KpIfcEntityType*) const {
    return false;
}
bool KpIfcEntityBase::isKindOf(const char*) const {
    return false;
}

} // namespace KP_SDAI
