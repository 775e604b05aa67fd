#include "entities/EntityClass.h"

#include <KpIfcCore/KpIfcInverseMembers.h>
#include <KpIfcCore/KpIfcReferences.h>

namespace IFC2X3 {

void enterCounterParts(KpIfcEntityBase& referrer, std::span<const KpIfcCounterpartFacts> rows) {
    KP_SDAI::visitCounterParts(referrer, rows, [&](KpIfcEntityBase& target, const KpIfcInverseFacts& inverse) {
        KP_SDAI::KpIfcInverseMembers::enter(target, inverse, referrer);
    });
}

} // namespace IFC2X3
