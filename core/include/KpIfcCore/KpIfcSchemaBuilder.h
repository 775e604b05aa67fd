#pragma once

#include <KpIfcCore/KpIfcSchema.h>

#include <unordered_map>

/// Fills a schema. A module derives from it and registers everything in buildDictionary(); references between types
/// are recorded by name and linked when that is done, so the order of registration need not respect them.
class KPIFCCORE_EXPORT KpIfcSchemaBuilder {
public:
    KpIfcSchemaBuilder(KP_SDAI::KpIfcSchema* schema, const KP_SDAI::KpAnsiString& name);
    virtual ~KpIfcSchemaBuilder();

    /// Calls buildDictionary(), then links every recorded name, ignoring letter case. A name that is not found is
    /// added to KpIfcSchema::unresolvedNames().
    void build();

protected:
    virtual void buildDictionary() = 0;
    void initSchemaVersion(KP_SDAI::IfcSchemaMajorVersion majorVersion, KP_SDAI::IfcSchemaMinorVersion minorVersion);

    KP_SDAI::KpIfcSchema* schema;
    Dictionary* entityDictionary;
    Dictionary* typeDictionary;
    Dictionary* anonymousTypeDictionary;
    /// Defined type to the name of its underlying type.
    std::unordered_map<KP_SDAI::DictionaryInstance*, KP_SDAI::KpAnsiString> pendingUnderlyingTypes;

private:
    KP_SDAI::DictionaryInstance* find(const char* name) const;
};
