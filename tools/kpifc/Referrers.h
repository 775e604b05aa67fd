#pragma once

#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpIfcModel.h>

#include <map>
#include <string>
#include <vector>

namespace kpifc {

/// The instances that refer to one, by the attribute through which they do, such as
/// "IfcRelDefinesByType.RelatedObjects"; each list is ascending. An instance that does through several attributes is in
/// several lists.
using Referrers = std::map<std::string, std::vector<KP_SDAI::KpDbObjectId>>;

Referrers referrersOf(const KP_SDAI::KpIfcModel& model, const KP_SDAI::KpDbObjectId& target);

} // namespace kpifc
