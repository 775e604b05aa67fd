#pragma once

#include <IFC2X3/Types.h>
#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcInverseMembers.h>
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

/// The inverse attributes that an entity declares.
template <std::size_t count>
class InverseMembers : public KP_SDAI::KpIfcInverseMembers {
public:
    static constexpr std::size_t kCount = count;
};

} // namespace IFC2X3
