#include "Save.h"

#include "Files.h"
#include "Interrupt.h"
#include "Output.h"
#include "Progress.h"

#include <fmt/format.h>

#include <filesystem>

using namespace KP_SDAI;

namespace kpifc {

Option outputOption(std::string& path) {
    return {.name = "--output",
            .place = &path,
            .help = "File to write; not the input; - for standard output. Compressed where it ends in .gz, .ifczip or "
                    ".zip",
            .value = "FILE",
            .letter = 'o',
            .kind = WordKind::file};
}

std::vector<Option> saveOptions(SaveOptions& options) {
    return {outputOption(options.output),
            {.name = "--in-place",
             .place = &options.inPlace,
             .help = "Replace the input, when all is written",
             .excludes = "--output"},
            {.name = "--normalise",
             .place = &options.normalise,
             .help = "Write every record anew, uniform and sorted, without comments; else what is not changed is "
                     "copied byte for byte"}};
}

void checkTarget(const std::string& input, const SaveOptions& options) {
    if (!options.inPlace && options.output.empty()) {
        throw Failure("where to write? Expected -o FILE or --in-place");
    }
    if (options.inPlace && input == kStandardStream) {
        throw Failure("standard input cannot be replaced; expected -o FILE");
    }
    if (!options.inPlace && options.output == kStandardStream) {
        return;
    }
    std::error_code none; // files that are missing are not the same
    if (!options.inPlace && std::filesystem::equivalent(input, options.output, none)) {
        throw Failure(options.output + " is the input, which is overwritten with --in-place only");
    }
    if (options.inPlace && std::filesystem::exists(input, none) && !std::filesystem::is_regular_file(input, none)) {
        throw Failure(input + ": is no file that could be replaced");
    }
    const std::string& output = options.output;
    if (std::filesystem::is_directory(output, none)) {
        throw Failure(output + ": is a folder");
    }
    const std::filesystem::path folder = std::filesystem::path(output).parent_path();
    const auto kind = std::filesystem::status(folder, none).type();
    const bool isKnown = kind != std::filesystem::file_type::none; // else saving tells the system's reason
    if (!folder.empty() && isKnown && kind != std::filesystem::file_type::directory) {
        throw Failure(output + ": there is no folder " + folder.string());
    }
}

static void saveShowingProgress(KpIfcFile& file, const std::string& output, const KpIfcSaveOptions& options) {
    Progress progress;
    Output stream;
    file.progress(progress.function());
    const KP::ErrorStatus status =
        output == kStandardStream ? file.saveToMemory(stream.text(), options) : file.save(output, options);
    file.progress({});
    if (status == KP::eOk) {
        stream.finish();
        return; // a signal that came later comes too late
    }
    stopIfInterrupted();
    throw Failure(file.error());
}

ExitCode save(KpIfcFile& file, const std::string& input, const SaveOptions& options, const std::string& changes) {
    const std::string& output = options.inPlace ? input : options.output;
    saveShowingProgress(file, output, {.normalise = options.normalise});
    const KpIfcModel& model = *file.model();
    const std::string written = output == kStandardStream ? "standard output" : output;
    std::string line = fmt::format("{} -> {}: {}", fileLabel(input), written, counted(model.count(), "instance"));
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
        tell(fmt::format("{}: {}", written, entry.text()));
    }
    return file.writeReport().isClean() ? exitCode(file.report()) : kProblems;
}

} // namespace kpifc
