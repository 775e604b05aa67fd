#include "check/CheckedEntity.h"

#include <algorithm>
#include <string_view>

namespace KP_SDAI {

namespace {

std::size_t sizeOf(const KpIfcIntegerBound& bound, std::size_t open) {
    return bound.isUnbounded() ? open : static_cast<std::size_t>(bound.value());
}

const KpIfcAggregationType* aggregationOf(const DictionaryInstance* type) {
    const auto* const named = type ? type->as<KpIfcDefinedType>() : nullptr;
    return named ? named->aggregation() : type ? type->as<KpIfcAggregationType>() : nullptr;
}

bool mayBeWrong(const KpIfcAttributeFacts& row) {
    switch (row.kind) {
    case KpIfcFieldKind::derived:
    case KpIfcFieldKind::notKept: return false;
    case KpIfcFieldKind::guid:
    case KpIfcFieldKind::reference:
    case KpIfcFieldKind::select:
    case KpIfcFieldKind::aggregate: return true;
    default: return !row.isOptional();
    }
}

} // namespace

CheckedBounds boundsOf(const KpIfcAggregationType& type) {
    if (type.as<KpIfcArrayType>()) {
        const int count = type.upperBound().value() - type.lowerBound().value() + 1;
        if (type.upperBound().isUnbounded() || type.lowerBound().isUnbounded() || count < 0) return {};
        return {static_cast<std::size_t>(count), static_cast<std::size_t>(count)};
    }
    return {sizeOf(type.lowerBound(), 0), sizeOf(type.upperBound(), CheckedBounds::kOpen)};
}

CheckedEntity::CheckedEntity(const KpIfcEntityType& entity) : type(entity) {
    const std::vector<const KpIfcAttributeFacts*>& rows = entity.recordFields();
    std::uint32_t field = 0; // explicit attributes are the fields of a record, in this order
    for (const KpIfcAttributeDefinition* attribute : entity.allAttributes()) {
        const auto* const declared = attribute->as<KpIfcExplicitAttributeDefinition>();
        if (!declared || field == rows.size()) continue;
        CheckedField checked{field, rows[field], declared, {}};
        ++field;
        if (!mayBeWrong(*checked.row)) continue;
        if (const KpIfcAggregationType* aggregation = aggregationOf(declared->domain()))
            checked.bounds = boundsOf(*aggregation);
        fields.push_back(checked);
    }
    for (const KpIfcEntityType* level = &entity; level; level = level->superType()) {
        addInverses(*level);
        addRules(*level);
    }
}

void CheckedEntity::addInverses(const KpIfcEntityType& level) {
    const KpIfcEntityFacts* const facts = level.facts();
    std::uint32_t index = 0;
    for (const auto& attribute : level.attributes()) {
        const auto* const inverse = attribute->as<KpIfcInverseAttributeDefinition>();
        if (!inverse || !facts || index == facts->inverseCount) continue;
        const KpIfcInverseFacts& row = facts->inverses[index++];
        CheckedBounds bounds{1, 1};
        if (!inverse->isSingleValued()) {
            bounds = {sizeOf(KpIfcIntegerBound(inverse->minimum()), 0),
                      sizeOf(KpIfcIntegerBound(inverse->maximum()), CheckedBounds::kOpen)};
        }
        if (bounds.least > 0 || bounds.most < CheckedBounds::kOpen) inverses.push_back({&row, inverse, bounds});
    }
}

void CheckedEntity::addRules(const KpIfcEntityType& level) {
    const KpIfcEntityFacts* const facts = level.facts();
    for (std::uint32_t i = 0; facts && i < facts->uniqueRuleCount; ++i) {
        CheckedRule rule{&level, &facts->uniqueRules[i], {}, {}};
        std::string_view names = rule.rule->attributes;
        while (!names.empty()) {
            const std::string_view name = names.substr(0, names.find(' '));
            names.remove_prefix(std::min(name.size() + 1, names.size()));
            rule.attributes += (rule.attributes.empty() ? "" : ", ") + std::string(name);
            for (std::uint32_t field = 0; field < type.recordFields().size(); ++field)
                if (equalNoCase(name.data(), name.size(), type.recordFields()[field]->name))
                    rule.fields.push_back(field);
        }
        rules.push_back(std::move(rule));
    }
}

} // namespace KP_SDAI
