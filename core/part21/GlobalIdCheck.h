#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcReport.h>

#include "part21/StoredParts.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace KP_SDAI {

/// Finds GlobalIds that stand twice in a file.
class GlobalIdCheck {
public:
    /// What was noted of a GlobalId.
    struct Noted {
        static constexpr unsigned kHashBits = 24;

        KpIfcEntityBase* instance;
        std::uint64_t offsetAndHash; ///< the hash is that of the GlobalId

        std::uint64_t offset() const { return offsetAndHash >> kHashBits; }
        std::size_t hash() const { return offsetAndHash & ((std::size_t{1} << kHashBits) - 1); }
    };

    explicit GlobalIdCheck(BlockPool& pool) : m_pool(pool), m_noted(pool) {}
    /// Notes an instance that was read from `offset`, if it has a GlobalId.
    static void note(const KpIfcEntityType& type, KpIfcEntityBase& instance, std::uint64_t offset,
                     std::vector<Noted>& noted);
    /// Adds what was noted of a part that comes behind those before.
    void add(const std::vector<Noted>& noted) { m_noted.add(noted); }
    /// Reports all but the first of each GlobalId, and forgets what was noted. Instances that are no longer the ones of
    /// their names do not count.
    void look(KpIfcReport& report);

private:
    /// The first that is noted with the GlobalId of `one`; null, and noted as the first from now on, where none is.
    static const Noted* firstOf(const Noted& one, std::span<const Noted*> table);

    template <class Visit>
    void visitShare(std::size_t share, std::size_t shares, Visit visit) const;

    BlockPool& m_pool;
    StoredParts<Noted> m_noted;
};

} // namespace KP_SDAI
