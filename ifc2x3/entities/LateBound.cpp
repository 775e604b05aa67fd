#include "entities/AttributeNames.h"
#include "entities/EntityClass.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcException.h>
#include <KpIfcCore/KpIfcInverseMembers.h>
#include <KpIfcCore/KpIfcModel.h>

#include <cstring>
#include <string>

namespace IFC2X3 {

using KP_SDAI::inModelsForm;
using KP_SDAI::KpIfcChange;
using KP_SDAI::KpIfcModel;
using KP_SDAI::KpIfcVariant;
using KP_SDAI::KpIfcVariantType;

namespace {

using detail::FoundRows;
using detail::Name;

[[noreturn]] void refuse(unsigned code, const char* message, const KpIfcEntityFacts& facts, const char* operation) {
    throw KP_SDAI::KpIfcException(code, message, ("IFC2X3::" + std::string(facts.name) + "::" + operation).c_str());
}

void requireAccess(const KpIfcEntityBase& instance, const KpIfcEntityFacts& facts, const char* operation) {
    const KpIfcModel* model = instance.owningModel();
    if (model && model->mode() == KP_SDAI::kAccessUndefined)
        refuse(190, "SDAI-model access not defined", facts, operation);
}
void requireReadWrite(const KpIfcEntityBase& instance, const KpIfcEntityFacts& facts, const char* operation) {
    const KpIfcModel* model = instance.owningModel();
    if (model && model->mode() != KP_SDAI::kReadWrite)
        refuse(180, "SDAI-model access not read-write", facts, operation);
}

constinit FoundRows g_found;

void get(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, KpIfcVariant& value) {
    if (row.kind == KpIfcFieldKind::select || row.kind == KpIfcFieldKind::aggregate)
        KpIfcChange::beforeHandOut(instance);
    KP_SDAI::readAttribute(instance, row, value);
}

bool putString(KpIfcEntityBase& instance, KpAnsiString& member, const KpIfcVariant& value) {
    if (const char* const* text = value.getIf<const char*>()) {
        const char* const chars = *text;
        KpIfcChange::before(instance);
        if (chars)
            member = chars;
        else
            member = KpAnsiString::unset();
        return true;
    }
    KpAnsiString text;
    KpIfcVariant scratch;
    if (!inModelsForm(value, instance, scratch).get(text)) return false;
    KpIfcChange::before(instance);
    member = std::move(text);
    return true;
}

template <class T>
bool putPlain(KpIfcEntityBase& instance, T& member, const KpIfcVariant& value) {
    T converted;
    if (!value.get(converted)) return false;
    KpIfcChange::before(instance);
    member = converted;
    return true;
}

bool putEnumeration(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, const KpIfcVariant& value) {
    const int unset = row.enumeration->count;
    int code = unset;
    bool converted = true;
    if (value.type() == &row.enumeration->descriptor->value()) {
        std::memcpy(&code, value.data(), sizeof code);
    } else if (const int* number = value.getIf<int>()) {
        code = *number > unset ? unset : *number;
    } else if (const unsigned long* unsignedNumber = value.getIf<unsigned long>()) {
        code = *unsignedNumber > static_cast<unsigned long>(unset) ? unset : static_cast<int>(*unsignedNumber);
    } else {
        const char* const* chars = value.getIf<const char*>();
        const KpAnsiString* string = value.getIf<KpAnsiString>();
        if (!chars && !string) return false;
        const char* const text = string ? string->constStr() : *chars;
        if (text) code = row.enumeration->code(text, std::strlen(text));
        converted = code != unset; // what is no literal unsets the attribute all the same
    }
    KpIfcChange::before(instance);
    std::memcpy(row.member.enumeration(instance), &code, sizeof code);
    return converted;
}

bool putSelect(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, const KpIfcVariant& value) {
    const KpIfcVariantType& type = row.select->value.value();
    KpIfcVariant text;
    KpIfcVariant scratch;
    const KpIfcVariant* converted = inModelsForm(value, instance, text).convert(type, scratch);
    if (!converted || converted->type() != &type) return false;
    KpIfcChange::before(instance);
    type.objectMemAllocator()->assign(&row.member.select(instance), converted->data());
    return true;
}

bool put(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, const KpIfcVariant& value) {
    switch (row.kind) {
    case KpIfcFieldKind::string: return putString(instance, instance.*row.member.string, value);
    case KpIfcFieldKind::guid: return putPlain(instance, instance.*row.member.guid, value);
    case KpIfcFieldKind::real: return putPlain(instance, instance.*row.member.real, value);
    case KpIfcFieldKind::integer: return putPlain(instance, instance.*row.member.integer, value);
    case KpIfcFieldKind::notKept:
    case KpIfcFieldKind::boolean: return putPlain(instance, instance.*row.member.boolean, value);
    case KpIfcFieldKind::logical: return putPlain(instance, instance.*row.member.logical, value);
    case KpIfcFieldKind::enumeration: return putEnumeration(instance, row, value);
    case KpIfcFieldKind::reference: return putPlain(instance, instance.*row.member.reference, value);
    case KpIfcFieldKind::select: return putSelect(instance, row, value);
    case KpIfcFieldKind::aggregate: return row.aggregate->put(row.member.aggregate(instance), value, instance);
    case KpIfcFieldKind::derived: break;
    }
    return false;
}

bool test(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row) {
    switch (row.kind) {
    case KpIfcFieldKind::string: return !(instance.*row.member.string).isUnset();
    case KpIfcFieldKind::guid: return !(instance.*row.member.guid).isUnset();
    case KpIfcFieldKind::real: return instance.*row.member.real != Consts::KpRealUnset;
    case KpIfcFieldKind::integer: return instance.*row.member.integer != Consts::KpIntUnset;
    case KpIfcFieldKind::notKept:
    case KpIfcFieldKind::boolean: return (instance.*row.member.boolean).isSet();
    case KpIfcFieldKind::logical: return (instance.*row.member.logical).isSet();
    case KpIfcFieldKind::enumeration: return row.enumerationCode(instance) != row.enumeration->count;
    case KpIfcFieldKind::reference: return !(instance.*row.member.reference).isNull();
    case KpIfcFieldKind::select: return !row.member.select(instance).isNull();
    case KpIfcFieldKind::aggregate: return !row.member.aggregate(instance).empty();
    case KpIfcFieldKind::derived: break;
    }
    return false;
}

void unset(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row) {
    KpIfcChange::before(instance);
    // Unset as it may be already, it is meant to be without a value in files, too.
    if (KpIfcModel* model = instance.owningModel()) model->forgetSource(instance, row);
    switch (row.kind) {
    case KpIfcFieldKind::string: instance.*row.member.string = KpAnsiString::unset(); break;
    case KpIfcFieldKind::guid: instance.*row.member.guid = Consts::KpStringUnset; break;
    case KpIfcFieldKind::real: instance.*row.member.real = Consts::KpRealUnset; break;
    case KpIfcFieldKind::integer: instance.*row.member.integer = Consts::KpIntUnset; break;
    case KpIfcFieldKind::notKept:
    case KpIfcFieldKind::boolean: instance.*row.member.boolean = KpIfcBoolean::Unset; break;
    case KpIfcFieldKind::logical: instance.*row.member.logical = KpIfcLogical::Unset; break;
    case KpIfcFieldKind::enumeration:
        std::memcpy(row.member.enumeration(instance), &row.enumeration->count, sizeof(int));
        break;
    case KpIfcFieldKind::reference: (instance.*row.member.reference).setNull(); break;
    case KpIfcFieldKind::select: row.member.select(instance).nullify(); break;
    case KpIfcFieldKind::aggregate: row.member.aggregate(instance).clear(); break;
    case KpIfcFieldKind::derived: break;
    }
}

} // namespace

bool getAttribute(const KpIfcEntityBase& instance, const KpIfcEntityFacts& facts, const KpAnsiString& name,
                  KpIfcVariant& value) {
    requireAccess(instance, facts, "getAttr");
    auto& changeable = const_cast<KpIfcEntityBase&>(instance);
    const Name wanted(name);
    if (const KpIfcAttributeFacts* row = g_found.find(facts, wanted)) {
        get(changeable, *row, value);
        return true;
    }
    // No entity has an inverse attribute of the name of another attribute, its own or inherited, so these may come
    // last.
    for (const KpIfcEntityFacts* level = &facts; level; level = level->supertype) {
        for (const KpIfcInverseFacts& row : std::span(level->inverses, level->inverseCount)) {
            if (!(wanted == row)) continue;
            const auto& referrers = row.members(changeable).read(instance, row.index);
            value.set(const_cast<KP_SDAI::KpIfcSetAggr<KpDbObjectId>*>(&referrers));
            return true;
        }
    }
    return false;
}

bool putAttribute(KpIfcEntityBase& instance, const KpIfcEntityFacts& facts, const KpAnsiString& name,
                  const KpIfcVariant& value) {
    requireReadWrite(instance, facts, "putAttr");
    const KpIfcAttributeFacts* row = g_found.find(facts, Name(name));
    return row && put(instance, *row, value);
}

bool testAttribute(const KpIfcEntityBase& instance, const KpIfcEntityFacts& facts, const KpAnsiString& name) {
    requireAccess(instance, facts, "testAttr");
    const KpIfcAttributeFacts* row = g_found.find(facts, Name(name));
    return row && test(const_cast<KpIfcEntityBase&>(instance), *row);
}

void unsetAttribute(KpIfcEntityBase& instance, const KpIfcEntityFacts& facts, const KpAnsiString& name) {
    requireReadWrite(instance, facts, "unsetAttr");
    const KpIfcAttributeFacts* row = g_found.find(facts, Name(name));
    if (row) unset(instance, *row);
}

} // namespace IFC2X3
