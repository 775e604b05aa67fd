#include "schema/KpIFC2X3SchemaBuilder.h"

#include <memory>
#include <utility>

using namespace KP_SDAI;

void KpIFC2X3SchemaBuilder::addEnumerationType(const EnumerationType& type) {
    auto code = std::make_unique<KpTypeCode>(kTypeEnumeration);
    KpAny parameter;
    parameter << type.name;
    code->appendParameter(parameter);
    std::list<KpAnsiString> literals;
    for (int i = 0; i < type.facts->count; ++i) {
        literals.push_back(type.facts->literals[i]);
        parameter << type.facts->literals[i];
        code->appendParameter(parameter);
    }
    auto enumeration = std::make_unique<KpIfcEnumerationType>(nullptr, std::move(literals));
    enumeration->type(code.release());
    enumeration->facts(type.facts);
    typeDictionary->putAt(type.name, new KpIfcDefinedType(type.name, enumeration.release(), true));
}
