#include "plan/DictionaryNames.h"

#include "facts/Text.h"

namespace kpifcgen::plan {

namespace {

std::string aggregationText(const facts::Aggregation& type, const std::string& element) {
    return std::string(facts::spell(type.kind)) + " " + facts::spell(type.bounds) + " of " + element;
}

} // namespace

std::string dictionaryName(const facts::SimpleType& type) {
    const auto kind = type.kind == facts::SimpleKind::Number ? facts::SimpleKind::Real : type.kind;
    return std::string(facts::spell(kind));
}

std::string elementTypeName(const facts::TypeRef& type) {
    if (const auto* simple = std::get_if<facts::SimpleType>(&type)) {
        return dictionaryName(*simple);
    }
    const auto* aggregation = std::get_if<const facts::Aggregation*>(&type);
    return aggregation ? aggregationName(**aggregation) : facts::spell(type);
}

std::string aggregationName(const facts::Aggregation& type) {
    return aggregationText(type, elementTypeName(type.element));
}

std::string attributeTypeName(const facts::TypeRef& type) {
    if (const auto* simple = std::get_if<facts::SimpleType>(&type)) {
        return dictionaryName(*simple);
    }
    const auto* aggregation = std::get_if<const facts::Aggregation*>(&type);
    return aggregation ? aggregationText(**aggregation, attributeTypeName((*aggregation)->element))
                       : upperCase(facts::spell(type));
}

std::string memberTypeName(const facts::TypeRef& type) {
    return upperCase(facts::spell(type));
}

std::string derivedAttributeName(const facts::DerivedAttribute& attribute) {
    return attribute.redeclared ? lowerCase(attribute.redeclared->owner->name + "_" + attribute.name) : attribute.name;
}

} // namespace kpifcgen::plan
