#include <KpIfcCore/KpIfcAggregationType.h>
#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcSelectType.h>

#include <cstring>

namespace KP_SDAI {

DictionaryInstance::~DictionaryInstance() = default;
KpIfcNameType::~KpIfcNameType() = default;
KpIfcSimpleType::~KpIfcSimpleType() = default;
KpIfcStringType::~KpIfcStringType() = default;
KpIfcDefinedType::~KpIfcDefinedType() = default;

std::vector<std::string> KpTypeCode::parameters() const {
    std::vector<std::string> all;
    for (const char* p = m_parameters.data(); p != m_parameters.data() + m_parameters.size();
         p += all.back().size() + 1)
        all.emplace_back(p);
    return all;
}

KpIfcDefinedType::KpIfcDefinedType(const char* name, DictionaryInstance* underlying, bool declared) try
    : KpIfcNameType(name), m_owned(underlying), m_underlying(underlying), m_declared(declared) {
} catch (...) { // the name's, before `underlying` is taken over
    delete underlying;
    throw;
}

const char* KpIfcDefinedType::displayName() const {
    const KpIfcEnumerationType* type = enumeration();
    return type && type->facts() ? type->facts()->name : name();
}

bool KpIfcDefinedType::isAnonymous() const {
    return std::strpbrk(name(), " (") != nullptr; // neither stands in an identifier
}

const KpIfcEnumerationType* KpIfcDefinedType::enumeration() const {
    return m_owned ? m_owned->as<KpIfcEnumerationType>() : nullptr;
}

const KpIfcSelectType* KpIfcDefinedType::select() const {
    return m_owned ? m_owned->as<KpIfcSelectType>() : nullptr;
}

const KpIfcAggregationType* KpIfcDefinedType::aggregation() const {
    return m_owned ? m_owned->as<KpIfcAggregationType>() : nullptr;
}

KpIfcSimpleType* KpIfcSimpleType::find(const char* name) {
    static KpIfcSimpleType types[] = {{"real", kTypeReal},       {"integer", kTypeInteger}, {"string", kTypeString},
                                      {"boolean", kTypeBoolean}, {"logical", kTypeLogical}, {"binary", kTypeBinary}};
    for (KpIfcSimpleType& type : types)
        if (compareNoCase(type.name(), name) == 0) return &type;
    return nullptr;
}

} // namespace KP_SDAI
