#include "Check.h"

#include "Commands.h"
#include "Files.h"
#include "Interrupt.h"
#include "Output.h"
#include "Progress.h"

#include <KpIfcCore/KpIfcCheck.h>

#include <algorithm>
#include <memory>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct CheckArguments {
    std::vector<std::string> paths;
    bool listsAll = false;
    bool asJson = false;
};

ExitCode checkOne(const std::string& path, const CheckArguments& arguments, std::string& text) {
    const std::size_t listed = arguments.listsAll ? KpIfcReport::kAll : KpIfcReport::kListedPerKind;
    KpIfcFile file;
    file.listedPerKind(listed);
    if (!open(file, path)) {
        tellFailure(file.error());
        if (arguments.asJson) {
            text += jsonOfFailure(path, file.error());
        }
        return kFailed;
    }
    CheckedFile checked{.path = fileLabel(path), .model = *file.model(), .report = KpIfcReport(listed)};
    {
        Progress progress;
        checkFile(file, checked.report, progress.function());
    }
    stopIfInterrupted();
    text += arguments.asJson ? jsonOf(checked) : textOf(checked);
    return exitCode(checked.report);
}

ExitCode check(const CheckArguments& arguments) {
    Output output;
    ExitCode code = kFine;
    std::string_view separator = "{\"files\":[\n";
    for (const std::string& path : arguments.paths) {
        if (arguments.asJson) {
            output.text() += separator;
            separator = ",\n";
        }
        code = std::max(code, checkOne(path, arguments, output.text()));
        output.passOn();
    }
    if (arguments.asJson) {
        output.text() += "\n]}\n";
    }
    output.finish();
    return code;
}

} // namespace

Command checkCommand() {
    const auto arguments = std::make_shared<CheckArguments>();
    return {.name = "check",
            .summary = "Tell what in files is not as the schema declares it",
            .operands = {inputFile(&arguments->paths)},
            .options = {{.name = "--all",
                         .place = &arguments->listsAll,
                         .help = "List all findings, not the first hundred of each kind"},
                        {.name = "--json", .place = &arguments->asJson, .help = "One JSON object, for programs"}},
            .text = "A line for each finding, then one for each file that counts them:\n"
                    "  house.ifc: warning: #34 IfcWall \"Wall 1\" OwnerHistory: no value, expected\n"
                    "  IfcOwnerHistory [missing-value]\n"
                    "with LINE:COLUMN behind the file's name for what reading found.\n"
                    "\n"
                    "Checked is what the schema declares: mandatory attributes, entities of references\n"
                    "and selects, literals, sizes of lists and sets and members that stand twice in\n"
                    "them, widths, how many instances refer to one (inverse attributes), uniqueness,\n"
                    "abstract entities; form and uniqueness of GlobalIds; the header section; and all\n"
                    "that kpifc info tells. Rules that the schema writes as expressions (WHERE) are not\n"
                    "checked.\n"
                    "\n"
                    "Kinds that only this command finds (kpifc info has the others):\n"
                    "  missing-value    no value where the schema wants one\n"
                    "  aggregate-size   fewer or more elements than allowed\n"
                    "  repeated-member  the same element twice in a set or a list of unique ones\n"
                    "  too-long         more bits than allowed\n"
                    "  inverse-count    fewer or more referrers than allowed\n"
                    "  not-unique       values that another instance has, too\n"
                    "  global-id        not the form of a GlobalId\n"
                    "\n"
                    "Keys of the JSON object:\n"
                    "  files[]             file, schema, instances, errors, warnings, notes: numbers;\n"
                    "                      error instead where it could not be read\n"
                    "  files[].codes       code: number\n"
                    "  files[].findings[]  as of kpifc info, with name, that of the instance",
            .exitCodes = {{0, "nothing found, or notes only"},
                          {1, "warnings or errors found"},
                          {2, "a file could not be read"}},
            .examples = {"kpifc check house.ifc", "kpifc check *.ifc --all | grep missing-value"},
            .run = [arguments] { return check(*arguments); }};
}

} // namespace kpifc
