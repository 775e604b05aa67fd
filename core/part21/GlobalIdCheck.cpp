#include "part21/GlobalIdCheck.h"

#include "part21/Findings.h"
#include "values/BlockPool.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcGUID.h>

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <algorithm>
#include <bit>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace KP_SDAI {

namespace {

/// The attribute that holds the GlobalId: the first of all entities that have one. Null where the entity has none.
const KpIfcAttributeFacts* globalIdOf(const KpIfcEntityType& type) {
    const auto& fields = type.recordFields();
    return !fields.empty() && fields[0]->kind == KpIfcFieldKind::guid ? fields[0] : nullptr;
}

constexpr std::size_t kRows = BlockPool::kBlock / sizeof(const void*); // of a table

std::string_view textOf(KpIfcEntityBase& instance) {
    return (instance.*globalIdOf(*instance.getInstanceType())->member.guid).constStr();
}

} // namespace

void GlobalIdCheck::note(const KpIfcEntityType& type, KpIfcEntityBase& instance, std::uint64_t offset,
                         std::vector<Noted>& noted) {
    const KpIfcAttributeFacts* const row = globalIdOf(type);
    if (!row || (instance.*row->member.guid).isUnset()) return;
    const std::string_view id = (instance.*row->member.guid).constStr();
    if (!id.empty())
        noted.push_back(
            {&instance, offset << Noted::kHashBits | XXH3_64bits(id.data(), id.size()) >> (64 - Noted::kHashBits)});
}

const GlobalIdCheck::Noted* GlobalIdCheck::firstOf(const Noted& one, std::span<const Noted*> table) {
    const auto counts = [](const Noted& noted) { return noted.instance->objectId().openObject() == noted.instance; };
    for (std::size_t at = one.hash() & (table.size() - 1);; at = (at + 1) & (table.size() - 1)) {
        const Noted*& first = table[at];
        if (!first) {
            first = &one;
            return nullptr;
        }
        if (first->hash() != one.hash() || textOf(*first->instance) != textOf(*one.instance)) continue;
        if (!counts(one)) return nullptr;
        if (counts(*first)) return first;
        first = &one;
        return nullptr;
    }
}

/// Calls `visit(const Noted&)` for those that one of so many shares has; equal ones are in the same.
template <class Visit>
void GlobalIdCheck::visitShare(std::size_t share, std::size_t shares, Visit visit) const {
    for (const std::span<Noted>& part : m_noted.parts())
        for (const Noted& one : part)
            if (one.hash() / kRows % shares == share) visit(one);
}

void GlobalIdCheck::look(KpIfcReport& report) {
    if (m_noted.count() == 0) return;
    // Tables that are at most half full, one after the other in one block, which stays in the processor's cache. What
    // is compared lies in them, so that no instance is touched but twins.
    struct Block {
        explicit Block(BlockPool& p) : pool(p), memory(p.take()) {}
        ~Block() { pool.giveBack(memory); }
        BlockPool& pool;
        void* const memory;
    };
    const Block block(m_pool);
    std::vector<const Noted*> large; // for a share that is far larger than others
    std::vector<std::pair<const Noted*, const Noted*>> twins;
    const std::size_t shares = 1 + m_noted.count() * 3 / kRows;
    for (std::size_t share = 0; share < shares; ++share) {
        std::size_t count = 0;
        visitShare(share, shares, [&](const Noted&) { ++count; });
        std::span table(static_cast<const Noted**>(block.memory), std::min(kRows, std::bit_ceil(2 * count + 1)));
        if (table.size() < 2 * count) {
            large.resize(std::bit_ceil(2 * count + 1));
            table = large;
        }
        std::uninitialized_fill(table.begin(), table.end(), nullptr);
        visitShare(share, shares, [&](const Noted& one) {
            if (const Noted* const first = firstOf(one, table)) twins.emplace_back(&one, first);
        });
    }
    std::sort(twins.begin(), twins.end(),
              [](const auto& a, const auto& b) { return a.first->offset() < b.first->offset(); });
    for (const auto& [one, first] : twins)
        report.add(findingOn(*one->instance, 0, KpIfcFinding::notUnique, KpIfcSeverity::warning, one->offset(),
                             {'\'' + std::string(textOf(*one->instance)) + '\'',
                              "another GlobalId than that of " + labelOf(first->instance->objectId())}));
    m_noted.clear();
}

} // namespace KP_SDAI
