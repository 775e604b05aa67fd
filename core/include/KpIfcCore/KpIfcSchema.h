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
    KP_SDAI::DictionaryInstance* at(std::string_view name) const;
    std::size_t count() const { return m_entries.size(); }

    struct Entry {
        std::string name;  ///< as it was put
        std::unique_ptr<KP_SDAI::DictionaryInstance> object;
    };
    /// All entries in the order in which they were put.
    const std::vector<Entry>& entries() const { return m_entries; }

private:
    std::size_t place(std::string_view name) const;
    void grow();

    std::vector<Entry> m_entries;
    std::vector<std::uint32_t> m_table;  ///< open addressing; index of the entry plus one, 0 where free
};

namespace KP_SDAI {

enum IfcSchemaMajorVersion : int { kIfcSchemaMajor2 = 2, kIfcSchemaMajor4 = 4 };
enum IfcSchemaMinorVersion : int { kIfcSchemaMinor0 = 0, kIfcSchemaMinor3 = 3 };

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

    const Dictionary& entities() const { return m_entities; }
    const Dictionary& types() const { return m_types; }
    const Dictionary& anonymousTypes() const { return m_anonymousTypes; }
    /// The entity of a name in any letter case; null where there is none.
    KpIfcEntityType* findEntity(std::string_view name) const;
    /// The named type (defined type, enumeration, select) of a name in any letter case; null where there is none.
    KpIfcDefinedType* findType(std::string_view name) const;
    /// Names that could not be resolved when the schema was built; empty for a sound module.
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

}  // namespace KP_SDAI
