#include "Files.h"

#include "Interrupt.h"
#include "Output.h"
#include "Progress.h"

#include <fmt/format.h>

#include <algorithm>

using namespace KP_SDAI;

namespace kpifc {

KpIfcOpenOptions& openOptions() {
    static KpIfcOpenOptions options;
    return options;
}

std::optional<std::size_t>& threadCount() {
    static std::optional<std::size_t> count;
    return count;
}

std::string fileLabel(const std::string& path) {
    return path == kStandardStream ? "standard input" : path;
}

bool open(KpIfcFile& file, const std::string& path, const KpIfcOpenOptions& options) {
    Progress progress;
    file.progress(progress.function());
    KpIfcOpenOptions threaded = options;
    threaded.threads = static_cast<unsigned>(std::min<std::size_t>(threadCount().value_or(0), 1000));
    const bool isOpen = file.open(path == kStandardStream ? "/dev/stdin" : path, threaded) == KP::eOk;
    file.progress({});
    stopIfInterrupted();
    return isOpen;
}

static KpIfcFile openFile(const std::string& path, const KpIfcOpenOptions& options) {
    KpIfcFile file;
    if (!open(file, path, options)) {
        throw Failure(file.error());
    }
    return file;
}

KpIfcFile openFile(const std::string& path) {
    return openFile(path, openOptions());
}

KpIfcFile openFileLazily(const std::string& path) {
    KpIfcOpenOptions options = openOptions();
    options.lazy = true;
    return openFile(path, options);
}

std::string summary(const KpIfcReport& report) {
    std::string text;
    for (const KpIfcSeverity severity : {KpIfcSeverity::error, KpIfcSeverity::warning, KpIfcSeverity::note}) {
        if (const std::size_t count = report.count(severity)) {
            text += (text.empty() ? "" : ", ") + counted(count, severityName(severity));
        }
    }
    return text;
}

void tellProblems(const std::string& path, const KpIfcReport& report) {
    if (!report.isClean()) {
        tell(fmt::format("kpifc: {}: read with {}; kpifc info lists them", fileLabel(path), summary(report)));
    }
}

ExitCode exitCode(const KpIfcReport& report) {
    if (openOptions().strict && report.departures() != 0) {
        return kFailed;
    }
    return report.isClean() ? kFine : kProblems;
}

ExitCode forEachFile(const std::vector<std::string>& paths, const std::function<ExitCode(const std::string&)>& work) {
    ExitCode highest = kFine;
    for (const std::string& path : paths) {
        try {
            highest = std::max(highest, work(path));
        } catch (const Failure& failure) {
            if (paths.size() == 1) {
                throw;
            }
            tellFailure(failure.what());
            highest = kFailed;
        }
    }
    return highest;
}

std::string grouped(std::uint64_t count) {
    std::string digits = std::to_string(count);
    for (std::size_t i = digits.size(); i > 3; i -= 3) {
        digits.insert(i - 3, 1, ',');
    }
    return digits;
}

std::string counted(std::uint64_t count, std::string_view noun) {
    return fmt::format("{} {}{}", grouped(count), noun, count == 1 ? "" : "s");
}

} // namespace kpifc
