#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The declarations of a schema file, read here once more and apart from the generator, so that the dictionary is
/// compared with the file and not with what it was made from.
namespace schema_file {

/// Types are in the notation of EXPRESS: "LIST [1:?] OF UNIQUE IfcText".
struct Attribute {
    enum class Kind { explicitAttribute, derived, inverse };
    Kind kind;
    std::string name;
    std::string type;
    bool optional = false;
    std::string redeclaredIn; ///< of derived ones: the supertype; empty for none
    std::string inverted;     ///< of inverse ones
};

struct UniqueRule {
    std::string label;
    std::string attributes; ///< separated by blanks
};

struct Entity {
    std::string name;
    std::string supertype; ///< empty for a root
    bool isAbstract = false;
    std::vector<Attribute> attributes;
    std::vector<UniqueRule> uniqueRules;
};

/// A defined type with its type, an enumeration with its literals, a select with its members.
struct Type {
    enum class Kind { defined, enumeration, select };
    Kind kind;
    std::string name;
    std::string type;
    std::vector<std::string> words;
};

struct Schema {
    std::vector<Type> types;
    std::vector<Entity> entities;
};

/// The schema of the checkout.
Schema readIfc2x3();

/// "SET [0:?] OF IfcRelDefines" for "set [0:?] of IfcRelDefines": all words but names in upper case.
std::string expressNotation(std::string_view type);

} // namespace schema_file
