#pragma once

#include "facts/Schema.h"

#include <optional>
#include <string>

namespace kpifcgen::plan {

enum class StorageKind { Text, Guid, Real, Integer, Boolean, Logical, Enumeration, Reference, Select, Aggregate };

/// How a value of a schema type is held in C++.
struct Storage {
    StorageKind kind = StorageKind::Text;
    std::string type;                      ///< of the member
    std::string initializer;               ///< behind the member's name: " = unsetText()" or nothing
    std::string array;                     ///< of aggregates: in which accessors hand the elements in and out
    std::string included;                  ///< the declaration whose header the type needs, or nothing
    const facts::Entity* target = nullptr; ///< of references and aggregates of them
    bool isBinary = false;                 ///< a text, or texts, that files write as binary
};

/// None where the runtime has no class for the type: bags, aggregates of aggregates, booleans, logicals or
/// enumerations.
std::optional<Storage> storageOf(const facts::TypeRef& type);

} // namespace kpifcgen::plan
