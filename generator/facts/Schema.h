#pragma once

#include "facts/Diagnostics.h"
#include "facts/Types.h"

#include <deque>
#include <span>
#include <string>
#include <variant>
#include <vector>

/// A linked schema: every name is resolved, every fact that follows from the declarations is filled in. Declarations
/// keep the order of the file; pointers are never null unless a comment says so and live as long as the schema.
namespace kpifcgen::facts {

struct Aggregation;
struct DefinedType;
struct Entity;
struct Enumeration;
struct ExplicitAttribute;
struct InverseAttribute;
struct Select;

using TypeRef =
    std::variant<SimpleType, const DefinedType*, const Enumeration*, const Select*, const Entity*, const Aggregation*>;

/// Aggregations that are written alike are one object.
struct Aggregation {
    AggregateKind kind = AggregateKind::List;
    Bounds bounds;
    bool unique = false;
    TypeRef element;
    std::string spelling; ///< as in the schema file: "list [1:?] of unique IfcText"
    bool inExplicit = false, inDerived = false, inInverse = false, inDefinedType = false; ///< where it is written
};

struct DefinedType {
    std::string name;
    Position at;
    TypeRef type;       ///< as declared
    TypeRef underlying; ///< a SimpleType or an Aggregation, chains of defined types followed to their end
};

struct Enumeration {
    std::string name;
    Position at;
    std::vector<std::string> literals;
};

struct Select {
    std::string name;
    Position at;
    std::vector<TypeRef> members; ///< as declared
    /// What a value can be: members with nested selects replaced by theirs, each once, in the order of first mention.
    std::vector<TypeRef> alternatives;
};

struct ExplicitAttribute {
    std::string name;
    Position at;
    const Entity* owner = nullptr;
    bool optional = false;
    TypeRef type;
    std::vector<const InverseAttribute*> inverses; ///< that name this attribute, in the order of their declaration
};

struct DerivedAttribute {
    std::string name;
    Position at;
    const Entity* owner = nullptr;
    TypeRef type;
    const ExplicitAttribute* redeclared = nullptr; ///< null unless it redeclares an inherited explicit attribute
};

struct InverseAttribute {
    std::string name;
    Position at;
    const Entity* owner = nullptr;
    const Aggregation* aggregation = nullptr;    ///< null for a single-valued inverse
    const Entity* target = nullptr;              ///< the entity whose instances it holds
    const ExplicitAttribute* inverted = nullptr; ///< declared by `target` or by one of its supertypes
};

using AttributeRef = std::variant<const ExplicitAttribute*, const DerivedAttribute*, const InverseAttribute*>;

struct UniqueRule {
    std::string label;
    std::vector<AttributeRef> attributes;
};

/// One parameter of an instance's record in an exchange file. A derived one is written as '*'.
struct RecordField {
    const ExplicitAttribute* attribute = nullptr;
    const DerivedAttribute* redeclaredAs = nullptr; ///< null unless the entity or a supertype redeclares it as derived
};

struct Entity {
    std::string name;
    Position at;
    bool abstract = false;
    const Entity* supertype = nullptr; ///< null for a root
    std::deque<ExplicitAttribute> explicitAttributes;
    std::deque<DerivedAttribute> derivedAttributes;
    std::deque<InverseAttribute> inverseAttributes;
    std::vector<UniqueRule> uniqueRules;

    std::vector<const Entity*> chain;      ///< the entity, its supertype, and so on up to the root
    std::vector<const Entity*> subtypes;   ///< direct ones
    std::vector<RecordField> recordFields; ///< inherited ones first
    bool isInverted = false;               ///< an inverse attribute names it or a supertype as its target

    std::span<const Entity* const> supertypes() const { return std::span(chain).subspan(1); } ///< nearest first
    bool isKindOf(const Entity& other) const;
};

struct Schema {
    Schema() = default;
    Schema(Schema&&) = default;
    Schema& operator=(Schema&&) = default;

    std::string name;
    std::string version;
    std::deque<DefinedType> definedTypes;
    std::deque<Enumeration> enumerations;
    std::deque<Select> selects;
    std::deque<Entity> entities;
    std::deque<Aggregation> aggregations; ///< each once, in the order of first mention

    std::vector<const Entity*> supertypesFirst; ///< all entities, each after its supertype, otherwise in declared order
};

/// The name or spelling as in the schema file.
std::string spell(const TypeRef& type);

/// `type` with defined types replaced by what they stand for.
TypeRef underlying(const TypeRef& type);

} // namespace kpifcgen::facts
