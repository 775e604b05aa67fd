#pragma once

#include "Failure.h"

#include <KpIfcCore/KpIfcFile.h>

#include <string>

namespace kpifc {

/// Throws Failure where both paths are the same file, by whatever names.
void refuseToOverwrite(const std::string& input, const std::string& output);

/// Writes a file that was read from `input`. Tells in one line on standard error what was done, `changes` ("1 attribute
/// set") included, then what writing found. Throws Failure where it cannot be written.
ExitCode save(KP_SDAI::KpIfcFile& file, const std::string& input, const std::string& output,
              const std::string& changes = "");

} // namespace kpifc
