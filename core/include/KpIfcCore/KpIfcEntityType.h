#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcTypes.h>

#include <vector>

namespace KP_SDAI {

class KpIfcEntityBase;
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
    /// True for this type and all of its subtypes.
    bool isKindOf(const KpIfcEntityType* other) const;

    /// A new instance that belongs to no model; the caller owns it.
    KpIfcEntityBase* createInstance() const { return m_factory(); }
    PropertyBuilder propertyBuilder() const { return m_propertyBuilder; }

    /// Attaches the constant rows of the module; they outlive the type.
    void facts(const KpIfcEntityFacts* facts);
    const KpIfcEntityFacts* facts() const { return m_facts; }
    /// The published name in mixed case ("IfcWall").
    const char* displayName() const { return m_facts ? m_facts->name : name(); }
    /// Abstract entities have classes, but files hold no instances of them.
    bool isAbstract() const { return m_facts && m_facts->isAbstract; }
    /// The fields of a record of this entity: all explicit attributes, inherited ones first.
    const std::vector<const KpIfcAttributeFacts*>& recordFields() const { return m_recordFields; }

private:
    KpIfcEntityType(KpIfcSchema* schema, const char* name, Factory factory, PropertyBuilder propertyBuilder,
                    const KpIfcEntityType* supertype);

    KpIfcSchema* m_schema;
    Factory m_factory;
    PropertyBuilder m_propertyBuilder;
    const KpIfcEntityType* m_supertype;
    std::vector<const KpIfcEntityType*> m_subtypes;
    const KpIfcEntityFacts* m_facts = nullptr;
    std::vector<const KpIfcAttributeFacts*> m_recordFields;
};

}  // namespace KP_SDAI
