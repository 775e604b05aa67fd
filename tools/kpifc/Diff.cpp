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

Command diffCommand() {
    const auto arguments = std::make_shared<DiffArguments>();
    return {.name = "diff",
            .summary = "Tell what was added, removed and changed between two files",
            .operands = {inputFile(&arguments->a, "A"),
                         {.name = "B",
                          .place = &arguments->b,
                          .help = "The newer one; - for standard input",
                          .kind = WordKind::file}},
            .options = {{.name = "--no-header", .place = &arguments->withoutHeader, .help = "Leave out the header"},
                        {.name = "--json", .place = &arguments->asJson, .help = "One JSON object, for programs"}},
            .text = "Instances are the same in both files where their GlobalIds are, or where their content\n"
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
                    "text.\n"
                    "\n"
                    "Keys of the JSON object:\n"
                    "  removed[], added[]      id, type, globalId, name; keptText where it has no type\n"
                    "  changed[]               a, b (instance names), type, globalId, newType where the\n"
                    "                          entity is another one, attributes\n"
                    "  changed[].attributes[]  name, a, b as kpifc dump prints values, or\n"
                    "                          {\"keptText\":\"...\"}\n"
                    "  header[]                name, a[], b[]",
            .exitCodes = {{0, "no differences"}, {1, "differences"}, {2, "could not be done"}},
            .examples = {"kpifc diff house.ifc house_new.ifc", "kpifc diff house.ifc house_new.ifc --json --no-header"},
            .run = [arguments] { return diff(*arguments); }};
}

} // namespace kpifc
