#include "Tree.h"

#include "Commands.h"
#include "Files.h"

#include <memory>
#include <string>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct TreeArguments {
    std::string file;
    TreeOptions options;
    bool asJson = false;
};

ExitCode tree(const TreeArguments& arguments) {
    const KpIfcFile file = openFile(arguments.file);
    file.model()->mode(kReadOnly);
    const BuildingTree tree(*file.model());
    Output output;
    (arguments.asJson ? printJson : printText)(tree, *file.model(), arguments.options, output);
    tellProblems(arguments.file, file.report());
    output.finish();
    return exitCode(file.report());
}

} // namespace

Command treeCommand() {
    const auto arguments = std::make_shared<TreeArguments>();
    return {.name = "tree",
            .summary = "Show the structure of the building",
            .operands = {{.name = "FILE",
                          .place = &arguments->file,
                          .help = "STEP file; - for standard input",
                          .kind = WordKind::file}},
            .options = {{.name = "--depth",
                         .place = &arguments->options.depth,
                         .help = "Levels below the projects; all by default",
                         .value = "N"},
                        {.name = "--elements",
                         .place = &arguments->options.listElements,
                         .help = "Elements one by one, not counted by type"},
                        {.name = "--json", .place = &arguments->asJson, .help = "One JSON object, for programs"}},
            .text = "Projects come first, each with the parts into which it is decomposed and the elements\n"
                    "that its spatial elements contain; then what is decomposed but part of no project;\n"
                    "then elements that are in neither. An instance that occurs again, because it is part\n"
                    "of several or of itself, is \"(shown above)\", also where --depth hides that place.\n"
                    "Order is that of the relations in the file; groups are sorted by the names of their\n"
                    "types. Elevations are in the units of the file.\n"
                    "\n"
                    "Keys of the JSON object:\n"
                    "  projects[], others[]      roots that are projects, and that no project leads to\n"
                    "    id, type                instance name, entity\n"
                    "    name, globalId          null where unset\n"
                    "    longName, elevation     only where set\n"
                    "    children[]              into what it is decomposed\n"
                    "    elements[]              what it contains\n"
                    "    shownAbove              true where it occurs again, then without the arrays\n"
                    "    below                   number of instances that --depth hides\n"
                    "  uncontained[]             type, count of elements that are contained in nothing\n"
                    "Groups of elements have type, count, and children[] where they have parts.",
            .examples = {"kpifc tree house.ifc", "kpifc tree house.ifc --depth 3", "kpifc tree house.ifc --elements"},
            .run = [arguments] { return tree(*arguments); }};
}

} // namespace kpifc
