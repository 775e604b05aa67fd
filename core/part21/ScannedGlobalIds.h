#pragma once

#include <KpIfcCore/KpDbObjectId.h>

#include "model/InstanceTable.h"

#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

namespace KP_SDAI {

/// The GlobalIds of records that were found but not read, by hashes: 8 bytes each.
class ScannedGlobalIds {
public:
    /// Notes a record of a name below 2^32 whose first parameter, which begins at `parameter`, is a GlobalId. Zeros
    /// stand behind the end of what can be looked at.
    void note(std::uint64_t name, const char* parameter);
    /// All that may have a GlobalId; those that have it are among them.
    std::vector<KpDbObjectId> mayHave(std::string_view globalId, const InstanceTable& table) const;

private:
    struct Noted {
        std::uint32_t hash;
        std::uint32_t name;
    };
    std::deque<Noted> m_noted;
    std::vector<std::uint32_t> m_unusual; ///< names of those whose GlobalId only reading can tell
};

} // namespace KP_SDAI
