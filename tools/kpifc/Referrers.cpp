#include "Referrers.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcReferences.h>

using namespace KP_SDAI;

namespace kpifc {

Referrers referrersOf(const KpIfcModel& model, const KpDbObjectId& target) {
    Referrers referrers;
    for (const KpDbObjectId& handle : model.referrers(target)) {
        KpIfcEntityBase& referrer = *handle.openObject();
        const KpIfcEntityType& type = *referrer.getInstanceType();
        for (const KpIfcAttributeFacts* row : type.recordFields()) {
            bool refers = false;
            visitReferences(referrer, *row, [&](const KpDbObjectId& each) { refers |= each == target; });
            if (refers) {
                referrers[std::string(type.displayName()) + '.' + row->name].push_back(handle);
            }
        }
    }
    return referrers;
}

} // namespace kpifc
