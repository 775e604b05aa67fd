#pragma once

#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcTypes.h>

#include <string>

namespace KP_SDAI {

class KpIfcEntityType;

enum class KpIfcAttributeKind { explicitAttribute, derivedAttribute, inverseAttribute };

/// An attribute that an entity declares. Owned by its entity type.
class KPIFCCORE_EXPORT KpIfcAttributeDefinition : public DictionaryInstance {
public:
    ~KpIfcAttributeDefinition() override;

    virtual KpIfcAttributeKind kind() const = 0;
    /// The name by which the dictionary knows the attribute: as the schema spells it, but for derived attributes that
    /// redeclare an inherited one.
    const char* name() const { return m_name.c_str(); }
    /// The name that readers expect, without what marks a redeclaration.
    virtual const char* displayName() const { return name(); }

    /// The entity that declares it; null until it was appended to one.
    const KpIfcEntityType* owner() const { return m_owner; }

    /// The type of the attribute's value: a simple type, an entity or a KpIfcDefinedType, which for an aggregation is
    /// the anonymous one of that text. Of an inverse attribute the entity whose instances it holds, one or a set of
    /// them. Null only where its name could not be resolved.
    DictionaryInstance* domain() const { return m_domain; }
    /// Links to a type that somebody else owns.
    void domain(DictionaryInstance* type) { m_domain = type; }

    /// True where the domain is the given type or an anonymous aggregation of it.
    bool isOver(const DictionaryInstance& type) const;

    /// The type in the notation of EXPRESS, without OPTIONAL: "IfcLabel", "REAL", "SET [1:?] OF IfcProduct". Names are
    /// spelled as they are published. "?" where the type could not be resolved.
    virtual std::string typeText() const;
    /// The declaration behind the name: "OPTIONAL IfcLabel", "INTEGER", "SET [0:?] OF IfcRelDefines FOR
    /// RelatedObjects".
    virtual std::string declarationText() const { return typeText(); }

protected:
    KpIfcAttributeDefinition(const char* name, DictionaryInstance* domain, const KpIfcEntityType* owner = nullptr)
        : m_name(name), m_domain(domain), m_owner(owner) {}

private:
    friend class KpIfcEntityType;
    std::string m_name;
    DictionaryInstance* m_domain;
    const KpIfcEntityType* m_owner;
};

/// An attribute that has a field in files.
class KPIFCCORE_EXPORT KpIfcExplicitAttributeDefinition : public KpIfcAttributeDefinition {
public:
    /// `domain` may be null until it is resolved by name.
    KpIfcExplicitAttributeDefinition(const char* name, DictionaryInstance* domain, bool optional)
        : KpIfcAttributeDefinition(name, domain), m_optional(optional) {}
    ~KpIfcExplicitAttributeDefinition() override;

    KpIfcAttributeKind kind() const override { return KpIfcAttributeKind::explicitAttribute; }
    /// As registered. Modules register every attribute as not optional; isOptionalInFiles() tells what the schema says.
    bool isOptional() const { return m_optional; }
    /// True where the schema declares it OPTIONAL: instances in files may be without a value.
    bool isOptionalInFiles() const;
    /// The module's row of this attribute; null where the entity type has no facts.
    const KpIfcAttributeFacts* facts() const;
    std::string declarationText() const override;

private:
    friend class KpIfcEntityType;
    bool m_optional;
    std::uint32_t m_index = 0; ///< among the explicit attributes of its owner
};

/// An attribute whose value follows from others; it has no field of its own in files.
class KPIFCCORE_EXPORT KpIfcDerivedAttributeDefinition : public KpIfcAttributeDefinition {
public:
    /// Both may be null until they are resolved by name; an attribute that redeclares none stays without one. One that
    /// does is named "ifcedge_edgestart": supertype and attribute in lower case.
    KpIfcDerivedAttributeDefinition(const char* name, DictionaryInstance* domain,
                                    KpIfcExplicitAttributeDefinition* redeclared)
        : KpIfcAttributeDefinition(name, domain), m_redeclared(redeclared) {}
    ~KpIfcDerivedAttributeDefinition() override;

    KpIfcAttributeKind kind() const override { return KpIfcAttributeKind::derivedAttribute; }
    /// The inherited explicit attribute that this one redeclares as derived, so that its field in files is "*"; else
    /// null.
    const KpIfcExplicitAttributeDefinition* redeclaredAttribute() const { return m_redeclared; }
    void redeclaredAttribute(const KpIfcExplicitAttributeDefinition* attribute) { m_redeclared = attribute; }
    /// "EdgeStart" for "ifcedge_edgestart".
    const char* displayName() const override;

private:
    const KpIfcExplicitAttributeDefinition* m_redeclared;
};

/// The other direction of an explicit attribute: the instances that refer to this one through it.
class KPIFCCORE_EXPORT KpIfcInverseAttributeDefinition : public KpIfcAttributeDefinition {
public:
    /// `owner` is the entity type that declares it. Bounds are sizes of the set; an open upper one is
    /// Consts::KpIntUnset, and both are where the attribute holds one instance. The flag has no meaning.
    KpIfcInverseAttributeDefinition(const char* name, const KpIfcEntityType* owner, DictionaryInstance* domain,
                                    KpIfcExplicitAttributeDefinition* inverted, int minimum, int maximum, bool flag);
    ~KpIfcInverseAttributeDefinition() override;

    KpIfcAttributeKind kind() const override { return KpIfcAttributeKind::inverseAttribute; }
    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }
    /// True where it holds one instance, false where it holds a set of them.
    bool isSingleValued() const;

    /// The entity whose instances it holds; domain() as an entity type.
    const KpIfcEntityType* target() const;
    /// The attribute of which it is the other direction; declared by the target or one of its supertypes. Null only
    /// where it could not be resolved.
    const KpIfcExplicitAttributeDefinition* invertedAttribute() const { return m_inverted; }
    void invertedAttribute(const KpIfcExplicitAttributeDefinition* attribute) { m_inverted = attribute; }
    std::string typeText() const override;
    std::string declarationText() const override;

private:
    const KpIfcExplicitAttributeDefinition* m_inverted;
    int m_minimum;
    int m_maximum;
};

} // namespace KP_SDAI
