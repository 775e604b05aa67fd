#include "Show.h"

#include "Commands.h"
#include "Files.h"
#include "Output.h"
#include "Targets.h"

#include <memory>

using namespace KP_SDAI;

namespace kpifc {

std::vector<std::string> supertypesOf(const KpIfcEntityType& entity) {
    std::vector<std::string> names;
    for (const KpIfcEntityType* type = entity.superType(); type; type = type->superType()) {
        names.emplace_back(type->displayName());
    }
    return names;
}

namespace {

struct ShowArguments {
    std::string file;
    std::string name;
    bool isWhole = false;
    bool asJson = false;
};

ExitCode show(const ShowArguments& arguments) {
    const KpIfcFile file = openFile(arguments.file);
    KpIfcModel& model = *file.model();
    model.mode(kReadOnly);
    const KpDbObjectId handle = Targets(model).handle(trimmed(arguments.name));
    Output output;
    output.text() = arguments.asJson ? jsonOf(model, handle) : textOf(model, handle, arguments.isWhole, arguments.file);
    tellProblems(arguments.file, file.report());
    output.finish();
    return exitCode(file.report());
}

} // namespace

Command showCommand() {
    const auto arguments = std::make_shared<ShowArguments>();
    return {.name = "show",
            .summary = "Show an instance and what refers to it",
            .operands = {{.name = "FILE",
                          .place = &arguments->file,
                          .help = "STEP file; - for standard input",
                          .kind = WordKind::file},
                         {.name = "NAME", .place = &arguments->name, .help = "#15, or a GlobalId"}},
            .options = {{.name = "--all", .place = &arguments->isWhole, .help = "Long lists to their ends"},
                        {.name = "--json",
                         .place = &arguments->asJson,
                         .help = "One JSON object, for programs; always whole"}},
            .text = "Shows the entity with its supertypes, the values of all attributes (references with\n"
                    "type and name, - for no value), the inverse attributes that hold something, and all\n"
                    "that refers to the instance, by the attribute through which it does. Records that\n"
                    "are kept as text are shown as they stand in the file.\n"
                    "\n"
                    "Keys of the JSON object:\n"
                    "  id, type, attributes, inverse   as kpifc dump --inverse prints them\n"
                    "  supertypes[]                    the direct one first\n"
                    "  referrers                       \"IfcRelDefinesByType.RelatedObjects\": [{\"ref\":5}]\n"
                    "  keptText                        of records that are kept as text, instead of type,\n"
                    "                                  attributes, inverse and supertypes",
            .examples = {"kpifc show house.ifc '#15'", "kpifc show house.ifc '2O2Fr$t4X7Zf8NOew3FLOH'"},
            .run = [arguments] { return show(*arguments); }};
}

} // namespace kpifc
