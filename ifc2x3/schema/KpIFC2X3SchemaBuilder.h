#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcSchemaBuilder.h>

/// Registers every type and entity of IFC 2x3 in the dictionary of its schema. One source per step.
class KpIFC2X3SchemaBuilder : public KpIfcSchemaBuilder {
public:
    using KpIfcSchemaBuilder::KpIfcSchemaBuilder;

protected:
    void buildDictionary() override;

private:
    /// A defined type and the lower-case name of the type that it stands for.
    struct SimpleDefinedType {
        const char* name;
        const char* underlying;
    };
    struct EntityType {
        const char* name;  ///< in upper case
        KP_SDAI::KpIfcEntityType::Factory factory;
        KP_SDAI::KpIfcEntityType** staticType;
        KP_SDAI::KpIfcEntityType* const* supertype;  ///< null for a root
        const KP_SDAI::KpIfcEntityFacts& (*facts)();
    };

    void addAnonymousSimpleTypes();
    void addSimpleDefinedTypes();
    void addEntityTypes();

    void addSimpleDefinedType(const SimpleDefinedType& type);
    void addEntityType(const EntityType& type);

    /// The factory that the dictionary keeps for an entity class.
    template <class T>
    static KP_SDAI::KpIfcEntityBase* createEntity() {
        return new T;
    }
};
