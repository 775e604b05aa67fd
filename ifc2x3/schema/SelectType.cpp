#include "schema/KpIFC2X3SchemaBuilder.h"

#include <memory>

using namespace KP_SDAI;

void KpIFC2X3SchemaBuilder::addSelectType(const SelectType& type) {
    auto code = std::make_unique<KpTypeCode>(kTypeSelect);
    KpAny name;
    name << type.name;
    code->appendParameter(name);
    std::unique_ptr<KpIfcSelectType> owned(new KpIfcSelectType(code.release()));
    KpIfcSelectType* const select = owned.get();
    auto* const defined = new KpIfcDefinedType(type.name, owned.release(), true);
    typeDictionary->putAt(type.name, defined);
    KpIfcArray<KpAnsiString>& members = pendingSelectMembers[select];
    members.reserve(static_cast<std::uint32_t>(type.members.size()));
    for (const char* member : type.members) members.append(member);
    *type.staticType = defined;
}
