#pragma once

#include "Failure.h"

#include <KpIfcCore/KpIfcFile.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kpifc {

/// How openFile() reads from now on, and what exitCode() makes of departures from the standard.
KP_SDAI::KpIfcOpenOptions& openOptions();

/// With how many threads files are read; without a value with as many as there are cores.
std::optional<std::size_t>& threadCount();

/// What stands for standard input and output where a file is named.
inline constexpr std::string_view kStandardStream = "-";
/// A path for messages: what names a stream is spelled out.
std::string fileLabel(const std::string& path);

/// Opens a file, or standard input, showing progress; false, with error(), where it cannot be read. Throws Interrupted.
bool open(KP_SDAI::KpIfcFile& file, const std::string& path, const KP_SDAI::KpIfcOpenOptions& options = {});
/// The same, by openOptions(); throws Failure where it cannot be read.
KP_SDAI::KpIfcFile openFile(const std::string& path);
/// The same for those who look at little of it: lazily, but where reading is strict. The report then is about what they
/// look at.
KP_SDAI::KpIfcFile openFileLazily(const std::string& path);

/// How many findings of each severity there are: "1 error, 3 warnings"; empty where there are none.
std::string summary(const KP_SDAI::KpIfcReport& report);

/// Tells on standard error, in one line, that a file was read with problems; nothing where it was not.
void tellProblems(const std::string& path, const KP_SDAI::KpIfcReport& report);

ExitCode exitCode(const KP_SDAI::KpIfcReport& report);

/// Does something for each file and returns the highest code. Where there are several, the Failure of one is told and
/// does not keep the others from being done.
ExitCode forEachFile(const std::vector<std::string>& paths, const std::function<ExitCode(const std::string&)>& work);

/// A count with its thousands set apart: "301,949".
std::string grouped(std::uint64_t count);
/// A count and what is counted: "1 record", "2,000 records".
std::string counted(std::uint64_t count, std::string_view noun);

} // namespace kpifc
