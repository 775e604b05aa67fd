#include "Tree.h"

#include "Commands.h"
#include "FileLabels.h"
#include "Files.h"

#include <memory>
#include <string>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct TreeArguments {
    std::vector<std::string> files;
    TreeOptions options;
    bool asJson = false;
};

ExitCode tree(const TreeArguments& arguments) {
    FileLabels labels(arguments.files);
    Output output;
    const ExitCode code = forEachFile(arguments.files, [&](const std::string& path) {
        const KpIfcFile file = openFile(path);
        file.model()->mode(kReadOnly);
        const BuildingTree tree(*file.model());
        if (arguments.asJson) {
            printJson(tree, *file.model(), arguments.options, labels.opening(path), output);
        } else {
            output.text() += labels.heading(path);
            printText(tree, *file.model(), arguments.options, output);
        }
        tellProblems(path, file.report());
        return exitCode(file.report());
    });
    output.finish();
    return code;
}

} // namespace

Command treeCommand() {
    const auto arguments = std::make_shared<TreeArguments>();
    return {.name = "tree",
            .summary = "Show the structure of the building",
            .operands = {inputFile(&arguments->files)},
            .options = {{.name = "--depth",
                         .place = &arguments->options.depth,
                         .help = "Levels below the projects; all by default",
                         .value = "N"},
                        {.name = "--elements",
                         .place = &arguments->options.listElements,
                         .help = "Elements one by one, not counted by type"},
                        {.name = "--json",
                         .place = &arguments->asJson,
                         .help = "One JSON object a line for each file, for programs"}},
            .text = "Projects come first, each with the parts into which it is decomposed and the elements\n"
                    "that its spatial elements contain; then what is decomposed but part of no project;\n"
                    "then elements that are in neither. An instance that occurs again, because it is part\n"
                    "of several or of itself, is \"(shown above)\", also where --depth hides that place.\n"
                    "Order is that of the relations in the file; groups are sorted by the names of their\n"
                    "types. Elevations are in the units of the file.\n"
                    "\n"
                    "Keys of a JSON object:\n"
                    "  file                      which one, where there are several\n"
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
            .examples = {"kpifc tree house.ifc", "kpifc tree *.ifc --depth 3", "kpifc tree house.ifc --elements"},
            .run = [arguments] { return tree(*arguments); }};
}

} // namespace kpifc
