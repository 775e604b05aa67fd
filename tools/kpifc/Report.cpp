#include "Commands.h"
#include "Files.h"
#include "Interrupt.h"
#include "Output.h"
#include "Progress.h"
#include "Save.h"
#include "report/Page.h"

#include <KpIfcCore/KpIfcCheck.h>
#include <KpIfcCore/KpIfcWriteFile.h>

#include <fmt/format.h>

#include <memory>
#include <string>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct ReportArguments {
    std::string input;
    std::string output;
};

ExitCode report(const ReportArguments& arguments) {
    SaveOptions target;
    target.output = arguments.output;
    checkTarget(arguments.input, target);
    KpIfcFile file;
    if (!open(file, arguments.input)) {
        throw Failure(file.error());
    }
    file.model()->mode(kReadOnly);
    KpIfcReport findings;
    std::string page;
    std::string error;
    KP::ErrorStatus status = KP::eOk;
    {
        Progress progress;
        status = checkFile(file, findings, progress.function());
        stopIfInterrupted();
        page = page::pageOf(file, arguments.input, findings, progress.function());
        status = writeFile(arguments.output, page, progress.function(), error);
    }
    if (status != KP::eOk) {
        stopIfInterrupted();
        throw Failure(error);
    }
    const std::string found = summary(findings);
    constexpr double kMega = 1e6;
    tell(fmt::format("{} -> {}: {}, {:.1f} MB, {}", arguments.input, arguments.output,
                     counted(file.model()->count(), "instance"), static_cast<double>(page.size()) / kMega,
                     found.empty() ? "no findings" : found));
    return exitCode(findings);
}

} // namespace

void addReport(CLI::App& app, Action& action) {
    const auto arguments = std::make_shared<ReportArguments>();
    CLI::App* command = app.add_subcommand("report", "Write a page for the browser about a model");
    command->add_option("FILE", arguments->input, "STEP file to read")->required();
    command->add_option("-o,--output", arguments->output, "Page to write (HTML); not the input")->required();
    command->footer("One page that needs no other file and no network: the contents by entity, the structure\n"
                    "of the building to open and close, a search over names, GlobalIds, entities and\n"
                    "properties, every object with its attributes, properties, quantities, type, material\n"
                    "and relations as links, and what kpifc check finds. Shapes are left out. The address of\n"
                    "an instance on the page is its name: report.html#i15.\n\n"
                    "Exit codes: 0 nothing found, or notes only; 1 warnings or errors found; 2 could not be\n"
                    "done. The page is written in the first two cases.\n\n"
                    "Example:\n"
                    "  kpifc report house.ifc -o report.html");
    command->callback([arguments, &action] { action = [arguments] { return report(*arguments); }; });
}

} // namespace kpifc
