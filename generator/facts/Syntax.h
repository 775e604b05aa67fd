#pragma once

#include "facts/Diagnostics.h"
#include "facts/Types.h"

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// A schema file as written: names are text, nothing is looked up yet.
namespace kpifcgen::facts::syntax {

struct Name {
    std::string text;
    Position at;
};

struct Aggregation;

/// Exactly one of the three: a simple type, a name, an aggregation.
using Type = std::variant<SimpleType, Name, std::shared_ptr<const Aggregation>>;

struct Aggregation {
    Position at;
    AggregateKind kind = AggregateKind::List;
    Bounds bounds;
    bool unique = false;
    Type element;
};

struct DefinedType {
    Name name;
    Type type;
};

/// An enumeration or a select.
struct WordList {
    Name name;
    std::vector<Name> words;
};

struct ExplicitAttribute {
    Name name;
    bool optional = false;
    Type type;
};

struct DerivedAttribute {
    std::optional<Name> redeclaredIn;
    Name name;
    Type type;
};

struct InverseAttribute {
    Name name;
    std::optional<AggregateKind> aggregate; ///< none for a single-valued inverse
    Bounds bounds;
    Name target;
    Name attribute;
};

struct UniqueRule {
    Name label;
    std::vector<Name> attributes;
};

struct Entity {
    Name name;
    bool abstract = false;
    std::optional<Name> supertype;
    std::vector<ExplicitAttribute> explicitAttributes;
    std::vector<DerivedAttribute> derivedAttributes;
    std::vector<InverseAttribute> inverseAttributes;
    std::vector<UniqueRule> uniqueRules;
};

struct Schema {
    Name name;
    std::string version;
    std::vector<DefinedType> definedTypes;
    std::vector<WordList> enumerations;
    std::vector<WordList> selects;
    std::vector<Entity> entities;
};

} // namespace kpifcgen::facts::syntax
