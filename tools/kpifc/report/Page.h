#pragma once

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcProgress.h>
#include <KpIfcCore/KpIfcReport.h>

#include <string>

namespace kpifc::page {

/// One page of HTML that needs nothing beside it: what is in a file, the structure of the building, its elements with
/// all that is said of them, and findings. `path` is what the file is called. `progress` is told of every instance that
/// is written. Throws Interrupted.
std::string pageOf(KP_SDAI::KpIfcFile& file, const std::string& path, const KP_SDAI::KpIfcReport& findings,
                   const KP_SDAI::KpIfcProgressFunction& progress);

} // namespace kpifc::page
