#pragma once

#include "report/PageNodes.h"

#include <KpIfcCore/KpIfcModel.h>

namespace kpifc::page {

/// The object or type to which an instance belongs, such as the wall whose shape has a point: the nearest one along
/// those that refer to it. Null where it is one itself, where there is none, and where so much shares the instance that
/// naming one would mislead.
const KP_SDAI::KpIfcEntityBase* ownerOf(const KP_SDAI::KpIfcModel& model, const PageNodes& nodes,
                                        const KP_SDAI::KpDbObjectId& handle);

} // namespace kpifc::page
