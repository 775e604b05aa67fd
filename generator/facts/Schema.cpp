#include "facts/Schema.h"

#include <algorithm>

namespace kpifcgen::facts {

namespace {

std::string spellOne(const SimpleType& type) {
    return spell(type);
}
std::string spellOne(const Aggregation* aggregation) {
    return aggregation->spelling;
}
std::string spellOne(const auto* declared) {
    return declared->name;
}

} // namespace

bool Entity::isKindOf(const Entity& other) const {
    return std::ranges::find(chain, &other) != chain.end();
}

std::string spell(const TypeRef& type) {
    return std::visit([](const auto& alternative) { return spellOne(alternative); }, type);
}

TypeRef underlying(const TypeRef& type) {
    const auto* defined = std::get_if<const DefinedType*>(&type);
    return defined ? (*defined)->underlying : type;
}

} // namespace kpifcgen::facts
