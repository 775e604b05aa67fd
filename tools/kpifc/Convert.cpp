#include "Commands.h"
#include "Files.h"
#include "Output.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>
#include <string>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct ConvertArguments {
    std::string input;
    std::string output;
};

ExitCode convert(const ConvertArguments& arguments) {
    std::error_code none; // files that are missing are not the same
    if (std::filesystem::equivalent(arguments.input, arguments.output, none)) {
        throw Failure(arguments.output + " is the input, which is not overwritten");
    }
    KpIfcFile file = openFile(arguments.input);
    if (file.save(arguments.output) != KP::eOk) {
        throw Failure(file.error());
    }

    const KpIfcModel& model = *file.model();
    std::string line =
        fmt::format("{} -> {}: {}", arguments.input, arguments.output, counted(model.count(), "instance"));
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
        tell(fmt::format("{}: {}", arguments.output, entry.text()));
    }
    return file.writeReport().isClean() ? exitCode(file.report()) : kProblems;
}

} // namespace

void addConvert(CLI::App& app, Action& action) {
    const auto arguments = std::make_shared<ConvertArguments>();
    CLI::App* command = app.add_subcommand("convert", "Read a file and write it anew");
    command->add_option("IN", arguments->input, "STEP file to read")->required();
    command->add_option("-o,--output", arguments->output, "File to write; not the input")->required();
    command->footer("Everything that was read is written, also what could not be understood. What was\n"
                    "done is told in one line on standard error.\n\n"
                    "Example:\n"
                    "  kpifc convert house.ifc -o house_new.ifc");
    command->callback([arguments, &action] { action = [arguments] { return convert(*arguments); }; });
}

} // namespace kpifc
