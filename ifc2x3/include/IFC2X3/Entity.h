#pragma once

#include <IFC2X3/Types.h>
#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcListAggr.h>
#include <KpIfcCore/KpIfcSetAggr.h>

#include <cstddef>

namespace IFC2X3 {

using KP_SDAI::as;
using KP_SDAI::KpIfcListAggr;
using KP_SDAI::KpIfcListAggrBounded;
using KP_SDAI::KpIfcSetAggr;
using KP_SDAI::KpIfcSetAggrBounded;

/// What a text attribute holds before it is given a value.
inline KpAnsiString unsetText() {
    return KpAnsiString::unset();
}

/// The inverse attributes that an entity declares: one pointer, null until the first referrer is entered, because most
/// instances have none. They belong to the instance's place in its model and are not copied with its values.
template <std::size_t count>
class InverseMembers {
public:
    InverseMembers() = default;
    InverseMembers(const InverseMembers&) {}
    InverseMembers& operator=(const InverseMembers&) { return *this; }

    /// Fills `values` with the instances that refer here; `index` counts the entity's own inverse attributes.
    void copyTo(std::size_t index, KpIfcArray<KpDbObjectId>& values) const {
        values.clear();
        if (m_sets) m_sets[index].copyTo(values);
    }

private:
    KpIfcSetAggr<KpDbObjectId>* m_sets = nullptr;
};

} // namespace IFC2X3
