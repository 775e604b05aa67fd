#include "Diff.h"

#include "Commands.h"
#include "Files.h"
#include "Output.h"

#include <memory>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct DiffArguments {
    std::string a;
    std::string b;
    bool withoutHeader = false;
    bool asJson = false;
};

ExitCode diff(const DiffArguments& arguments) {
    KpIfcFile a = openFile(arguments.a);
    KpIfcFile b = openFile(arguments.b);
    tellProblems(arguments.a, a.report());
    tellProblems(arguments.b, b.report());
    FileDifferences differences(*a.model(), *b.model());
    if (!arguments.withoutHeader) {
        differences.header = headerDifferences(a.header(), b.header());
    }
    Output output;
    arguments.asJson ? writeJson(differences, output) : writeText(differences, output);
    output.finish();
    return differences.areNone() ? kFine : kDifferent;
}

} // namespace

void addDiff(CLI::App& app, Action& action) {
    const auto arguments = std::make_shared<DiffArguments>();
    CLI::App* command = app.add_subcommand("diff", "Tell what was added, removed and changed between two files");
    command->add_option("A", arguments->a, "STEP file")->required();
    command->add_option("B", arguments->b, "STEP file, the newer one")->required();
    command->add_flag("--no-header", arguments->withoutHeader, "Leave out the header");
    command->add_flag("--json", arguments->asJson, "One JSON object, for programs");
    command->footer("Instances are the same in both files where their GlobalIds are, or where their content\n"
                    "is; neither their names (#15) nor their order matter. What changed below an\n"
                    "instance that is the same is shown where it changed. A line for each difference,\n"
                    "then one that counts them:\n"
                    "  - #12 IfcDoor \"Door\"                      only A has it\n"
                    "  + #99 IfcWall \"Wall\"                      only B has it\n"
                    "  ~ #45 IfcCartesianPoint Coordinates: [0, 0] -> [1, 0]\n"
                    "  ~ header time_stamp: \"2026-01-02\" -> \"2026-01-03\"\n"
                    "An instance that B has under another name is shown with both: #45 (now #145).\n"
                    "Of sets and long lists those members are shown that the other one has not. Inverse\n"
                    "and derived attributes are not compared; records that are kept as text are, as\n"
                    "text.\n\n"
                    "Keys of the JSON object:\n"
                    "  removed[], added[]      id, type, globalId, name; keptText where it has no type\n"
                    "  changed[]               a, b (instance names), type, globalId, newType where the\n"
                    "                          entity is another one, attributes\n"
                    "  changed[].attributes[]  name, a, b as kpifc dump prints values, or\n"
                    "                          {\"keptText\":\"...\"}\n"
                    "  header[]                name, a[], b[]\n\n"
                    "Exit codes: 0 no differences; 1 differences; 2 could not be done. Problems of the\n"
                    "files are told on standard error.\n\n"
                    "Examples:\n"
                    "  kpifc diff house.ifc house_new.ifc\n"
                    "  kpifc diff house.ifc house_new.ifc --json --no-header");
    command->callback([arguments, &action] { action = [arguments] { return diff(*arguments); }; });
}

} // namespace kpifc
