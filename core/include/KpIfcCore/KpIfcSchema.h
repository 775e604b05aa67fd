#pragma once

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcTypes.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class KpIfcSchemaBuilder;

/// Dictionary objects by name. Owns what it holds; names are found without regard to ASCII case.
class KPIFCCORE_EXPORT Dictionary {
public:
    Dictionary() = default;
    Dictionary(const Dictionary&) = delete;
    Dictionary& operator=(const Dictionary&) = delete;
    ~Dictionary();

    /// Stores an object under a name and takes ownership; an object of the same name is replaced.
    void putAt(const char* name, KP_SDAI::DictionaryInstance* object);
    /// Null where there is no such name.
    KP_SDAI::DictionaryInstance* at(std::string_view name) const { return at(name, hashOf(name)); }
    /// The same for who looks for a name in several dictionaries.
    KP_SDAI::DictionaryInstance* at(std::string_view name, std::size_t hash) const;
    static std::size_t hashOf(std::string_view name);
    std::size_t count() const { return m_entries.size(); }

    struct Entry {
        std::string name; ///< as it was put
        std::unique_ptr<KP_SDAI::DictionaryInstance> object;
    };
    /// All entries in the order in which they were put.
    const std::vector<Entry>& entries() const { return m_entries; }

private:
    std::size_t place(std::string_view name, std::size_t hash) const;
    void grow();

    std::vector<Entry> m_entries;
    std::vector<std::uint32_t> m_table; ///< open addressing; index of the entry plus one, 0 where free
};

namespace KP_SDAI {

enum IfcSchemaMajorVersion : int { kIfcSchemaMajor2 = 2, kIfcSchemaMajor4 = 4 };
enum IfcSchemaMinorVersion : int { kIfcSchemaMinor0 = 0, kIfcSchemaMinor3 = 3 };

class KpIfcAttributeDefinition;

/// How much a schema declares.
struct KpIfcSchemaCounts {
    std::size_t entities = 0;
    std::size_t abstractEntities = 0;
    std::size_t explicitAttributes = 0;
    std::size_t derivedAttributes = 0;
    std::size_t inverseAttributes = 0;
    std::size_t definedTypes = 0; ///< named types that are neither enumerations nor selects
    std::size_t enumerations = 0;
    std::size_t literals = 0;
    std::size_t selects = 0;
    std::size_t anonymousAggregations = 0;
};

/// One schema: its dictionaries. Made by a module's initialise, freed with all that it owns by its unload.
class KPIFCCORE_EXPORT KpIfcSchema {
public:
    KpIfcSchema();
    KpIfcSchema(const KpIfcSchema&) = delete;
    KpIfcSchema& operator=(const KpIfcSchema&) = delete;
    virtual ~KpIfcSchema();

    /// The schema's name, "IFC2X3".
    const char* name() const { return m_name.c_str(); }
    int majorVersion() const { return m_major; }
    int minorVersion() const { return m_minor; }

    /// KpIfcEntityType objects, keyed in upper case, each after its supertype.
    const Dictionary& entities() const { return m_entities; }
    /// KpIfcDefinedType objects of what the schema names: enumerations keyed in lower case, all others as published.
    const Dictionary& types() const { return m_types; }
    /// KpIfcDefinedType objects of what the schema writes without a name, keyed by its text.
    const Dictionary& anonymousTypes() const { return m_anonymousTypes; }
    /// The entity of a name in any letter case; null where there is none.
    KpIfcEntityType* findEntity(std::string_view name) const;
    /// The named type (defined type, enumeration, select) of a name in any letter case; null where there is none.
    KpIfcDefinedType* findType(std::string_view name) const;
    /// The entity or named type of a name in any letter case; null where there is none.
    const KpIfcNameType* find(std::string_view name) const;

    KpIfcSchemaCounts counts() const;
    /// Attributes whose type is the given one or an anonymous aggregation of it, and inverse attributes that hold the
    /// given entity, in the order of the entities. Looks at the whole dictionary.
    std::vector<const KpIfcAttributeDefinition*> attributesOver(const DictionaryInstance& type) const;
    /// Named types that stand for the given one or an aggregation of it, and selects that have it as a member, in the
    /// order of the types. Looks at the whole dictionary.
    std::vector<const KpIfcDefinedType*> typesOver(const DictionaryInstance& type) const;

    /// Names that could not be resolved when the schema was built, each as "who: name" ("IFCROOT.Name: IFCLABEL"),
    /// sorted; empty for a sound module.
    const std::vector<std::string>& unresolvedNames() const { return m_unresolved; }

private:
    friend class ::KpIfcSchemaBuilder;
    std::string m_name;
    int m_major = 0;
    int m_minor = 0;
    Dictionary m_entities;
    Dictionary m_types;
    Dictionary m_anonymousTypes;
    std::vector<std::string> m_unresolved;
};

} // namespace KP_SDAI
