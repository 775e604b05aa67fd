#include "part21/GlobalIdCheck.h"

#include "part21/Findings.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcGUID.h>

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <bit>
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

void GlobalIdCheck::note(const KpIfcEntityType& type, KpIfcEntityBase& instance, std::uint64_t offset,
                         std::vector<Noted>& noted) {
    const KpIfcAttributeFacts* const row = globalIdOf(type);
    if (!row || (instance.*row->member.guid).isUnset()) return;
    const std::string_view id = (instance.*row->member.guid).constStr();
    if (!id.empty()) noted.push_back({&instance, offset, XXH3_64bits(id.data(), id.size())});
}

const GlobalIdCheck::Noted* GlobalIdCheck::firstOf(const Noted& one, std::vector<const Noted*>& table) const {
    const auto counts = [](const Noted& noted) { return noted.instance->objectId().openObject() == noted.instance; };
    for (std::size_t at = one.hash & (table.size() - 1);; at = (at + 1) & (table.size() - 1)) {
        const Noted*& first = table[at];
        if (!first) {
            first = &one;
            return nullptr;
        }
        if (first->hash != one.hash || textOf(*first->instance) != textOf(*one.instance)) continue;
        if (!counts(one)) return nullptr;
        if (counts(*first)) return first;
        first = &one;
        return nullptr;
    }
}

void GlobalIdCheck::look(KpIfcReport& report) {
    // A table that is at most half full; what is compared lies in it, so that no instance is touched but twins.
    std::vector<const Noted*> table(std::bit_ceil(2 * m_noted.count() + 1));
    for (const std::span<Noted>& part : m_noted.parts()) {
        for (const Noted& one : part) {
            if (const Noted* const first = firstOf(one, table))
                report.add(findingOn(*one.instance, 0, KpIfcFinding::notUnique, KpIfcSeverity::warning, one.offset,
                                     {'\'' + std::string(textOf(*one.instance)) + '\'',
                                      "another GlobalId than that of " + labelOf(first->instance->objectId())}));
        }
    }
    m_noted.clear();
}

} // namespace KP_SDAI
