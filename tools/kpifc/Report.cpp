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

void write(const std::string& page, const std::string& path, const KpIfcProgressFunction& progress) {
    if (path == kStandardStream) {
        Output output;
        output.text() = page;
        return output.finish();
    }
    std::string error;
    if (writeFile(path, page, progress, error) != KP::eOk) {
        stopIfInterrupted();
        throw Failure(error);
    }
}

ExitCode report(const ReportArguments& arguments) {
    SaveOptions target;
    target.output = arguments.output;
    checkTarget(arguments.input, target);
    KpIfcFile file;
    if (!open(file, arguments.input)) {
        throw Failure(file.error());
    }
    file.model()->mode(kReadOnly);
    const std::string input = fileLabel(arguments.input);
    KpIfcReport findings;
    std::string page;
    {
        Progress progress;
        checkFile(file, findings, progress.function());
        stopIfInterrupted();
        page = page::pageOf(file, input, findings, progress.function());
        write(page, arguments.output, progress.function());
    }
    const std::string found = summary(findings);
    constexpr double kMega = 1e6;
    tell(fmt::format("{} -> {}: {}, {:.1f} MB, {}", input,
                     arguments.output == kStandardStream ? "standard output" : arguments.output,
                     counted(file.model()->count(), "instance"), static_cast<double>(page.size()) / kMega,
                     found.empty() ? "no findings" : found));
    return exitCode(findings);
}

} // namespace

Command reportCommand() {
    const auto arguments = std::make_shared<ReportArguments>();
    return {.name = "report",
            .summary = "Write a page for the browser about a model",
            .operands = {inputFile(&arguments->input)},
            .options = {{.name = "--output",
                         .place = &arguments->output,
                         .help = "Page to write, HTML; - for standard output",
                         .value = "PAGE",
                         .letter = 'o',
                         .kind = WordKind::file,
                         .isRequired = true}},
            .text = "One page that needs no other file and no network: the contents by entity, the structure\n"
                    "of the building to open and close, a search over names, GlobalIds, entities and\n"
                    "properties, every object with its attributes, properties, quantities, type, material\n"
                    "and relations as links, and what kpifc check finds. Shapes are left out. The address of\n"
                    "an instance on the page is its name: report.html#i15.",
            .exitCodes = {{0, "nothing found, or notes only"},
                          {1, "warnings or errors found; the page tells them"},
                          {2, "could not be done"}},
            .examples = {"kpifc report house.ifc -o report.html"},
            .run = [arguments] { return report(*arguments); }};
}

} // namespace kpifc
