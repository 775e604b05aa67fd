#pragma once

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcModel.h>

#include <string>
#include <vector>

namespace kpifc {

/// For people: entity, values, inverse attributes and referrers of an instance, or the text of a kept record.
/// `isWhole`: whether long lists are shown to their ends. `path` is that of the file, for what may be asked next.
std::string textOf(const KP_SDAI::KpIfcModel& model, const KP_SDAI::KpDbObjectId& handle, bool isWhole,
                   const std::string& path);
/// For programs: the same as one JSON object in a line, whole, which begins with `opening` (FileLabels).
std::string jsonOf(const KP_SDAI::KpIfcModel& model, const KP_SDAI::KpDbObjectId& handle, const std::string& opening);

/// The supertypes of an entity, the direct one first.
std::vector<std::string> supertypesOf(const KP_SDAI::KpIfcEntityType& entity);

} // namespace kpifc
