#include "TypeText.h"

#include <KpIfcCore/KpIfcExpressText.h>
#include <KpIfcCore/KpIfcSelectType.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

using namespace KP_SDAI;

namespace kpifc {

std::string chainText(const KpIfcDefinedType& type) {
    std::string text = definitionText(type);
    const DictionaryInstance* underlying = type.underlyingType();
    const auto* named = underlying ? underlying->as<KpIfcDefinedType>() : nullptr;
    return named && !named->isAnonymous() ? text + ", which is " + chainText(*named) : text;
}

std::string valuesText(const DictionaryInstance& type) {
    const std::string name = expressText(&type);
    const auto* named = type.as<KpIfcDefinedType>();
    if (!named || named->isAnonymous()) {
        return name;
    }
    const KpIfcSelectType* select = named->select();
    if (!select) {
        return name + ", which is " + chainText(*named);
    }
    std::vector<const char*> alternatives;
    for (const KpIfcNameType* member : select->flattenedMembers()) {
        alternatives.push_back(member->displayName());
    }
    return fmt::format("{}, which is one of {}", name, fmt::join(alternatives, ", "));
}

} // namespace kpifc
