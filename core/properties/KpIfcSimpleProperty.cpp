#include <KpIfcCore/KpIfcSimpleProperty.h>

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcException.h>
#include <KpIfcCore/KpIfcReferences.h>
#include <KpIfcCore/TextEncodeDecode.h>
#include <KpRx/KcString.h>

namespace KP_SDAI {

namespace {

/// Texts as users see them; other values as they are. False for unset texts.
bool show(const KpIfcEntityBase& instance, KpIfcVariant& value) {
    const char* const* text = value.getIf<const char*>();
    if (!text) return true;
    if (!*text || KpAnsiString(*text).isUnset()) return false;
    KcString shown;
    TextEncodeDecode().decodeText(KpAnsiString(*text), shown, codecOf(instance));
    value.set(shown);
    return true;
}

const KpIfcSelect* selectOf(const KpIfcVariant& value) {
    return value.type() ? value.type()->storedSelect(value) : nullptr;
}

/// Stores by name, where an access mode that refuses is a status.
KP::ErrorStatus put(KpIfcEntityBase& instance, std::string_view attribute, const KpIfcVariant& value) {
    try {
        return instance.putAttr(KpAnsiString(attribute), value) ? KP::eOk : KP::eRefused;
    } catch (const KpIfcException&) {
        return KP::eRefused;
    }
}

constexpr std::string_view kMemberAttributes[] = {"hasquantities", "hasproperties"};

const KpIfcAttributeFacts* memberAttribute(const KpIfcEntityBase& instance) {
    for (const std::string_view name : kMemberAttributes)
        if (const KpIfcAttributeFacts* row = findAttributeFacts(instance, name)) return row;
    return nullptr;
}

} // namespace

KpIfcSimpleProperty::~KpIfcSimpleProperty() = default;
KpIfcPropertySingleValue::~KpIfcPropertySingleValue() = default;
KpIfcPropertyBoundedValue::~KpIfcPropertyBoundedValue() = default;
KpIfcComplexProperty::~KpIfcComplexProperty() = default;
KpIfcQuantityClusterProperty::~KpIfcQuantityClusterProperty() = default;

KP::ErrorStatus KpIfcSimpleProperty::getValue(const KpIfcEntityBase* instance, std::string_view attribute,
                                              KpIfcVariant& value) {
    KpIfcVariant held;
    if (!instance || !peekAttribute(*instance, attribute, held)) return KP::eRefused;
    if (const KpIfcSelect* select = selectOf(held))
        if (!select->getValue(held)) return KP::eRefused;
    if (!show(*instance, held)) return KP::eRefused;
    value = static_cast<KpIfcVariant&&>(held);
    return KP::eOk;
}

KP::ErrorStatus KpIfcSimpleProperty::putValue(KpIfcEntityBase* instance, std::string_view attribute,
                                              const KpIfcVariant& value) {
    KpIfcVariant held;
    if (!instance || value.isEmpty() || !peekAttribute(*instance, attribute, held)) return KP::eRefused;
    const KpIfcSelect* const select = selectOf(held);
    if (!select || value.type()->isSelect()) return put(*instance, attribute, value);

    // A copy takes the value in the type that it has, and is put as a whole.
    const KpIfcAttributeFacts& row = *findAttributeFacts(*instance, attribute);
    KpIfcVariant scratch;
    if (!held.type()->toValueType(row.select->value.value(), held, scratch)) return KP::eRefused;
    KpIfcSelect& changed = *scratch.type()->storedSelect(scratch);
    KpAnsiString text;
    const KcString* shown = value.getIf<KcString>();
    if (shown) TextEncodeDecode().encodeText(*shown, text, codecOf(*instance));
    const bool taken = shown ? changed.putValue(text) : changed.putValue(value);
    return taken ? put(*instance, attribute, scratch) : KP::eRefused;
}

KP::ErrorStatus KpIfcSimpleProperty::getAttribute(const KpIfcEntityBase* instance, KpIfcVariant& value) const {
    return getValue(instance, m_attribute.view(), value);
}

KP::ErrorStatus KpIfcSimpleProperty::putAttribute(KpIfcEntityBase* instance, const KpIfcVariant& value) const {
    return putValue(instance, m_attribute.view(), value);
}

KP::ErrorStatus KpIfcSimpleProperty::getName(const KpIfcEntityBase* instance, KcString& name) const {
    KpIfcVariant value;
    if (getValue(instance, "name", value) != KP::eOk || !value.holds<KcString>()) return KP::eRefused;
    name = *value.getIf<KcString>();
    return KP::eOk;
}

KP::ErrorStatus KpIfcSimpleProperty::putName(KpIfcEntityBase* instance, const KcString& name) const {
    return instance ? put(*instance, "name", name) : KP::eRefused;
}

KP::ErrorStatus KpIfcSimpleProperty::getUnit(const KpIfcEntityBase* instance, KpDbObjectId& unit) const {
    KpIfcVariant value;
    if (getValue(instance, "unit", value) != KP::eOk || !value.holds<KpDbObjectId>()) return KP::eRefused;
    if (value.getIf<KpDbObjectId>()->isNull()) return KP::eRefused;
    unit = *value.getIf<KpDbObjectId>();
    return KP::eOk;
}

KP::ErrorStatus KpIfcSimpleProperty::putUnit(KpIfcEntityBase* instance, const KpDbObjectId& unit) const {
    return instance ? put(*instance, "unit", unit) : KP::eRefused;
}

const char* KpIfcSimpleProperty::measureType(const KpIfcEntityBase* instance) const {
    KpIfcVariant held;
    if (!instance || !peekAttribute(*instance, m_attribute.view(), held)) return "";
    const KpIfcSelect* select = selectOf(held);
    return select ? select->underlyingTypeName() : "";
}

KP::ErrorStatus KpIfcPropertyBoundedValue::getAttribute(const KpIfcEntityBase* instance, KpIfcVariant& value) const {
    KpIfcArray<KpIfcVariant> bounds(8);
    bounds.resize(2);
    const bool hasLower = getValue(instance, "lowerboundvalue", bounds[0]) == KP::eOk;
    const bool hasUpper = getValue(instance, "upperboundvalue", bounds[1]) == KP::eOk;
    if (!hasLower && !hasUpper) return KP::eRefused;
    value.set(bounds);
    return KP::eOk;
}

KP::ErrorStatus KpIfcPropertyBoundedValue::putAttribute(KpIfcEntityBase* instance, const KpIfcVariant& value) const {
    const auto* bounds = value.getIf<KpIfcArray<KpIfcVariant>>();
    if (!instance || !bounds || bounds->size() != 2) return KP::eRefused;
    const std::string_view names[] = {"lowerboundvalue", "upperboundvalue"};
    KpIfcVariant former;
    if (!peekAttribute(*instance, names[0], former)) return KP::eRefused;
    const KpIfcAttributeFacts& row = *findAttributeFacts(*instance, names[0]);
    KpIfcVariant lower; // as it was, should the upper one be refused
    if (!former.type()->toValueType(row.select->value.value(), former, lower)) return KP::eRefused;
    if (!(*bounds)[0].isEmpty() && putValue(instance, names[0], (*bounds)[0]) != KP::eOk) return KP::eRefused;
    if ((*bounds)[1].isEmpty() || putValue(instance, names[1], (*bounds)[1]) == KP::eOk) return KP::eOk;
    put(*instance, names[0], lower);
    return KP::eRefused;
}

KP::ErrorStatus KpIfcComplexProperty::getCollection(const KpIfcEntityBase* instance,
                                                    KpIfcArray<KpDbObjectId>& members) const {
    if (!instance) return KP::eNullEntity;
    const KpIfcAttributeFacts* row = memberAttribute(*instance);
    if (!row) return KP::eRefused;
    members.clear();
    visitReferences(const_cast<KpIfcEntityBase&>(*instance), *row, [&](const KpDbObjectId& handle) {
        if (!handle.isNull()) members.append(handle);
    });
    return KP::eOk;
}

KP::ErrorStatus KpIfcComplexProperty::getAttribute(const KpIfcEntityBase* instance, KpIfcVariant& value) const {
    KpIfcArray<KpDbObjectId> members(8);
    if (getCollection(instance, members) != KP::eOk) return KP::eRefused;
    value.set(members);
    return KP::eOk;
}

KP::ErrorStatus KpIfcComplexProperty::putAttribute(KpIfcEntityBase* instance, const KpIfcVariant& value) const {
    const KpIfcAttributeFacts* row = instance ? memberAttribute(*instance) : nullptr;
    return row && value.holds<KpIfcArray<KpDbObjectId>>() ? put(*instance, row->name, value) : KP::eRefused;
}

} // namespace KP_SDAI
