#include "AttributeText.h"

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcSelect.h>

#include <cstdio>

using namespace KP_SDAI;

namespace {

std::string text(double value) {
    char digits[40];
    std::snprintf(digits, sizeof digits, "%a", value);
    return digits;
}
std::string text(int value) {
    return std::to_string(value);
}
std::string text(const KpAnsiString& value) {
    return value.isUnset() ? "no text" : '"' + std::string(value.view()) + '"';
}
std::string text(const KpDbObjectId& value) {
    return value.isNull() ? "null" : '#' + std::to_string(value.instanceName());
}

template <class T>
std::string elementsText(const KpIfcAggr& aggregate) {
    std::string out;
    for (const T& element : static_cast<const KpIfcAggrElements<T>&>(*aggregate.implementation())) {
        out += text(element) + ' ';
    }
    return out;
}

std::string aggregateText(const KpIfcAggr& aggregate, const KpIfcAggrFacts& facts) {
    switch (facts.element) {
    case KpIfcElementKind::real: return elementsText<double>(aggregate);
    case KpIfcElementKind::integer: return elementsText<int>(aggregate);
    case KpIfcElementKind::string:
    case KpIfcElementKind::binary: return elementsText<KpAnsiString>(aggregate);
    case KpIfcElementKind::reference: return elementsText<KpDbObjectId>(aggregate);
    case KpIfcElementKind::select: break;
    }
    std::string out;
    for (std::size_t i = 0; i < aggregate.size(); ++i) {
        out += selectText(facts.selectAt(aggregate, i)) + ' ';
    }
    return out;
}

} // namespace

std::string selectText(const KpIfcSelect& select) {
    const std::string name = select.underlyingTypeName();
    switch (select.valueKind()) {
    case kTypeNone: return name + "(none)";
    case kTypeEntity: {
        KpDbObjectId handle;
        select.getHandle(handle);
        return name + text(handle);
    }
    case kTypeReal: {
        double value = 0;
        select.getDouble(value);
        return name + '(' + text(value) + ')';
    }
    case kTypeInteger: {
        int value = 0;
        select.getInt(value);
        return name + '(' + text(value) + ')';
    }
    case kTypeBoolean: {
        KpIfcBoolean value;
        select.getBoolean(value);
        return name + "(boolean " + text(value.code()) + ')';
    }
    case kTypeLogical: {
        KpIfcLogical value;
        select.getLogical(value);
        return name + "(logical " + text(value.code()) + ')';
    }
    case kTypeEnumeration: return name + "(." + (select.getLiteral() ? select.getLiteral() : "?") + ".)";
    case kTypeString: return name + '(' + text(*select.getString()) + ')';
    case kTypeAggregate: {
        const KpIfcAggr& aggregate = *select.getAggregate();
        const bool reals = aggregate.containerType() == KpIfcAggrContainerType::array;
        return name + '(' + (reals ? elementsText<double>(aggregate) : elementsText<int>(aggregate)) + ')';
    }
    default: return name + "(a kind that no select has)";
    }
}

std::string attributeText(KpIfcEntityBase& instance, const KpIfcAttributeFacts& attribute) {
    const KpIfcAttributeFacts::Member& member = attribute.member;
    switch (attribute.kind) {
    case KpIfcFieldKind::string: return text(instance.*member.string);
    case KpIfcFieldKind::guid:
        return (instance.*member.guid).isUnset() ? "no GUID" : (instance.*member.guid).constStr();
    case KpIfcFieldKind::real: return text(instance.*member.real);
    case KpIfcFieldKind::integer: return text(instance.*member.integer);
    case KpIfcFieldKind::boolean: return "boolean " + text((instance.*member.boolean).code());
    case KpIfcFieldKind::logical: return "logical " + text((instance.*member.logical).code());
    case KpIfcFieldKind::enumeration: return "code " + text(attribute.enumerationCode(instance));
    case KpIfcFieldKind::reference: return text(instance.*member.reference);
    case KpIfcFieldKind::select: return selectText(member.select(instance));
    case KpIfcFieldKind::aggregate: return "( " + aggregateText(member.aggregate(instance), *attribute.aggregate) + ')';
    case KpIfcFieldKind::derived:
    case KpIfcFieldKind::notKept: break;
    }
    return "no member";
}

std::string attributesText(KpIfcEntityBase& instance) {
    const KpIfcEntityType& type = *instance.getInstanceType();
    std::string out = '#' + std::to_string(instance.instanceName()) + ' ' + type.name() + '\n';
    for (const KpIfcAttributeFacts* attribute : type.recordFields()) {
        out += std::string("  ") + attribute->name + ": " + attributeText(instance, *attribute) + '\n';
    }
    return out;
}
