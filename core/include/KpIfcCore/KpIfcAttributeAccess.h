#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <string_view>

/// Attributes by their rows, without a look at the model's access mode and without the effects of getAttr().
namespace KP_SDAI {

/// Makes `value` what the attribute of an instance of its entity holds: what lives in the instance as a pointer to it.
inline void readAttribute(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, KpIfcVariant& value) {
    switch (row.kind) {
    case KpIfcFieldKind::string: return value.set((instance.*row.member.string).constStr());
    case KpIfcFieldKind::guid: return value.set(instance.*row.member.guid);
    case KpIfcFieldKind::real: return value.set(instance.*row.member.real);
    case KpIfcFieldKind::integer: return value.set(instance.*row.member.integer);
    case KpIfcFieldKind::notKept:
    case KpIfcFieldKind::boolean: return value.set(instance.*row.member.boolean);
    case KpIfcFieldKind::logical: return value.set(instance.*row.member.logical);
    case KpIfcFieldKind::enumeration:
        return value.setPlain(row.enumeration->descriptor->value(), row.enumerationCode(instance));
    case KpIfcFieldKind::reference: return value.set(instance.*row.member.reference);
    case KpIfcFieldKind::select:
        // A select class is the base alone, so the pointer is the same.
        return value.setPlain(row.select->pointer.value(), &row.member.select(instance));
    case KpIfcFieldKind::aggregate: return row.aggregate->get(row.member.aggregate(instance), value);
    case KpIfcFieldKind::derived: break;
    }
}

/// The value as attributes of `owner` take it: a host's text, in `scratch`, in the form that its model's texts have;
/// any other value as it is.
KPIFCCORE_EXPORT const KpIfcVariant& inModelsForm(const KpIfcVariant& value, const KpIfcEntityBase& owner,
                                                  KpIfcVariant& scratch);

/// The row of an explicit attribute, own or inherited, by its name in any letter case; null where there is none.
KPIFCCORE_EXPORT const KpIfcAttributeFacts* findAttributeFacts(const KpIfcEntityBase& instance, std::string_view name);

/// Reads an explicit attribute by name for those that only look: nothing counts as a change, and no access mode
/// refuses. False, and `value` as it was, for an unknown name. What `value` points at must not be changed.
KPIFCCORE_EXPORT bool peekAttribute(const KpIfcEntityBase& instance, std::string_view name, KpIfcVariant& value);
/// The instances that refer to this one, by the name of an inverse attribute; false for an unknown name.
KPIFCCORE_EXPORT bool peekInverse(const KpIfcEntityBase& instance, std::string_view name,
                                  KpIfcArray<KpDbObjectId>& referrers);

} // namespace KP_SDAI
