#include "model/ReferrerIndex.h"

#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcReferences.h>

#include "model/ChangedInstances.h"

#include <algorithm>

namespace KP_SDAI {

namespace {

/// What an instance refers to, each once, by the addresses of their slots.
void collectTargets(KpIfcEntityBase& instance, std::vector<KpDbObjectId>& targets) {
    targets.clear();
    for (const KpIfcAttributeFacts* row : instance.getInstanceType()->recordFields())
        visitReferences(instance, *row, [&](const KpDbObjectId& handle) {
            if (!handle.isNull()) targets.push_back(handle);
        });
    std::sort(targets.begin(), targets.end(), [](const auto& a, const auto& b) { return a.slot() < b.slot(); });
    targets.erase(std::unique(targets.begin(), targets.end()), targets.end());
}

std::size_t indexIn(const KpIfcSlotChunk* chunk, const KpDbObjectId& handle) {
    return static_cast<std::size_t>(handle.slot() - chunk->slots);
}

} // namespace

ReferrerIndex::ReferrerIndex(const KpIfcModel& model) : m_mostChanged(1000 + model.count() / 8) {
    std::vector<KpDbObjectId> targets;
    const KpIfcSlotChunk* chunk = nullptr; // mostly, one target lies in the chunk of the one before
    std::uint32_t page = 0;
    const auto pageOf = [&](const KpDbObjectId& target) -> Page& {
        if (KpIfcSlotChunk::of(target.slot()) != chunk) {
            chunk = KpIfcSlotChunk::of(target.slot());
            const auto [found, isNew] = m_pageOf.try_emplace(chunk, static_cast<std::uint32_t>(m_pages.size()));
            if (isNew) m_pages.emplace_back();
            page = found->second;
        }
        return m_pages[page];
    };

    for (KpIfcEntityBase* instance : model.instances()) {
        collectTargets(*instance, targets);
        for (const KpDbObjectId& target : targets) ++pageOf(target).first[indexIn(chunk, target)];
    }
    std::size_t total = 0;
    for (Page& one : m_pages) {
        one.base = total;
        std::uint32_t next = 0;
        for (std::uint32_t& first : one.first) {
            const std::uint32_t count = first;
            first = next;
            next += count;
        }
        total += next;
    }
    m_referrers.resize(total);
    for (KpIfcEntityBase* instance : model.instances()) {
        collectTargets(*instance, targets);
        for (const KpDbObjectId& target : targets) {
            Page& one = pageOf(target);
            m_referrers[one.base + one.first[indexIn(chunk, target)]++] = instance->objectId();
        }
    }
    // Each beginning has moved to its end, which is the next one's beginning.
    for (Page& one : m_pages) {
        std::copy_backward(std::begin(one.first), std::end(one.first) - 1, std::end(one.first));
        one.first[0] = 0;
    }
}

std::span<const KpDbObjectId> ReferrerIndex::body(const KpDbObjectId& target) const {
    const KpIfcSlotChunk* const chunk = KpIfcSlotChunk::of(target.slot());
    const auto found = m_pageOf.find(chunk);
    if (found == m_pageOf.end()) return {};
    const Page& page = m_pages[found->second];
    const std::uint32_t* const first = page.first + indexIn(chunk, target);
    return {m_referrers.data() + page.base + first[0], first[1] - first[0]};
}

void ReferrerIndex::copyTo(const KpDbObjectId& target, KpIfcArray<KpDbObjectId>& referrers) const {
    const std::span<const KpDbObjectId> unchanged = body(target);
    const auto found = m_changed.find(target.slot());
    const Handles none;
    const Handles& changed = found == m_changed.end() ? none : found->second;
    auto next = changed.begin();
    for (const KpDbObjectId& referrer : unchanged) {
        if (!m_targets.empty() && m_targets.count(referrer.slot())) continue;
        while (next != changed.end() && *next < referrer) referrers.append(*next++);
        referrers.append(referrer);
    }
    while (next != changed.end()) referrers.append(*next++);
}

void ReferrerIndex::refersTo(const KpIfcSlot* slot, Handles& targets) {
    const KpDbObjectId referrer(const_cast<KpIfcSlot*>(slot));
    Handles& former = m_targets[slot];
    auto gone = former.begin();
    auto come = targets.begin();
    while (gone != former.end() || come != targets.end()) {
        const bool isGone = come == targets.end() || (gone != former.end() && gone->slot() < come->slot());
        if (!isGone && gone != former.end() && gone->slot() == come->slot()) {
            ++gone, ++come;
            continue;
        }
        Handles& referrers = m_changed[isGone ? (gone++)->slot() : (come++)->slot()];
        const auto place = std::lower_bound(referrers.begin(), referrers.end(), referrer);
        if (isGone)
            referrers.erase(place);
        else
            referrers.insert(place, referrer);
    }
    former.swap(targets);
}

bool ReferrerIndex::update(const ChangedInstances& changed, std::span<const KpIfcSlot* const> left) {
    std::size_t count = m_targets.size() + left.size();
    changed.visitUncommitted([&count](const KpIfcEntityBase*) { ++count; });
    if (count > m_mostChanged) return false;
    Handles targets;
    for (const KpIfcSlot* slot : left) {
        targets.clear();
        refersTo(slot, targets);
    }
    changed.visitUncommitted([&](KpIfcEntityBase* instance) {
        collectTargets(*instance, targets);
        refersTo(instance->objectId().slot(), targets);
    });
    return true;
}

} // namespace KP_SDAI
