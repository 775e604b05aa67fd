#include "check/ValueTests.h"

#include <KpIfcCore/Consts.h>

namespace KP_SDAI {

bool isUnset(double value) {
    return value == Consts::KpRealUnset;
}
bool isUnset(int value) {
    return value == Consts::KpIntUnset;
}
bool isUnset(const KpAnsiString& value) {
    return value.isUnset();
}
bool isUnset(const KpDbObjectId& value) {
    return value.isNull();
}

bool isUnset(const KpIfcSelect& select) {
    switch (select.valueKind()) {
    case kTypeReal: {
        double value = 0;
        return !select.getDouble(value) || isUnset(value);
    }
    case kTypeInteger: {
        int value = 0;
        return !select.getInt(value) || isUnset(value);
    }
    case kTypeBoolean: {
        KpIfcBoolean value;
        return !select.getBoolean(value) || !value.isSet();
    }
    case kTypeLogical: {
        KpIfcLogical value;
        return !select.getLogical(value) || !value.isSet();
    }
    case kTypeEnumeration: return !select.getLiteral();
    case kTypeString: return select.getString()->isUnset();
    case kTypeEntity: {
        KpDbObjectId value;
        return !select.getHandle(value) || value.isNull();
    }
    case kTypeAggregate: return select.getAggregate()->isNil();
    default: return true;
    }
}

bool isUnset(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row) {
    switch (row.kind) {
    case KpIfcFieldKind::string: return (instance.*row.member.string).isUnset();
    case KpIfcFieldKind::guid: return (instance.*row.member.guid).isUnset();
    case KpIfcFieldKind::real: return isUnset(instance.*row.member.real);
    case KpIfcFieldKind::integer: return isUnset(instance.*row.member.integer);
    case KpIfcFieldKind::boolean: return !(instance.*row.member.boolean).isSet();
    case KpIfcFieldKind::logical: return !(instance.*row.member.logical).isSet();
    case KpIfcFieldKind::enumeration: return !row.enumeration->text(row.enumerationCode(instance));
    case KpIfcFieldKind::reference: return (instance.*row.member.reference).isNull();
    case KpIfcFieldKind::select: return isUnset(row.member.select(instance));
    default: return false;
    }
}

ReferenceFault faultOf(const KpIfcSelect& select) {
    KpDbObjectId handle;
    if (!select.getHandle(handle) || handle.isNull()) return ReferenceFault::none;
    if (!handle.isDefined()) return ReferenceFault::dangling;
    // The alternative is that of the instance's entity.
    return handle.openObject() && !*select.underlyingTypeName() ? ReferenceFault::wrong : ReferenceFault::none;
}

} // namespace KP_SDAI
