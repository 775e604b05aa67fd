#include "Commands.h"
#include "Extraction.h"
#include "Files.h"
#include "Output.h"
#include "Save.h"
#include "SchemaNames.h"
#include "Targets.h"
#include "Utf8.h"

#include <KpIfcCore/KpIfcGUID.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <memory>
#include <string>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct ExtractArguments {
    std::string input;
    std::vector<std::string> names;
    std::string output;
};

/// Chooses what users name; returns how many that are. Throws Failure where that is nothing or where one
/// instance is named that is not there.
std::size_t choose(const KpIfcModel& model, const std::vector<std::string>& names, Extraction& extraction) {
    Targets targets(model);
    std::size_t count = 0;
    std::vector<std::string> missing;
    const auto add = [&](const KpDbObjectId& handle) {
        count += !extraction.contains(handle);
        extraction.choose(handle);
    };
    for (const std::string& name : names) {
        if (const KpIfcEntityType* entity = model.schema().findEntity(name)) {
            const KpIfcModel::Range instances = model.instances(entity);
            if (instances.begin() == instances.end()) {
                missing.push_back(entity->displayName());
            }
            for (const KpIfcEntityBase* instance : instances) {
                add(instance->objectId());
            }
        } else if (name.starts_with('#') || name.size() == KpIfcGUID::kLength) {
            add(targets.handle(name));
        } else {
            throw Failure(fmt::format("\"{}\" is neither #15, a GlobalId nor an entity of {}{}", printable(name),
                                      model.schema().name(),
                                      didYouMean(suggestions(SchemaNames(model.schema()).entities, name))));
        }
    }
    if (!missing.empty()) {
        const std::string message = fmt::format("there is no instance of {}", fmt::join(missing, ", "));
        if (count == 0) {
            throw Failure(message);
        }
        tell("kpifc: " + message);
    }
    return count;
}

ExitCode extract(const ExtractArguments& arguments) {
    SaveOptions options;
    options.output = arguments.output;
    checkTarget(arguments.input, options);
    KpIfcFile file = openFile(arguments.input);
    KpIfcModel& model = *file.model();
    model.mode(kReadOnly);
    Extraction extraction(model);
    const std::size_t chosen = choose(model, arguments.names, extraction);
    extraction.complete();

    KpIfcFile part;
    if (part.create(model.schema().name()) != KP::eOk) {
        throw Failure(part.error());
    }
    part.header() = file.header();
    KpIfcCopier copier(model, *part.model());
    copier.filter([&](const KpIfcReference& reference) { return extraction.contains(reference.to); });
    if (copier.copy(extraction.found()) != KP::eOk) {
        throw Failure(arguments.input + ": cannot be copied from");
    }
    tellProblems(arguments.input, file.report());
    const ExitCode code =
        save(part, arguments.input, options, fmt::format("{} chosen, of {}", grouped(chosen), grouped(model.count())));
    return code == kFine ? exitCode(file.report()) : code;
}

} // namespace

Command extractCommand() {
    const auto arguments = std::make_shared<ExtractArguments>();
    Option output = outputOption(arguments->output);
    output.isRequired = true;
    return {.name = "extract",
            .summary = "Write a part of a model as a file of its own",
            .operands = {inputFile(&arguments->input, "IN"),
                         {.name = "NAME",
                          .place = &arguments->names,
                          .help = "#15 or a GlobalId for one instance; an entity for all of it and its subtypes",
                          .kind = WordKind::entity}},
            .options = {output},
            .text = "Objects come with their parts, contents, openings and what fills these; their types,\n"
                    "properties, quantities, materials, classifications and other associations; shapes\n"
                    "with styles and layers; and with the storeys, buildings and sites that they are in.\n"
                    "The project with its units and contexts comes always, a group only where it is named,\n"
                    "anything else with what it refers to. Relations keep those of their members that are\n"
                    "there. Instances keep their names, the file its header and order.",
            .examples = {"kpifc extract house.ifc IfcWall IfcDoor -o walls.ifc",
                         "kpifc extract house.ifc '2O2Fr$t4X7Zf8NOew3FLOH' -o wall.ifc"},
            .run = [arguments] { return extract(*arguments); }};
}

} // namespace kpifc
