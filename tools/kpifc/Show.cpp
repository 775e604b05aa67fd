#include "Show.h"

#include "Commands.h"
#include "FileLabels.h"
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
    std::vector<std::string> files;
    std::string name;
    bool isWhole = false;
    bool asJson = false;
};

ExitCode show(const ShowArguments& arguments) {
    FileLabels labels(arguments.files);
    Output output;
    const ExitCode code = forEachFile(arguments.files, [&](const std::string& path) {
        const KpIfcFile file = openFile(path);
        KpIfcModel& model = *file.model();
        model.mode(kReadOnly);
        const KpDbObjectId handle = Targets(model, labels.prefix(path)).handle(trimmed(arguments.name));
        output.text() += arguments.asJson ? jsonOf(model, handle, labels.opening(path))
                                          : labels.heading(path) + textOf(model, handle, arguments.isWhole, path);
        tellProblems(path, file.report());
        return exitCode(file.report());
    });
    output.finish();
    return code;
}

} // namespace

Command showCommand() {
    const auto arguments = std::make_shared<ShowArguments>();
    return {.name = "show",
            .summary = "Show an instance and what refers to it",
            .operands = {inputFile(&arguments->files),
                         {.name = "NAME", .place = &arguments->name, .help = "#15, or a GlobalId"}},
            .options = {{.name = "--all", .place = &arguments->isWhole, .help = "Long lists to their ends"},
                        {.name = "--json",
                         .place = &arguments->asJson,
                         .help = "One JSON object a line for each file, for programs; always whole"}},
            .text = "Shows the entity with its supertypes, the values of all attributes (references with\n"
                    "type and name, - for no value), the inverse attributes that hold something, and all\n"
                    "that refers to the instance, by the attribute through which it does. Records that\n"
                    "are kept as text are shown as they stand in the file.\n"
                    "\n"
                    "Keys of a JSON object:\n"
                    "  file                            which one, where there are several\n"
                    "  id, type, attributes, inverse   as kpifc dump --inverse prints them\n"
                    "  supertypes[]                    the direct one first\n"
                    "  referrers                       \"IfcRelDefinesByType.RelatedObjects\": [{\"ref\":5}]\n"
                    "  keptText                        of records that are kept as text, instead of type,\n"
                    "                                  attributes, inverse and supertypes",
            .examples = {"kpifc show house.ifc '#15'", "kpifc show house.ifc house_new.ifc '2O2Fr$t4X7Zf8NOew3FLOH'"},
            .run = [arguments] { return show(*arguments); }};
}

} // namespace kpifc
