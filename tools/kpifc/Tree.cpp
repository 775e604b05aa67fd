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

void addTree(CLI::App& app, Action& action) {
    const auto arguments = std::make_shared<TreeArguments>();
    CLI::App* command = app.add_subcommand("tree", "Show the structure of the building");
    command->add_option("FILE", arguments->file, "STEP file")->required();
    command->add_option("--depth", arguments->options.depth, "Levels below the projects; all by default")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber);
    command->add_flag("--elements", arguments->options.listElements, "Elements one by one, not counted by type");
    command->add_flag("--json", arguments->asJson, "One JSON object, for programs");
    command->footer("Projects come first, each with the parts into which it is decomposed and the elements\n"
                    "that its spatial elements contain; then what is decomposed but part of no project;\n"
                    "then elements that are in neither. An instance that occurs again, because it is part\n"
                    "of several or of itself, is \"(shown above)\", also where --depth hides that place.\n"
                    "Order is that of the relations in the file; groups are sorted by the names of their\n"
                    "types. Elevations are in the units of the file.\n\n"
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
                    "Groups of elements have type, count, and children[] where they have parts.\n\n"
                    "Examples:\n"
                    "  kpifc tree house.ifc\n"
                    "  kpifc tree house.ifc --depth 3\n"
                    "  kpifc tree house.ifc --elements");
    command->callback([arguments, &action] { action = [arguments] { return tree(*arguments); }; });
}

} // namespace kpifc
