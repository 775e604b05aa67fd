#include "SchemaUses.h"

#include <KpIfcCore/KpTextCase.h>

#include <algorithm>

using namespace KP_SDAI;

namespace kpifc {

static bool byName(const KpIfcNameType* a, const KpIfcNameType* b) {
    return compareNoCase(a->displayName(), b->displayName()) < 0;
}

SchemaUses::SchemaUses(const KpIfcSchema& schema, const KpIfcNameType& type) {
    for (const KpIfcDefinedType* user : schema.typesOver(type)) {
        (user->select() ? selects : types).push_back(user);
    }
    for (const KpIfcAttributeDefinition* attribute : schema.attributesOver(type)) {
        if (entities.empty() || entities.back().first != attribute->owner()) {
            entities.emplace_back(attribute->owner(), Attributes());
        }
        entities.back().second.push_back(attribute);
    }
    std::sort(types.begin(), types.end(), byName);
    std::sort(selects.begin(), selects.end(), byName);
    std::sort(entities.begin(), entities.end(), [](const auto& a, const auto& b) { return byName(a.first, b.first); });
}

} // namespace kpifc
