#include "part21/GlobalIdCheck.h"

#include "part21/Findings.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcGUID.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace KP_SDAI {

namespace {

/// The attribute that holds the GlobalId: the first of all entities that have one. Null where the entity has none.
const KpIfcAttributeFacts* globalIdOf(const KpIfcEntityType& type) {
    const auto& fields = type.recordFields();
    return !fields.empty() && fields[0]->kind == KpIfcFieldKind::guid ? fields[0] : nullptr;
}

std::string_view textOf(KpIfcEntityBase& instance) {
    return (instance.*globalIdOf(*instance.getInstanceType())->member.guid).constStr();
}

} // namespace

void GlobalIdCheck::note(const KpIfcEntityType& type, KpIfcEntityBase& instance, std::uint64_t offset) {
    const KpIfcAttributeFacts* const row = globalIdOf(type);
    if (row && !(instance.*row->member.guid).isUnset()) m_noted.push_back({&instance, offset});
}

void GlobalIdCheck::look(KpIfcReport& report) {
    std::erase_if(m_noted, [](const Noted& one) {
        return one.instance->objectId().openObject() != one.instance || textOf(*one.instance).empty();
    });
    const auto comesBefore = [](const Noted& a, const Noted& b) {
        const int order = textOf(*a.instance).compare(textOf(*b.instance));
        return order != 0 ? order < 0 : a.offset < b.offset;
    };
    std::sort(m_noted.begin(), m_noted.end(), comesBefore);
    std::vector<std::pair<const Noted*, const Noted*>> twins; // with the first of the same GlobalId
    const Noted* first = nullptr;
    for (const Noted& one : m_noted) {
        if (first && textOf(*first->instance) == textOf(*one.instance))
            twins.emplace_back(&one, first);
        else
            first = &one;
    }
    std::sort(twins.begin(), twins.end(),
              [](const auto& a, const auto& b) { return a.first->offset < b.first->offset; });
    for (const auto& [one, other] : twins)
        report.add(findingOn(*one->instance, 0, KpIfcFinding::notUnique, KpIfcSeverity::warning, one->offset,
                             {'\'' + std::string(textOf(*one->instance)) + '\'',
                              "another GlobalId than that of " + labelOf(other->instance->objectId())}));
    m_noted = {};
}

} // namespace KP_SDAI
