#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kpifcgen::facts {

enum class SimpleKind { Real, Integer, Number, String, Boolean, Logical, Binary };

/// A simple type; `width` counts the characters of a string and the bits of a binary, `fixed` demands all of them.
struct SimpleType {
    SimpleKind kind = SimpleKind::Real;
    std::optional<int> width;
    bool fixed = false;
};

enum class AggregateKind { List, Set, Array, Bag };

/// Sizes for a list, set or bag, index bounds for an array; no `high` is an open bound.
struct Bounds {
    int low = 0;
    std::optional<int> high;
};

/// The words of the schema file.
std::string_view spell(SimpleKind kind);
std::string_view spell(AggregateKind kind);
std::string spell(const SimpleType& type);
std::string spell(const Bounds& bounds);

std::optional<SimpleKind> simpleKind(std::string_view word);
std::optional<AggregateKind> aggregateKind(std::string_view word);

/// Words of the schema file's own grammar where a name could stand; nothing can be declared under them.
bool isReserved(std::string_view word);

} // namespace kpifcgen::facts
