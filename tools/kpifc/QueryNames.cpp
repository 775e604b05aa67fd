#include "QueryNames.h"

#include "HeldAttributes.h"

#include <KpIfcCore/KpIfcAggregationType.h>
#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcSelectType.h>
#include <KpIfcCore/KpTextCase.h>

#include <algorithm>
#include <set>

using namespace KP_SDAI;

namespace kpifc::query {

Types anyType(const KpIfcSchema& schema) {
    Types types;
    for (const Dictionary::Entry& entry : schema.entities().entries()) {
        const auto* entity = entry.object->as<KpIfcEntityType>();
        if (!entity->superType()) {
            types.push_back({entity, false});
        }
    }
    return types;
}

namespace {

/// Calls `look` with each attribute that instances of the types can have; inherited ones may come again.
template <class Look>
void eachAttribute(const Types& types, Look&& look) {
    std::vector<const KpIfcEntityType*> open;
    for (const TypeTest& type : types) {
        for (const KpIfcAttributeDefinition* attribute : type.entity->allAttributes()) {
            look(*attribute);
        }
        if (!type.isExact) {
            open.insert(open.end(), type.entity->subTypes().begin(), type.entity->subTypes().end());
        }
    }
    while (!open.empty()) {
        const KpIfcEntityType* entity = open.back();
        open.pop_back();
        for (const auto& attribute : entity->attributes()) {
            look(*attribute);
        }
        open.insert(open.end(), entity->subTypes().begin(), entity->subTypes().end());
    }
}

void addEntities(const DictionaryInstance* type, std::set<const KpIfcEntityType*>& found) {
    const DictionaryInstance* base = type ? baseType(type) : nullptr;
    if (!base) {
        return;
    }
    if (const auto* entity = base->as<KpIfcEntityType>()) {
        found.insert(entity);
    } else if (const auto* aggregation = base->as<KpIfcAggregationType>()) {
        addEntities(aggregation->elementType(), found);
    } else if (const auto* select = base->as<KpIfcSelectType>()) {
        for (const KpIfcNameType* member : select->flattenedMembers()) {
            addEntities(member, found);
        }
    }
}

} // namespace

Attributes attributesOf(const Types& types, std::string_view name) {
    Attributes found;
    eachAttribute(types, [&](const KpIfcAttributeDefinition& attribute) {
        if (equalNoCase(name.data(), name.size(), attribute.displayName()) &&
            std::find(found.begin(), found.end(), &attribute) == found.end()) {
            found.push_back(&attribute);
        }
    });
    return found;
}

std::vector<std::string> attributeNames(const Types& types) {
    std::set<std::string> names;
    eachAttribute(types, [&](const KpIfcAttributeDefinition& attribute) { names.insert(attribute.displayName()); });
    return {names.begin(), names.end()};
}

Types targetsOf(const Attributes& attributes) {
    std::set<const KpIfcEntityType*> entities;
    for (const KpIfcAttributeDefinition* attribute : attributes) {
        addEntities(attribute->domain(), entities);
    }
    Types types;
    for (const KpIfcEntityType* entity : entities) {
        types.push_back({entity, false});
    }
    std::sort(types.begin(), types.end(), [](const TypeTest& a, const TypeTest& b) {
        return compareNoCase(a.entity->displayName(), b.entity->displayName()) < 0;
    });
    return types;
}

std::vector<std::string> literalsOf(const Attributes& attributes) {
    std::set<std::string> literals;
    for (const KpIfcAttributeDefinition* attribute : attributes) {
        const auto* type = attribute->domain() ? attribute->domain()->as<KpIfcDefinedType>() : nullptr;
        const KpIfcEnumerationType* enumeration = type ? type->enumeration() : nullptr;
        if (!enumeration) {
            return {};
        }
        for (const KpAnsiString& literal : enumeration->literals()) {
            literals.emplace(literal.view());
        }
    }
    return {literals.begin(), literals.end()};
}

std::string namesOf(const Types& types) {
    constexpr std::size_t kMost = 3;
    if (types.empty() || types.size() > kMost) {
        return "this";
    }
    std::string text;
    for (const TypeTest& type : types) {
        text += (text.empty() ? "" : " or ") + std::string(type.entity->displayName());
    }
    return text;
}

} // namespace kpifc::query
