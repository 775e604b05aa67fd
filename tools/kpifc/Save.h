#pragma once

#include "CommandLine.h"

#include <KpIfcCore/KpIfcFile.h>

#include <string>
#include <vector>

namespace kpifc {

/// Where and how a command writes what it read.
struct SaveOptions {
    std::string output;
    bool inPlace = false;
    bool normalise = false;
};

/// -o for a model.
Option outputOption(std::string& path);
/// -o, --in-place and --normalise; one of the first two must be given, which checkTarget() looks at.
std::vector<Option> saveOptions(SaveOptions& options);

/// Throws Failure where nothing says where to write, the input would be overwritten without --in-place, or the output
/// is a folder or stands in none. To be called before work is done in vain.
void checkTarget(const std::string& input, const SaveOptions& options);

/// Writes a file that was read from `input`. Tells in one line on standard error what was done, `changes` ("1 attribute
/// set") included, then what writing found. Shows progress. Throws Failure where it cannot be written, Interrupted.
ExitCode save(KP_SDAI::KpIfcFile& file, const std::string& input, const SaveOptions& options,
              const std::string& changes = "");

} // namespace kpifc
