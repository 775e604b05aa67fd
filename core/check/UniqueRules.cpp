#include "check/UniqueRules.h"

#include <algorithm>

namespace KP_SDAI {

std::string UniqueRules::valuesOf(KpIfcEntityBase& instance, const CheckedRule& rule) {
    const std::string parameters = m_writer.parameters(instance);
    const std::vector<std::string_view> written = splitParameters(parameters);
    std::string values;
    for (const std::uint32_t field : rule.fields) {
        if (field >= written.size() || written[field] == "$" || written[field] == "*") return {};
        values += (values.empty() ? "" : ",") + std::string(written[field]);
    }
    return values;
}

void UniqueRules::look(KpIfcEntityBase& instance, const std::vector<CheckedRule>& rules,
                       const std::vector<const KeptField*>& kept) {
    for (const CheckedRule& rule : rules) {
        const auto isOfRule = [&](const KeptField* text) {
            return std::find(rule.fields.begin(), rule.fields.end(), text->field) != rule.fields.end();
        };
        if (std::any_of(kept.begin(), kept.end(), isOfRule)) continue;
        const std::string values = valuesOf(instance, rule);
        if (values.empty()) continue;
        const auto entered = m_first[rule.rule].emplace(values, instance.objectId());
        if (entered.second) continue;
        m_findings.add(KpIfcFinding::notUnique, instance, rule.attributes, [&] {
            return Said{values + ", as in " + labelOf(entered.first->second),
                        std::string("other values than all else (") + rule.entity->displayName() + '.' +
                            rule.rule->label + ')'};
        });
    }
}

} // namespace KP_SDAI
