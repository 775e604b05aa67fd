#include "facts/Types.h"

#include <algorithm>
#include <array>

namespace kpifcgen::facts {

namespace {

// In the order of the enumerators.
constexpr std::array<std::string_view, 7> simpleWords = {"real",    "integer", "number", "string",
                                                         "boolean", "logical", "binary"};
constexpr std::array<std::string_view, 4> aggregateWords = {"list", "set", "array", "bag"};
constexpr std::array<std::string_view, 6> otherWords = {"optional", "derive", "inverse", "unique", "of", "for"};

template <class Kind, std::size_t N>
std::optional<Kind> find(const std::array<std::string_view, N>& words, std::string_view word) {
    const auto found = std::ranges::find(words, word);
    return found == words.end() ? std::nullopt : std::optional(static_cast<Kind>(found - words.begin()));
}

} // namespace

std::string_view spell(SimpleKind kind) {
    return simpleWords[static_cast<std::size_t>(kind)];
}

std::string_view spell(AggregateKind kind) {
    return aggregateWords[static_cast<std::size_t>(kind)];
}

std::string spell(const SimpleType& type) {
    std::string text(spell(type.kind));
    if (type.width) {
        text += "(" + std::to_string(*type.width) + ")";
    }
    return text + (type.fixed ? " fixed" : "");
}

std::string spell(const Bounds& bounds) {
    return "[" + std::to_string(bounds.low) + ":" + (bounds.high ? std::to_string(*bounds.high) : "?") + "]";
}

std::optional<SimpleKind> simpleKind(std::string_view word) {
    return find<SimpleKind>(simpleWords, word);
}

std::optional<AggregateKind> aggregateKind(std::string_view word) {
    return find<AggregateKind>(aggregateWords, word);
}

bool isReserved(std::string_view word) {
    return simpleKind(word) || aggregateKind(word) || std::ranges::find(otherWords, word) != otherWords.end();
}

} // namespace kpifcgen::facts
