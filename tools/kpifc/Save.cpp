#include "Save.h"

#include "Files.h"
#include "Output.h"

#include <fmt/format.h>

#include <filesystem>

using namespace KP_SDAI;

namespace kpifc {

void refuseToOverwrite(const std::string& input, const std::string& output) {
    std::error_code none; // files that are missing are not the same
    if (std::filesystem::equivalent(input, output, none)) {
        throw Failure(output + " is the input, which is not overwritten");
    }
}

ExitCode save(KpIfcFile& file, const std::string& input, const std::string& output, const std::string& changes) {
    if (file.save(output) != KP::eOk) {
        throw Failure(file.error());
    }
    const KpIfcModel& model = *file.model();
    std::string line = fmt::format("{} -> {}: {}", input, output, counted(model.count(), "instance"));
    if (!changes.empty()) {
        line += ", " + changes;
    }
    if (model.keptRecordCount()) {
        line += fmt::format(", {} kept as text", counted(model.keptRecordCount(), "record"));
    }
    if (const std::string problems = summary(file.report()); !problems.empty()) {
        line += fmt::format("; read with {}", problems);
    }
    if (const std::string problems = summary(file.writeReport()); !problems.empty()) {
        line += fmt::format("; written with {}", problems);
    }
    tell(line);
    for (const KpIfcReportEntry& entry : file.writeReport().entries()) {
        tell(fmt::format("{}: {}", output, entry.text()));
    }
    return file.writeReport().isClean() ? exitCode(file.report()) : kProblems;
}

} // namespace kpifc
