#pragma once

#include <KpIfcCore/KpIfcAttributeDefinition.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcTypes.h>

#include <atomic>
#include <memory>
#include <string_view>
#include <vector>

namespace KP_SDAI {

class KpIfcEntityBase;
class KpIfcProperty;
class KpIfcPropertyCollection;
class KpIfcSchema;

/// An entity of a schema. Constant once the schema is built; any thread may read it.
class KPIFCCORE_EXPORT KpIfcEntityType : public KpIfcNameType {
public:
    using Factory = KpIfcEntityBase* (*)();
    using PropertyBuilder = void (*)(KpIfcPropertyCollection*, const KpIfcEntityType*);

    /// Creates an entity type, links it to its supertype (null for a root) and stores it in `staticType`, through which
    /// the entity's class answers type questions. `name` is in upper case. The caller hands it to a dictionary.
    static KpIfcEntityType* createEntityType(KpIfcSchema* schema, const char* name, bool declared, Factory factory,
                                             PropertyBuilder propertyBuilder, KpIfcEntityType*& staticType,
                                             const KpIfcEntityType* supertype);
    ~KpIfcEntityType() override;

    KpIfcSchema* schema() const { return m_schema; }
    const KpIfcEntityType* superType() const { return m_supertype; }
    /// The direct subtypes, in the order of their registration.
    const std::vector<const KpIfcEntityType*>& subTypes() const { return m_subtypes; }
    /// True where this is `other` or one of its subtypes, direct or not.
    bool isKindOf(const KpIfcEntityType* other) const;

    /// Appends to the attributes that the entity itself declares, and takes ownership: explicit ones in the order of
    /// its record, then derived, then inverse ones.
    void appendAttribute(KpIfcAttributeDefinition* attribute);
    /// The attributes that the entity itself declares, in the order in which they were appended.
    const std::vector<std::unique_ptr<KpIfcAttributeDefinition>>& attributes() const { return m_attributes; }
    /// All attributes, inherited ones first: those of the root, then those of each subtype down to this one.
    std::vector<const KpIfcAttributeDefinition*> allAttributes() const;
    /// The attribute of a name in any letter case, own or inherited; null where there is none. A redeclared attribute
    /// is found under its own name as the inherited one.
    const KpIfcAttributeDefinition* findAttribute(std::string_view name) const;
    /// The derived attribute by which this entity or a supertype redeclares an explicit one; null where none does.
    const KpIfcDerivedAttributeDefinition* redeclarationOf(const KpIfcAttributeDefinition& attribute) const;

    /// A new instance that belongs to no model; the caller owns it.
    KpIfcEntityBase* createInstance() const { return m_factory(); }
    PropertyBuilder propertyBuilder() const { return m_propertyBuilder; }
    /// The properties of the attributes that the entity itself declares; made on the first call, by any thread.
    const KpIfcPropertyCollection& properties() const;
    /// All properties of an instance: those of the root, then those of each subtype down to this one.
    std::vector<const KpIfcProperty*> allProperties() const;
    /// The property of a name in any letter case, the entity's own or the nearest supertype's; null where there is
    /// none.
    const KpIfcProperty* findProperty(std::string_view name) const;

    /// Attaches the constant rows of the module; they outlive the type.
    void facts(const KpIfcEntityFacts* facts);
    const KpIfcEntityFacts* facts() const { return m_facts; }
    /// The published name in mixed case ("IfcWall").
    const char* displayName() const override { return m_facts ? m_facts->name : name(); }
    /// Abstract entities have classes, but files hold no instances of them. (Rules of uniqueness: facts().)
    bool isAbstract() const { return m_facts && m_facts->isAbstract; }
    /// The fields of a record of this entity: all explicit attributes, inherited ones first.
    const std::vector<const KpIfcAttributeFacts*>& recordFields() const { return m_recordFields; }

    /// The attributes through which instances of this entity are entered in inverse attributes, inherited ones first.
    const std::vector<KpIfcCounterpartFacts>& counterparts() const { return m_counterparts; }

private:
    KpIfcEntityType(KpIfcSchema* schema, const char* name, Factory factory, PropertyBuilder propertyBuilder,
                    const KpIfcEntityType* supertype);

    KpIfcSchema* m_schema;
    Factory m_factory;
    PropertyBuilder m_propertyBuilder;
    const KpIfcEntityType* m_supertype;
    mutable std::atomic<const KpIfcPropertyCollection*> m_properties{nullptr};
    std::vector<const KpIfcEntityType*> m_subtypes;
    const KpIfcEntityFacts* m_facts = nullptr;
    std::vector<const KpIfcAttributeFacts*> m_recordFields;
    std::vector<KpIfcCounterpartFacts> m_counterparts;
    std::vector<std::unique_ptr<KpIfcAttributeDefinition>> m_attributes;
    std::uint32_t m_explicitCount = 0;
};

} // namespace KP_SDAI
