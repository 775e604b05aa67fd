#pragma once

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcReport.h>

#include <string>

namespace kpifc {

/// What was found in one file.
struct CheckedFile {
    std::string path;
    const KP_SDAI::KpIfcModel& model;
    KP_SDAI::KpIfcReport report;
};

/// A line for each finding that is listed, one for each kind of which there are more, and one that counts them.
std::string textOf(const CheckedFile& file);
/// One JSON object.
std::string jsonOf(const CheckedFile& file);
/// The same of a file that could not be read.
std::string jsonOfFailure(const std::string& path, const std::string& message);

} // namespace kpifc
