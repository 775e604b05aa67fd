#include <KpIfcCore/KpIfcExpressText.h>

#include <KpIfcCore/KpIfcAggregationType.h>
#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcSelectType.h>
#include <KpIfcCore/KpTextCase.h>

#include "dictionary/BoundsText.h"

#include <string_view>

namespace KP_SDAI {

std::string boundsText(int lower, int upper) {
    const auto text = [](int bound) { return bound == Consts::KpIntUnset ? "?" : std::to_string(bound); };
    return "[" + text(lower) + ":" + text(upper) + "]";
}

namespace {

std::string aggregationText(const KpIfcAggregationType& type) {
    std::string text(type.keyword());
    text += ' ' + boundsText(type.lowerBound().value(), type.upperBound().value()) + " OF ";
    if (const auto* list = type.as<KpIfcListType>(); list && list->isUnique()) text += "UNIQUE ";
    if (const auto* array = type.as<KpIfcArrayType>()) {
        if (array->isOptional()) text += "OPTIONAL ";
        if (array->isUnique()) text += "UNIQUE ";
    }
    return text + expressText(type.elementType());
}

/// "STRING(22) FIXED" for "string(22)fixed".
std::string simpleText(const char* name) {
    std::string text;
    for (; *name; ++name) {
        text += upperAscii(*name);
        if (*name == ')' && name[1]) text += ' ';
    }
    return text;
}

/// "HEAD (a, b, c)"
template <class Items, class Name>
std::string listText(const char* head, const Items& items, Name name) {
    std::string text = std::string(head) + " (";
    const char* separator = "";
    for (const auto& item : items) {
        text += separator;
        text += name(item);
        separator = ", ";
    }
    return text + ')';
}

} // namespace

std::string expressText(const DictionaryInstance* type) {
    if (!type) return "?";
    if (const auto* aggregation = type->as<KpIfcAggregationType>()) return aggregationText(*aggregation);
    if (const auto* string = type->as<KpIfcStringType>())
        return "STRING(" + std::to_string(string->width()) + (string->isFixed() ? ") FIXED" : ")");
    if (const auto* simple = type->as<KpIfcSimpleType>()) return simpleText(simple->name());
    if (const auto* named = type->as<KpIfcDefinedType>(); named && named->isAnonymous())
        return named->aggregation() ? aggregationText(*named->aggregation()) : simpleText(named->name());
    const auto* named = type->as<KpIfcNameType>();
    return named ? named->displayName() : "?";
}

std::string definitionText(const KpIfcDefinedType& type) {
    if (const KpIfcEnumerationType* enumeration = type.enumeration())
        return listText("ENUMERATION OF", enumeration->literals(),
                        [](const KpAnsiString& literal) { return literal.constStr(); });
    if (const KpIfcSelectType* select = type.select())
        return listText("SELECT", select->members(), [](const KpIfcNameType* member) { return member->displayName(); });
    return expressText(type.underlyingType());
}

} // namespace KP_SDAI
