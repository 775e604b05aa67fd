#pragma once

#include "ExtractionRules.h"

#include <KpIfcCore/KpIfcCopy.h>
#include <KpIfcCore/KpIfcModel.h>

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace kpifc {

/// Finds what belongs to a choice of instances, so that it is a model by itself: what they need, their parts and what
/// is said of them, what they are parts of up to the project, and the relations among all these.
class Extraction {
public:
    explicit Extraction(const KP_SDAI::KpIfcModel& model);

    /// Chooses an instance or a record kept as text. All are chosen before complete().
    void choose(const KP_SDAI::KpDbObjectId& handle) { enter(handle, Part::chosen); }
    void complete();

    /// Everything found, the chosen ones included, in no order that means anything.
    const KP_SDAI::KpIfcArray<KP_SDAI::KpDbObjectId>& found() const { return m_found; }
    bool contains(const KP_SDAI::KpDbObjectId& handle) const { return m_parts.count(handle.slot()) != 0; }

private:
    /// The part that something has; each implies those before it.
    enum class Part : std::uint8_t {
        none,
        along,  ///< comes along by a rule: goes without members that are not there
        needed, ///< referred to
        place,  ///< has something chosen in it, directly or not
        chosen
    };

    Part partOf(const KP_SDAI::KpDbObjectId& handle) const;
    bool isObject(const KP_SDAI::KpDbObjectId& handle) const;
    void enter(const KP_SDAI::KpDbObjectId& handle, Part part);
    void bringNeeded(const KP_SDAI::KpDbObjectId& handle);
    void consider(const KP_SDAI::KpDbObjectId& referrer, const KP_SDAI::KpDbObjectId& handle);
    void bringWholeOrParts(const KP_SDAI::KpDbObjectId& relation, const ExtractionRule& rule,
                           const KP_SDAI::KpDbObjectId& handle);
    bool comesAlong(const KP_SDAI::KpDbObjectId& referrer, const ExtractionRule& rule,
                    const KP_SDAI::KpDbObjectId& handle) const;
    bool isLinkThere(KP_SDAI::KpIfcEntityBase& relation) const;
    bool isMember(const KP_SDAI::KpIfcReference& reference, const ExtractionRule& rule) const;

    const KP_SDAI::KpIfcModel& m_model;
    mutable ExtractionRules m_rules;
    std::unordered_map<const KP_SDAI::KpIfcSlot*, Part> m_parts;
    KP_SDAI::KpIfcArray<KP_SDAI::KpDbObjectId> m_found;
    std::vector<KP_SDAI::KpDbObjectId> m_entered; ///< to be looked at
};

} // namespace kpifc
