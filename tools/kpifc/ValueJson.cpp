#include "ValueJson.h"

#include "JsonText.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcSelect.h>
#include <KpIfcCore/KpStepText.h>

#include <cstdint>

using namespace KP_SDAI;

namespace kpifc {

void ValueJson::attribute(KpIfcEntityBase& instance, const KpIfcAttributeFacts& facts) {
    const auto& member = facts.member;
    switch (facts.kind) {
    case KpIfcFieldKind::string: return value(instance.*member.string);
    case KpIfcFieldKind::guid: {
        const KpIfcGUID& guid = instance.*member.guid;
        return guid.isUnset() ? null() : text(guid.constStr());
    }
    case KpIfcFieldKind::real: return value(instance.*member.real);
    case KpIfcFieldKind::integer: return value(instance.*member.integer);
    case KpIfcFieldKind::boolean: return value(instance.*member.boolean);
    case KpIfcFieldKind::logical: return value(instance.*member.logical);
    case KpIfcFieldKind::enumeration: return literal(facts.enumeration->text(facts.enumerationCode(instance)));
    case KpIfcFieldKind::reference: return value(instance.*member.reference);
    case KpIfcFieldKind::select: return value(member.select(instance));
    case KpIfcFieldKind::aggregate:
        if ((facts.flags & KpIfcAttributeFacts::kDefinedType) && member.aggregate(instance).empty()) {
            return null(); // a value of a defined type is there or not; it has no members missing
        }
        return aggregate(member.aggregate(instance), *facts.aggregate);
    case KpIfcFieldKind::derived:
    case KpIfcFieldKind::notKept: return null();
    }
}

void ValueJson::value(double value) {
    value == Consts::KpRealUnset ? null() : json::appendNumber(m_out, value);
}

void ValueJson::value(int value) {
    value == Consts::KpIntUnset ? null() : json::appendNumber(m_out, value);
}

void ValueJson::value(KpIfcBoolean value) {
    m_out += !value.isSet() ? "null" : value.isTrue() ? "true" : "false";
}

void ValueJson::value(KpIfcLogical value) {
    constexpr const char* texts[] = {"false", "true", "\"UNKNOWN\"", "null"};
    m_out += texts[value.code()];
}

void ValueJson::value(const KpAnsiString& value) {
    value.isUnset() ? null() : text(value.view());
}

void ValueJson::value(const KpDbObjectId& value) {
    if (!value.isDefined()) {
        return null();
    }
    m_out += "{\"ref\":";
    json::appendNumber(m_out, value.instanceName());
    m_out += '}';
}

void ValueJson::value(const KpIfcSelect& select) {
    KpDbObjectId handle;
    if (select.isNull()) {
        null();
    } else if (select.getHandle(handle)) {
        value(handle);
    } else {
        m_out += "{\"type\":";
        json::appendText(m_out, select.underlyingTypeName());
        m_out += ",\"value\":";
        typedValue(select);
        m_out += '}';
    }
}

void ValueJson::typedValue(const KpIfcSelect& select) {
    double real = 0;
    int integer = 0;
    KpIfcBoolean boolean;
    KpIfcLogical logical;
    if (select.getDouble(real)) {
        value(real);
    } else if (select.valueKind() == kTypeEnumeration) {
        literal(select.getLiteral());
    } else if (select.getInt(integer)) {
        value(integer);
    } else if (select.getBoolean(boolean)) {
        value(boolean);
    } else if (select.getLogical(logical)) {
        value(logical);
    } else if (const KpAnsiString* string = select.getString()) {
        value(*string);
    } else if (const KpIfcAggr* aggregate = select.getAggregate()) {
        // The aggregate alternatives of the schema are arrays of reals and lists of integers.
        aggregate->containerType() == KpIfcAggrContainerType::array ? elements<double>(*aggregate)
                                                                    : elements<int>(*aggregate);
    } else {
        null();
    }
}

void ValueJson::text(std::string_view value) {
    json::appendText(m_out, m_isUtf8 ? value : KpStepText::decode(value));
}

void ValueJson::literal(const char* value) {
    if (!value) {
        return null();
    }
    m_out += '"';
    m_out += value;
    m_out += '"';
}

void ValueJson::aggregate(const KpIfcAggr& aggregate, const KpIfcAggrFacts& facts) {
    switch (facts.element) {
    case KpIfcElementKind::real: return elements<double>(aggregate);
    case KpIfcElementKind::integer: return elements<int>(aggregate);
    case KpIfcElementKind::string:
    case KpIfcElementKind::binary: return elements<KpAnsiString>(aggregate);
    case KpIfcElementKind::reference: return elements<KpDbObjectId>(aggregate);
    case KpIfcElementKind::select: return selects(aggregate, facts);
    }
}

template <class T>
void ValueJson::elements(const KpIfcAggr& aggregate) {
    char separator = '[';
    for (const T& element : static_cast<const KpIfcAggrElements<T>&>(*aggregate.implementation())) {
        m_out += separator;
        value(element);
        separator = ',';
    }
    m_out += aggregate.empty() ? "[]" : "]";
}

void ValueJson::selects(const KpIfcAggr& aggregate, const KpIfcAggrFacts& facts) {
    char separator = '[';
    for (std::size_t i = 0; i < aggregate.size(); ++i) {
        m_out += separator;
        value(facts.selectAt(aggregate, i));
        separator = ',';
    }
    m_out += aggregate.empty() ? "[]" : "]";
}

} // namespace kpifc
