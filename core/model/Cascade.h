#pragma once

#include "model/LostReferences.h"
#include "model/ReferrerIndex.h"
#include "model/TextReferences.h"

#include <KpIfcCore/KpIfcReferences.h>

#include <unordered_map>
#include <vector>

namespace KP_SDAI {

class KpIfcSchema;

/// Finds what is erased together with some instances: what only they used, and what means nothing without them. See
/// KpIfcErasePolicy::cascade, which says what that is.
class Cascade {
public:
    Cascade(const KpIfcSchema& schema, const ReferrerIndex& referrers, const TextReferences& texts, Leaving& leaving);

    /// Adds to what is to be erased what goes along with `wave`, which is among it.
    void run(std::vector<KpDbObjectId> wave);

private:
    struct Attribute {
        const KpIfcEntityType* owner = nullptr;
        const KpIfcAttributeFacts* row = nullptr;

        bool isOf(const KpIfcEntityBase& instance, const KpIfcAttributeFacts& other) const {
            return row == &other && instance.isKindOf(owner);
        }
    };
    /// What the leaving ones refer to, and whether it is known to stay.
    using Used = std::unordered_map<KpIfcSlot*, bool>;

    bool isHosting(const KpIfcEntityBase& instance, const KpIfcAttributeFacts& row) const;
    bool isTelling(const KpIfcEntityBase& instance, const KpIfcAttributeFacts& row) const;
    bool isObject(const KpIfcEntityBase& instance) const { return m_object && instance.isKindOf(m_object); }

    /// True where a reference from one instance to another keeps the other.
    bool keeps(KpIfcEntityBase& referrer, const KpIfcEntityBase& target) const;
    /// The same of a reference through an attribute.
    bool keeps(const KpIfcEntityBase& referrer, const KpIfcAttributeFacts& row, const KpIfcEntityBase& target) const;
    /// True where something that stays keeps an instance; what `ignored` has does not count.
    bool isKept(KpIfcEntityBase& instance, const Used* ignored) const;
    /// True where an instance means nothing without what it refers to and is to be erased.
    bool losesMeaning(KpIfcEntityBase& instance) const;
    /// Notes what an instance refers to and may go with it.
    void addUsed(KpIfcEntityBase& instance, Used& used, std::vector<KpIfcEntityBase*>& found) const;

    const ReferrerIndex& m_referrers;
    const TextReferences& m_texts;
    Leaving& m_leaving;
    const KpIfcEntityType* m_object;
    const KpIfcEntityType* m_feature;
    const KpIfcEntityType* m_relation;
    std::vector<Attribute> m_hosting; ///< of relations, to the feature that goes with its host
    std::vector<Attribute> m_telling; ///< to what the instance tells of, which it does not keep
};

} // namespace KP_SDAI
