#include <KpIfcCore/KpIfcSchemaBuilder.h>

#include <algorithm>

using namespace KP_SDAI;

KpIfcSchemaBuilder::KpIfcSchemaBuilder(KpIfcSchema* s, const KpAnsiString& name)
    : schema(s),
      entityDictionary(&s->m_entities),
      typeDictionary(&s->m_types),
      anonymousTypeDictionary(&s->m_anonymousTypes) {
    s->m_name = name.constStr();
}

KpIfcSchemaBuilder::~KpIfcSchemaBuilder() = default;

void KpIfcSchemaBuilder::initSchemaVersion(IfcSchemaMajorVersion majorVersion, IfcSchemaMinorVersion minorVersion) {
    schema->m_major = majorVersion;
    schema->m_minor = minorVersion;
}

/// Named types first, then entities, anonymous types and the simple types that every schema has.
DictionaryInstance* KpIfcSchemaBuilder::find(const char* name) const {
    if (DictionaryInstance* found = typeDictionary->at(name)) return found;
    if (DictionaryInstance* found = entityDictionary->at(name)) return found;
    if (DictionaryInstance* found = anonymousTypeDictionary->at(name)) return found;
    return KpIfcSimpleType::find(name);
}

void KpIfcSchemaBuilder::build() {
    buildDictionary();
    for (const auto& [type, name] : pendingUnderlyingTypes) {
        if (DictionaryInstance* underlying = find(name))
            static_cast<KpIfcDefinedType*>(type)->underlyingType(underlying);
        else
            schema->m_unresolved.push_back(name.constStr());
    }
    std::sort(schema->m_unresolved.begin(), schema->m_unresolved.end());
    pendingUnderlyingTypes.clear();
}
