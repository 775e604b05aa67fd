#include <IFC2X3/Select.h>

#include "types/SelectFacts.h"

#include <KpIfcCore/KpIfcEntityBase.h>

namespace IFC2X3 {

const char* Select::underlyingTypeName() const {
    // Resolving stores what follows from the handle alone; reading a file leaves no handle unresolved that fits.
    if (m_tag == facts().count + 1) const_cast<Select*>(this)->refreshSelectHandle();
    return m_tag >= 0 && m_tag < facts().count ? facts().alternatives[m_tag].name : "";
}

int Select::underlyingTypeByName(const KpAnsiString& name) const {
    const SelectFacts& select = facts();
    const std::string_view text = name.view();
    if (text.size() < 5) return select.count;
    const auto lower = [](char c) { return c | 0x20; };
    // Behind "Ifc" names differ early, so nearly all are passed over without a call.
    for (std::int32_t i = 0; i < select.count; ++i) {
        const char* const other = select.alternatives[i].name;
        if (lower(other[3]) == lower(text[3]) && lower(other[4]) == lower(text[4]) &&
            KP_SDAI::equalNoCase(text.data(), text.size(), other))
            return i;
    }
    return select.count;
}

bool Select::underlyingTypeName(const KpAnsiString& name) {
    return setUnderlyingType(underlyingTypeByName(name)) == KP::eOk;
}

KP::ErrorStatus Select::setUnderlyingType(std::int32_t tag) {
    const SelectFacts& select = facts();
    if (tag < 0 || tag >= select.count) return KP::eNotHandled;
    const SelectAlternative& alternative = select.alternatives[tag];
    if (alternative.kind == kTypeAggregate)
        storeAggregate(alternative.aggregate->create());
    else
        storeUnset(alternative.kind);
    m_tag = tag;
    return KP::eOk;
}

bool Select::setHandleD(const KpDbObjectId& handle) {
    KpIfcEntityBase* instance = handle.openObject(KP_SDAI::kForRead, false);
    if (!instance) return false;
    const SelectFacts& select = facts();
    bool found = false;
    for (std::int32_t i = 0; i < select.count && !found; ++i) {
        const SelectAlternative& alternative = select.alternatives[i];
        if (!alternative.entity || !instance->isKindOf(*alternative.entity)) continue;
        m_tag = i;
        found = true;
    }
    instance->close();
    return found;
}

void Select::setHandleOnLoad(const KpDbObjectId& handle) {
    KpIfcSelect::setHandleOnLoad(handle);
    m_tag = facts().count + 1;
}

bool Select::refreshSelectHandle() {
    return m_tag != facts().count + 1 || KpIfcSelect::refreshSelectHandle();
}

void Select::unset() {
    m_tag = facts().count;
}

const char* Select::literal(int code) const {
    return m_tag >= 0 && m_tag < facts().count ? facts().alternatives[m_tag].enumeration->text(code) : nullptr;
}

void Select::setDouble(std::int32_t tag, double value) {
    if (setUnderlyingType(tag) == KP::eOk) storeDouble(value);
}
void Select::setInt(std::int32_t tag, int value) {
    if (setUnderlyingType(tag) == KP::eOk) storeInt(value);
}
void Select::setBoolean(std::int32_t tag, KpIfcBoolean value) {
    if (setUnderlyingType(tag) == KP::eOk) storeBoolean(value);
}
void Select::setLogical(std::int32_t tag, KpIfcLogical value) {
    if (setUnderlyingType(tag) == KP::eOk) storeLogical(value);
}
void Select::setString(std::int32_t tag, const KpAnsiString& value) {
    const KpAnsiString copy(value); // may be this select's own
    if (setUnderlyingType(tag) == KP::eOk) storeString(copy);
}
void Select::setEnumeration(std::int32_t tag, int code) {
    if (setUnderlyingType(tag) == KP::eOk) storeInt(code, kTypeEnumeration);
}
void Select::setAggregate(std::int32_t tag, const KpIfcArray<double>& values) {
    if (setUnderlyingType(tag) != KP::eOk) return;
    auto* imp = static_cast<KP_SDAI::KpIfcOrderedAggrImp<double>*>(getAggregate()->implementation());
    imp->assign(values.begin(), values.size());
}
void Select::setAggregate(std::int32_t tag, const KpIfcArray<int>& values) {
    if (setUnderlyingType(tag) != KP::eOk) return;
    auto* imp = static_cast<KP_SDAI::KpIfcOrderedAggrImp<int>*>(getAggregate()->implementation());
    imp->assign(values.begin(), values.size());
}

bool Select::chooseByKind(KpTypeCodeKind kind) {
    const SelectFacts& select = facts();
    std::int32_t found = select.count;
    for (std::int32_t i = 0; i < select.count; ++i) {
        if (select.alternatives[i].kind != kind) continue;
        if (found != select.count) return false;
        found = i;
    }
    return setUnderlyingType(found) == KP::eOk;
}

KP::ErrorStatus Select::readTypedField(const KpAnsiString& typeName, KpSpfFilerBase* filer) {
    const int code = underlyingTypeByName(typeName);
    const SelectFacts& select = facts();
    if (code >= select.count) return KP::eNotHandled;
    const SelectAlternative& alternative = select.alternatives[code];
    if (alternative.kind == kTypeEnumeration) {
        const std::string_view literal = filer->rdEnumeration(false, false);
        const int value = alternative.enumeration->code(literal.data(), literal.size());
        if (value == alternative.enumeration->count && !literal.empty()) filer->unknownLiteral();
        storeInt(value, kTypeEnumeration);
        return KP::eOk;
    }
    if (alternative.kind != kTypeAggregate) return KP::eNotHandled;
    alternative.aggregate->read(*filer, const_cast<KP_SDAI::KpIfcAggr&>(*getAggregate()), false, false);
    return KP::eOk;
}

KP::ErrorStatus Select::writeTypedField(KpSpfFilerBase* filer) {
    const SelectFacts& select = facts();
    if (m_tag < 0 || m_tag >= select.count) return KP::eNotHandled;
    const SelectAlternative& alternative = select.alternatives[m_tag];
    if (alternative.kind == kTypeEnumeration) {
        filer->wrEnumeration(getLiteral(), false);
        return KP::eOk;
    }
    if (alternative.kind != kTypeAggregate) return KP::eNotHandled;
    alternative.aggregate->write(*filer, *getAggregate(), false, false);
    return KP::eOk;
}

} // namespace IFC2X3
