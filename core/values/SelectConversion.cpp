#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcVariantTypes.h>
#include <KpRx/KcString.h>

#include <cstring>
#include <string>

namespace KP_SDAI {

bool KpIfcSelect::getValue(KpIfcVariant& value) const {
    switch (valueKind()) {
    case kTypeReal: value.set(m_value.real); return true;
    case kTypeInteger: value.set(m_value.integer); return true;
    case kTypeBoolean: value.set(KpIfcBoolean(static_cast<KpIfcBoolean::Code>(m_value.code))); return true;
    case kTypeLogical: value.set(KpIfcLogical(static_cast<KpIfcLogical::Code>(m_value.code))); return true;
    case kTypeString: value.set(m_value.text.constStr()); return true;
    case kTypeEntity: value.set(KpDbObjectId(m_value.slot)); return true;
    case kTypeEnumeration: value.set(getLiteral()); return true;
    case kTypeAggregate: value.set(const_cast<KpIfcAggr*>(static_cast<const KpIfcAggr*>(getAggregate()))); return true;
    default: return false;
    }
}

namespace {

template <class T>
bool assignElements(const KpIfcAggr& aggregate, const KpIfcVariant& value) {
    KpIfcArray<T> elements;
    if (!value.get(elements)) return false;
    static_cast<KpIfcOrderedAggrImp<T>*>(aggregate.implementation())->assign(elements.begin(), elements.size());
    return true;
}

} // namespace

bool KpIfcSelect::putValue(const KpIfcVariant& value) {
    double real = 0;
    int integer = 0;
    KpIfcBoolean boolean;
    KpIfcLogical logical;
    KpAnsiString text;
    KpDbObjectId handle;
    switch (valueKind()) {
    case kTypeReal:
        if (!value.get(real)) return false;
        storeDouble(real);
        return true;
    case kTypeInteger:
        if (!value.get(integer)) return false;
        storeInt(integer);
        return true;
    case kTypeBoolean:
        if (!value.get(boolean)) return false;
        storeBoolean(boolean);
        return true;
    case kTypeLogical:
        if (!value.get(logical)) return false;
        storeLogical(logical);
        return true;
    case kTypeString:
        if (!value.get(text)) return false;
        storeString(text);
        return true;
    case kTypeEntity: return value.get(handle) && setHandle(handle);
    case kTypeEnumeration:
        if (!value.get(text)) return false;
        for (int code = 0; const char* const candidate = literal(code); ++code)
            if (compareNoCase(candidate, text.constStr()) == 0) {
                storeInt(code, kTypeEnumeration);
                return true;
            }
        return false;
    case kTypeAggregate:
        // The aggregate alternatives of the schema are arrays of reals and lists of integers.
        return getAggregate()->containerType() == KpIfcAggrContainerType::array
                   ? assignElements<double>(*getAggregate(), value)
                   : assignElements<int>(*getAggregate(), value);
    default: return false;
    }
}

bool KpIfcSelectConversion::_subToValueType(const KpIfcVariantType& target, const KpIfcSelect& select,
                                            KpIfcVariant& result) {
    if (&target == &KpIfcVariantType::Desc<KpTypeCodeKind>::value()) {
        if (select.isNull()) return false;
        result.set(select.valueKind());
        return true;
    }
    if (target.isSelect()) {
        KpIfcVariant converted;
        if (!target.createVariant(converted)) return false;
        KpIfcSelect* const other = target.storedSelect(converted);
        if (!other || !other->take(select)) return false;
        result = static_cast<KpIfcVariant&&>(converted);
        return true;
    }
    KpIfcVariant held;
    KpIfcVariant scratch;
    if (!select.getValue(held)) return false;
    const KpIfcVariant* const converted = held.convert(target, scratch);
    if (!converted || converted->isEmpty()) return false;
    result = *converted;
    return true;
}

bool KpIfcSelect::take(const KpIfcSelect& other) {
    if (this == &other) return true;
    if (other.isNull()) {
        nullify();
        return true;
    }
    KpDbObjectId handle;
    if (other.getHandle(handle) && !handle.isNull()) return setHandle(handle);
    if (!underlyingTypeName(KpAnsiString(other.underlyingTypeName()))) return false;
    if (valueKind() != other.valueKind()) return false;
    assignValue(other);
    return true;
}

bool KpIfcSelectConversion::_subFromValueType(const KpIfcVariant& value, KpIfcSelect& select) {
    const KpIfcVariantType* const type = value.type();
    if (!type) return false;
    if (type->isSelect()) {
        const KpIfcSelect* const other = type->storedSelect(value);
        return other && select.take(*other);
    }
    KpDbObjectId handle = type->reference(value);
    if (!handle.isNull()) return select.setHandle(handle);
    KpTypeCodeKind kind;
    return value.get(kind) && select.chooseByKind(kind) && select.putValue(value);
}

bool KpIfcSelectConversion::_subToString(KcString& out, const KpIfcSelect& select, StringFormat format) {
    KpIfcVariant held;
    KcString text;
    if (!select.getValue(held)) {
        out.assign(format == kFormatStep ? "$" : "");
        return true;
    }
    if (select.valueKind() == kTypeAggregate || !held.toString(text, format)) return false;
    if (format == kFormatPlain || select.valueKind() == kTypeEntity) {
        out = text;
        return true;
    }
    std::string typed;
    for (const char* c = select.underlyingTypeName(); *c; ++c) typed += upperAscii(*c);
    typed += '(';
    const char* const literal = select.getLiteral();
    typed += literal ? '.' + std::string(literal) + '.' : text.utf8Ptr();
    typed += ')';
    out.assign(typed.c_str());
    return true;
}

KpDbObjectId KpIfcSelectConversion::reference(const KpIfcSelect* select) {
    KpDbObjectId handle;
    if (select) select->getHandle(handle);
    return handle;
}

} // namespace KP_SDAI
