#pragma once

#include <KpIfcCore/KpIfcCopy.h>
#include <KpIfcCore/KpIfcModel.h>

#include "model/SlotMap.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace KP_SDAI {

/// Where in a target the copies of a source's instances and records are, and what becomes of references to them.
class CopyMap {
public:
    CopyMap(const KpIfcModel& s, KpIfcModel& t) : source(s), target(t) {}

    bool isFollowed(const KpIfcReference& reference) const {
        return reference.to.isDefined() && reference.to.model() == &source && (!filter || filter(reference));
    }
    /// What a copy holds in place of a reference; null where it is not followed.
    KpDbObjectId copyOf(const KpIfcReference& reference) {
        return isFollowed(reference) ? KpDbObjectId(slots[reference.to.slot()]) : KpDbObjectId();
    }
    /// Writes the names of the target into source text of `from`. False where a reference is not followed; $ stands in
    /// its place.
    bool rename(const KpDbObjectId& from, const KpIfcAttributeFacts* attribute, const std::string& text,
                std::string& renamed);

    /// True where a text that was copied uses a name that is nothing's.
    bool isUsedByText(std::uint64_t name) const { return m_usedByTexts.count(name) != 0; }
    /// The highest name that the target or a text copied into it uses.
    std::uint64_t highestName() const;

    const KpIfcModel& source;
    KpIfcModel& target;
    KpIfcCopier::Filter filter;
    SlotMap<KpIfcSlot*> slots; ///< of the target by those of the source

private:
    std::uint64_t nameForNothing(std::uint64_t name);

    std::unordered_map<std::uint64_t, std::uint64_t> m_namesOfNothing; ///< in the source, and in the target
    std::unordered_set<std::uint64_t> m_usedByTexts;
    std::uint64_t m_highestUsedByTexts = 0;
};

} // namespace KP_SDAI
