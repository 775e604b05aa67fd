#pragma once

#include "report/PageNodes.h"

#include <KpIfcCore/KpIfcHeader.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcReport.h>

#include <cstdint>
#include <string>

/// What a page shows without a script, as HTML.
namespace kpifc::page {

/// The name of the project, else that of the file.
std::string title(const KP_SDAI::KpIfcModel& model, const std::string& path);
/// File, schema and when it was written, in a line.
std::string subtitle(const KP_SDAI::KpIfcModel& model, const KP_SDAI::KpIfcHeader& header, const std::string& path,
                     std::uint64_t size);
/// The fields of the header as terms and descriptions.
std::string headerFacts(const KP_SDAI::KpIfcHeader& header);
/// Figures as terms and descriptions.
std::string counts(const KP_SDAI::KpIfcModel& model, const KP_SDAI::KpIfcReport& findings, std::uint64_t properties);
/// How many instances there are of which entity, as tables with bars: objects, then everything.
std::string contents(const KP_SDAI::KpIfcModel& model);
/// Findings by kind, the gravest first; each links to its instance. Throws Interrupted.
std::string findings(const KP_SDAI::KpIfcModel& model, const PageNodes& nodes, const KP_SDAI::KpIfcReport& findings);

} // namespace kpifc::page
