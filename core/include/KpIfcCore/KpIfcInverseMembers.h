#pragma once

#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcSetAggr.h>

#include <cstddef>

namespace KP_SDAI {

class KpIfcInverseSet;
struct KpIfcInverseFacts;

/// The inverse attributes that one entity declares, as a member of its instances: for each the set of the instances
/// that refer here, in ascending order. One pointer, null until the first referrer is entered, because most instances
/// have none.
///
/// The sets lie in the model's memory. They belong to the instance's place in its model: they are not copied with its
/// values, and an instance of no model has none. The runtime fills them when a file is read and keeps them true when
/// referrers change (KpIfcModel::commit()).
class KPIFCCORE_EXPORT KpIfcInverseMembers {
public:
    KpIfcInverseMembers() = default;
    KpIfcInverseMembers(const KpIfcInverseMembers&) {}
    KpIfcInverseMembers& operator=(const KpIfcInverseMembers&) { return *this; }

    /// The instances that refer to `owner`, whose member this is; nil where none ever did. `index` counts the entity's
    /// own inverse attributes. Commits what is not committed in the model; a model at rest is only read. Good until an
    /// instance of the model changes.
    const KpIfcSetAggr<KpDbObjectId>& read(const KpIfcEntityBase& owner, std::size_t index) const;
    /// The same as of the last commit, and without a look at the model.
    const KpIfcSetAggr<KpDbObjectId>& set(std::size_t index) const;
    /// What read() gives, copied.
    void copyTo(const KpIfcEntityBase& owner, std::size_t index, KpIfcArray<KpDbObjectId>& values) const {
        values.clear();
        read(owner, index).copyTo(values);
    }

    /// Enters `referrer` in an inverse attribute of `target`, where it is not there yet. Does nothing unless both are
    /// instances of one model. Marks nothing as changed.
    static void enter(KpIfcEntityBase& target, const KpIfcInverseFacts& inverse, KpIfcEntityBase& referrer);

private:
    friend class Inverses;
    KpIfcInverseSet* m_sets = nullptr; ///< one for each inverse attribute
};

} // namespace KP_SDAI
