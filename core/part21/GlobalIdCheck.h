#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcReport.h>

#include <cstdint>
#include <vector>

namespace KP_SDAI {

/// Finds GlobalIds that stand twice in a file.
class GlobalIdCheck {
public:
    /// Notes an instance that was read from `offset`, if it has a GlobalId.
    void note(const KpIfcEntityType& type, KpIfcEntityBase& instance, std::uint64_t offset);
    /// Adds what `later` has noted, which comes later in the file, and empties it.
    void append(GlobalIdCheck& later) {
        m_noted.insert(m_noted.end(), later.m_noted.begin(), later.m_noted.end());
        later.m_noted.clear();
    }
    /// Reports all but the first of each GlobalId, and forgets what was noted. Instances that are no longer the ones of
    /// their names do not count.
    void look(KpIfcReport& report);

private:
    struct Noted {
        KpIfcEntityBase* instance;
        std::uint64_t offset;
        std::uint64_t hash; ///< of the GlobalId
    };
    /// The first that is noted with the GlobalId of `one`; null, and noted as the first from now on, where none is.
    const Noted* firstOf(const Noted& one, std::vector<const Noted*>& table) const;

    std::vector<Noted> m_noted;
};

} // namespace KP_SDAI
