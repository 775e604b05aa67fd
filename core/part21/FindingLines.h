#pragma once

#include "part21/ByteSource.h"
#include "part21/ProgressMeter.h"
#include "part21/SourceLayout.h"

#include <KpIfcCore/KpIfcReport.h>

#include <vector>

namespace KP_SDAI {

/// Sorts findings by their places and gives them their lines and columns. For that some of the source is read again,
/// where its bytes lie open, else all of it: only where there are findings.
void locateFindings(std::vector<KpIfcReportEntry>& findings, ByteSource& source, const SourceLayout& layout,
                    ProgressMeter& progress);

} // namespace KP_SDAI
