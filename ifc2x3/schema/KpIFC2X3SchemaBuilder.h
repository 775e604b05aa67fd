#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcSchemaBuilder.h>

#include <initializer_list>

/// Registers every type and entity of IFC 2x3 in the dictionary of its schema. A step has two sources: what it
/// registers is a table, generated from the schema; how one row is registered is written by hand. The first step, of
/// two types that the schema does not name, is all written by hand.
class KpIFC2X3SchemaBuilder : public KpIfcSchemaBuilder {
public:
    using KpIfcSchemaBuilder::KpIfcSchemaBuilder;

protected:
    void buildDictionary() override;

private:
    /// "?", and the bounds of an inverse attribute that holds one instance.
    static constexpr int kNoBound = Consts::KpIntUnset;

    /// A defined type and the lower-case name of the type that it stands for.
    struct SimpleDefinedType {
        const char* name;
        const char* underlying;
    };
    struct EnumerationType {
        const char* name; ///< in lower case
        const KP_SDAI::KpIfcEnumFacts* facts;
    };
    struct ExplicitAttribute {
        const char* name;
        const char* type;
    };
    struct DerivedAttribute {
        const char* name;
        const char* type;
        const char* redeclaredIn; ///< the entity whose attribute is redeclared; empty for none
    };
    struct InverseAttribute {
        const char* name;
        int minimum;
        int maximum;
        const char* entity; ///< in lower case; empty for an attribute that holds one instance
        const char* inverted;
    };
    struct EntityType {
        const char* name; ///< in upper case
        KP_SDAI::KpIfcEntityType::Factory factory;
        KP_SDAI::KpIfcEntityType** staticType;
        KP_SDAI::KpIfcEntityType* const* supertype; ///< null for a root
        const KP_SDAI::KpIfcEntityFacts& facts;
        KP_SDAI::KpIfcEntityType::PropertyBuilder properties;
        std::initializer_list<ExplicitAttribute> explicitAttributes = {};
        std::initializer_list<DerivedAttribute> derivedAttributes = {};
        std::initializer_list<InverseAttribute> inverseAttributes = {};
    };
    struct SelectType {
        const char* name;
        KP_SDAI::KpIfcDefinedType** staticType;
        std::initializer_list<const char*> members; ///< in upper case
    };
    enum class AggregationKind { list, set, array };
    struct AggregationType {
        const char* name;
        AggregationKind kind;
        int lower;
        int upper;
        const char* element;
    };

    // The steps, in their order.
    void addAnonymousSimpleTypes();
    void addSimpleDefinedTypes();
    void addEnumerationTypes();
    void addEntityTypes();
    void addSelectTypes();
    void addAggregationTypes();

    // One row of a step.
    void addSimpleDefinedType(const SimpleDefinedType& type);
    void addEnumerationType(const EnumerationType& type);
    void addEntityType(const EntityType& type);
    void addAttributes(KP_SDAI::KpIfcEntityType& entity, const EntityType& type);
    void addSelectType(const SelectType& type);
    void addAggregationType(const AggregationType& type, Dictionary& dictionary);

    /// Of entities without attributes of their own.
    static void buildNoProperties(KP_SDAI::KpIfcPropertyCollection* collection, const KP_SDAI::KpIfcEntityType* type);

    /// The factory that the dictionary keeps for an entity class.
    template <class T>
    static KP_SDAI::KpIfcEntityBase* createEntity() {
        return create(T::facts());
    }
    static KP_SDAI::KpIfcEntityBase* create(const KP_SDAI::KpIfcEntityFacts& facts);
};
