#pragma once

#include <KpIfcCore/KpDbObjectId.h>

#include <string_view>
#include <vector>

namespace KP_SDAI {

/// The GlobalIds of records that were found but not read, by hashes: 16 bytes each.
class ScannedGlobalIds {
public:
    /// Notes a record whose first parameter, which begins at `parameter`, is a GlobalId. Zeros stand behind the end of
    /// what can be looked at.
    void note(KpIfcSlot& slot, const char* parameter);
    /// All that may have a GlobalId; those that have it are among them.
    std::vector<KpDbObjectId> mayHave(std::string_view globalId) const;

private:
    struct Noted {
        std::uint64_t hash;
        KpIfcSlot* slot;
    };
    std::vector<Noted> m_noted;
    std::vector<KpIfcSlot*> m_unusual; ///< whose GlobalId only reading can tell
};

} // namespace KP_SDAI
