#pragma once

#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcSelect.h>

#include <memory>
#include <string>
#include <vector>

/// The dictionary: what a schema declares, readable at run time. Objects are made when a module is initialised, owned
/// by its KpIfcSchema, and constant from then on until the module is unloaded; any thread may read them.

namespace KP_SDAI {

class KpIfcAggregationType;
class KpIfcEnumerationType;
class KpIfcSelectType;

/// A parameter of a type code: a name.
class KpAny {
public:
    KpAny& operator<<(const char* text) {
        m_text = text ? text : "";
        return *this;
    }
    const std::string& text() const { return m_text; }

private:
    std::string m_text;
};

/// What kind of type a dictionary object is, and the names that tell it apart.
class KPIFCCORE_EXPORT KpTypeCode {
public:
    explicit KpTypeCode(KpTypeCodeKind kind) : m_kind(kind) {}
    void appendParameter(const KpAny& parameter) { m_parameters.append(parameter.text()).push_back('\0'); }

    KpTypeCodeKind kind() const { return m_kind; }
    /// In the order in which they were appended.
    std::vector<std::string> parameters() const;

private:
    KpTypeCodeKind m_kind;
    std::string m_parameters; ///< a zero behind each: there are thousands, which are hardly ever asked for
};

/// Anything that a dictionary holds under a name.
class KPIFCCORE_EXPORT DictionaryInstance {
public:
    DictionaryInstance() = default;
    DictionaryInstance(const DictionaryInstance&) = delete;
    DictionaryInstance& operator=(const DictionaryInstance&) = delete;
    virtual ~DictionaryInstance();

    /// The type code; null where none was given. The setter takes ownership.
    const KpTypeCode* type() const { return m_type.get(); }
    virtual void type(KpTypeCode* code) { m_type.reset(code); }

    /// This object as one of a class of dictionary objects; null where it is none.
    ///
    ///     if (const auto* select = type.as<KpIfcSelectType>()) ...
    template <class T>
    const T* as() const {
        return dynamic_cast<const T*>(this);
    }

private:
    std::unique_ptr<KpTypeCode> m_type;
};

/// A type that has a name.
class KPIFCCORE_EXPORT KpIfcNameType : public DictionaryInstance {
public:
    explicit KpIfcNameType(const char* name) : m_name(name) {}
    ~KpIfcNameType() override;
    /// The name under which the dictionary knows the type: upper case for entities, lower case for enumerations and
    /// simple types, as published for all others.
    const char* name() const { return m_name.c_str(); }
    /// The name as it is published ("IfcWall", "IfcRoleEnum").
    virtual const char* displayName() const { return name(); }

private:
    std::string m_name;
};

/// One of the simple types of EXPRESS, by its lower-case name ("real", "integer", "string", "boolean", "logical",
/// "binary"). There is one object of each for all schemas.
class KPIFCCORE_EXPORT KpIfcSimpleType : public KpIfcNameType {
public:
    KpIfcSimpleType(const char* name, KpTypeCodeKind kind) : KpIfcNameType(name), m_kind(kind) {}
    ~KpIfcSimpleType() override;
    KpTypeCodeKind kind() const { return m_kind; }
    /// The simple type of a name in any letter case; null where there is none.
    static KpIfcSimpleType* find(const char* name);

private:
    KpTypeCodeKind m_kind;
};

/// A string type of a given width in characters.
class KPIFCCORE_EXPORT KpIfcStringType : public DictionaryInstance {
public:
    KpIfcStringType(bool fixed, int width) : m_fixed(fixed), m_width(width) {}
    ~KpIfcStringType() override;
    bool isFixed() const { return m_fixed; }
    int width() const { return m_width; }

private:
    bool m_fixed;
    int m_width;
};

/// A type under a name: what is declared as a type, an enumeration or a select, and types that the schema leaves
/// unnamed under their text ("list [1:?] of IfcActorRole"). What it is, its underlying type tells.
class KPIFCCORE_EXPORT KpIfcDefinedType : public KpIfcNameType {
public:
    /// Takes over `underlying`, which may be null until it is resolved by name. The flag tells that the name is
    /// declared by the schema.
    KpIfcDefinedType(const char* name, DictionaryInstance* underlying, bool declared);
    ~KpIfcDefinedType() override;

    /// The type that this one stands for: a simple type, another defined type, or what was handed over at construction
    /// (string type, enumeration, select, aggregation). Null only where its name could not be resolved.
    DictionaryInstance* underlyingType() const { return m_underlying; }
    /// Links to a type that somebody else owns.
    void underlyingType(DictionaryInstance* type) { m_underlying = type; }
    bool isDeclared() const { return m_declared; }
    const char* displayName() const override;
    /// True where the name is no name but the text of a type that the schema leaves unnamed.
    bool isAnonymous() const;

    /// What the name is declared as; null where it is something else.
    const KpIfcEnumerationType* enumeration() const;
    const KpIfcSelectType* select() const;
    const KpIfcAggregationType* aggregation() const;

private:
    std::unique_ptr<DictionaryInstance> m_owned;
    DictionaryInstance* m_underlying;
    bool m_declared;
};

} // namespace KP_SDAI
