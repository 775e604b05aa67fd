#include "model/CopyMap.h"

#include "model/HeldReferences.h"

#include <algorithm>

namespace KP_SDAI {

bool CopyMap::rename(const KpDbObjectId& from, const KpIfcAttributeFacts* attribute, const std::string& text,
                     std::string& renamed) {
    const auto nameText = [](std::uint64_t name) { return '#' + std::to_string(name); };
    bool isComplete = true;
    bool isOwnName = from.openObject() == nullptr; // a record's text begins with it
    renamed = withReferencesRenamed(text, [&](std::uint64_t name) {
        if (isOwnName) {
            isOwnName = false;
            return nameText(KpDbObjectId(slots[from.slot()]).instanceName());
        }
        const KpDbObjectId to = source.find(name);
        if (to.isNull()) return nameText(nameForNothing(name));
        const KpDbObjectId copy = copyOf({from, attribute, to});
        isComplete &= !copy.isNull();
        return copy.isNull() ? std::string("$") : nameText(copy.instanceName());
    });
    return isComplete;
}

std::uint64_t CopyMap::highestName() const {
    return std::max(target.highestName(), m_highestUsedByTexts);
}

std::uint64_t CopyMap::nameForNothing(std::uint64_t name) {
    std::uint64_t& copy = m_namesOfNothing[name];
    if (copy != 0) return copy;
    const bool isFree = target.find(name).isNull() && !isUsedByText(name);
    copy = isFree || highestName() == UINT64_MAX ? name : highestName() + 1;
    m_usedByTexts.insert(copy);
    m_highestUsedByTexts = std::max(m_highestUsedByTexts, copy);
    return copy;
}

} // namespace KP_SDAI
