#include "schema/KpIFC2X3SchemaBuilder.h"

using namespace KP_SDAI;

void KpIFC2X3SchemaBuilder::addSelectType(const SelectType& type) {
    auto* code = new KpTypeCode(kTypeSelect);
    KpAny name;
    name << type.name;
    code->appendParameter(name);
    auto* select = new KpIfcSelectType(code);
    auto* defined = new KpIfcDefinedType(type.name, select, true);
    typeDictionary->putAt(type.name, defined);
    KpIfcArray<KpAnsiString>& members = pendingSelectMembers[select];
    members.reserve(static_cast<std::uint32_t>(type.members.size()));
    for (const char* member : type.members) members.append(member);
    *type.staticType = defined;
}
