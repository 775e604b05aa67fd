#include <KpIfcCore/KpIfcTypes.h>

namespace KP_SDAI {

DictionaryInstance::~DictionaryInstance() = default;
KpIfcNameType::~KpIfcNameType() = default;
KpIfcSimpleType::~KpIfcSimpleType() = default;
KpIfcStringType::~KpIfcStringType() = default;
KpIfcDefinedType::~KpIfcDefinedType() = default;

KpIfcDefinedType::KpIfcDefinedType(const char* name, DictionaryInstance* underlying, bool declared)
    : KpIfcNameType(name), m_owned(underlying), m_underlying(underlying), m_declared(declared) {}

KpIfcSimpleType* KpIfcSimpleType::find(const char* name) {
    static KpIfcSimpleType types[] = {{"real", kTypeReal},       {"integer", kTypeInteger}, {"string", kTypeString},
                                      {"boolean", kTypeBoolean}, {"logical", kTypeLogical}, {"binary", kTypeBinary}};
    for (KpIfcSimpleType& type : types)
        if (compareNoCase(type.name(), name) == 0) return &type;
    return nullptr;
}

}  // namespace KP_SDAI
