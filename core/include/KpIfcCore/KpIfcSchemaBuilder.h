#pragma once

#include <KpIfcCore/KpIfcAggregationType.h>
#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcAttributeDefinition.h>
#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcSchema.h>
#include <KpIfcCore/KpIfcSelectType.h>

#include <map>
#include <unordered_map>

/// Fills a schema. A module derives from it and registers everything in buildDictionary(); references between types
/// are recorded by name and linked when that is done, so the order of registration need not respect them.
class KPIFCCORE_EXPORT KpIfcSchemaBuilder {
public:
    KpIfcSchemaBuilder(KP_SDAI::KpIfcSchema* schema, const KP_SDAI::KpAnsiString& name);
    virtual ~KpIfcSchemaBuilder();

    /// Calls buildDictionary(), then links every recorded name, ignoring letter case: named types first, then entities,
    /// anonymous types and the simple types that every schema has. A name that is not found leaves the link null (a
    /// select without that member) and is added to KpIfcSchema::unresolvedNames().
    void build();

protected:
    virtual void buildDictionary() = 0;
    void initSchemaVersion(KP_SDAI::IfcSchemaMajorVersion majorVersion, KP_SDAI::IfcSchemaMinorVersion minorVersion);

    struct DerivedRecord {
        KP_SDAI::KpAnsiString typeName;
        KP_SDAI::KpAnsiString entityName; ///< whose attribute is redeclared; empty for none
        bool flag;
    };
    struct InverseRecord {
        /// Empty for the one entity that has an attribute of that name over the owner's type and is named by no other
        /// inverse attribute of the owner.
        KP_SDAI::KpAnsiString entityName;
        KP_SDAI::KpAnsiString attributeName;
    };

    KP_SDAI::KpIfcSchema* schema;
    Dictionary* entityDictionary;
    Dictionary* typeDictionary;
    Dictionary* anonymousTypeDictionary;
    /// Defined type to the name of its underlying type.
    std::unordered_map<KP_SDAI::DictionaryInstance*, KP_SDAI::KpAnsiString> pendingUnderlyingTypes;
    /// Aggregation to the name of its element type.
    std::unordered_map<KP_SDAI::DictionaryInstance*, KP_SDAI::KpAnsiString> pendingElementTypes;
    /// Explicit attribute to the name of its type.
    std::unordered_map<KP_SDAI::KpIfcAttributeDefinition*, KP_SDAI::KpAnsiString> pendingAttributeTypes;
    std::unordered_map<KP_SDAI::KpIfcAttributeDefinition*, DerivedRecord> pendingDerivedAttributes;
    std::unordered_map<KP_SDAI::KpIfcAttributeDefinition*, InverseRecord> pendingInverseAttributes;
    /// Select to the names of its members, in schema order.
    std::map<KP_SDAI::KpIfcSelectType*, KP_SDAI::KpIfcArray<KP_SDAI::KpAnsiString>> pendingSelectMembers;

private:
    KP_SDAI::DictionaryInstance* find(const char* name) const;
    void report(const std::string& who, const std::string& name);
    void linkTypes();
    void linkSelects();
    void linkAttributes();
    void linkRedeclared(KP_SDAI::KpIfcAttributeDefinition& attribute, const KP_SDAI::KpAnsiString& entityName);
    void linkInverseAttributes();
    void linkInverse(KP_SDAI::KpIfcInverseAttributeDefinition& attribute, const InverseRecord& record);
    KP_SDAI::KpIfcEntityType* entityReferringTo(const KP_SDAI::KpIfcInverseAttributeDefinition& inverse,
                                                const KP_SDAI::KpAnsiString& attributeName) const;
};
