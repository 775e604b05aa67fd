#include "SchemaNames.h"

#include <KpIfcCore/KpTextCase.h>

#include <algorithm>

using namespace KP_SDAI;

namespace kpifc {

SchemaNames::SchemaNames(const KpIfcSchema& schema) {
    for (const Dictionary::Entry& entry : schema.entities().entries()) {
        entities.emplace_back(entry.object->as<KpIfcEntityType>()->displayName());
    }
    for (const Dictionary::Entry& entry : schema.types().entries()) {
        const auto& type = *entry.object->as<KpIfcDefinedType>();
        (type.enumeration() ? enumerations : type.select() ? selects : types).emplace_back(type.displayName());
    }
    for (std::vector<std::string>* names : {&entities, &types, &enumerations, &selects}) {
        std::sort(names->begin(), names->end(),
                  [](const auto& a, const auto& b) { return compareNoCase(a.c_str(), b.c_str()) < 0; });
    }
}

std::vector<std::string> suggestions(const SchemaNames& names, std::string_view name) {
    std::vector<std::string> all;
    for (const std::vector<std::string>* list : {&names.entities, &names.types, &names.enumerations, &names.selects}) {
        all.insert(all.end(), list->begin(), list->end());
    }
    return suggestions(all, name);
}

} // namespace kpifc
