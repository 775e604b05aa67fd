#include "Assignments.h"
#include "Commands.h"
#include "Files.h"
#include "Output.h"
#include "Save.h"
#include "SchemaNames.h"
#include "Utf8.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <memory>
#include <string>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct NewArguments {
    std::string input;
    std::string entity;
    std::vector<std::string> assignments;
    SaveOptions saving;
};

/// A new instance, with a GlobalId where its entity has one; throws Failure where there can be none.
KpIfcEntityBase& create(KpIfcModel& model, const std::string& name) {
    const KpIfcEntityType* const entity = model.schema().findEntity(name);
    if (!entity) {
        throw Failure(fmt::format("{} has no entity {}{}", model.schema().name(), printable(name),
                                  didYouMean(suggestions(SchemaNames(model.schema()).entities, name))));
    }
    if (entity->isAbstract()) {
        throw Failure(fmt::format("{} is abstract: there are instances of its subtypes only", entity->displayName()));
    }
    KpIfcEntityBase* instance = model.createRooted(entity);
    if (!instance) {
        instance = model.create(entity);
    }
    if (!instance) {
        throw Failure("the file has no instance names left");
    }
    return *instance;
}

/// The attributes that must have a value and have none.
std::vector<std::string> missing(const KpIfcEntityBase& instance) {
    std::vector<std::string> names;
    for (const KpIfcAttributeFacts* row : instance.getInstanceType()->recordFields()) {
        const bool isHeld = row->kind != KpIfcFieldKind::derived && row->kind != KpIfcFieldKind::notKept;
        if (isHeld && !row->isOptional() && !instance.testAttr(KpAnsiString(row->name))) {
            names.emplace_back(row->name);
        }
    }
    return names;
}

ExitCode createInstance(const NewArguments& arguments) {
    checkTarget(arguments.input, arguments.saving);
    KpIfcFile file = openFile(arguments.input);
    KpIfcModel& model = *file.model();
    const KpIfcEntityBase& instance = create(model, arguments.entity);
    const std::string label = fmt::format("#{}", instance.instanceName());
    Targets targets(model);
    std::vector<Assignment> assignments;
    for (const std::string& text : arguments.assignments) {
        assignments.push_back(parseAssignment(label + '.' + text, targets));
    }
    tellAll(applyAll(assignments, model));
    if (const std::vector<std::string> names = missing(instance); !names.empty()) {
        tell(fmt::format("kpifc: {} {} has no value yet that it must have: {}", label,
                         instance.getInstanceType()->displayName(), fmt::join(names, ", ")));
    }
    const ExitCode code = save(file, arguments.input, arguments.saving, "1 created");
    if (!arguments.saving.inPlace && arguments.saving.output == kStandardStream) {
        tell(label);
        return code;
    }
    Output output;
    output.text() = label + '\n';
    output.finish();
    return code;
}

} // namespace

Command newCommand() {
    const auto arguments = std::make_shared<NewArguments>();
    return {.name = "new",
            .summary = "Create an instance and write the file anew",
            .operands = {inputFile(&arguments->input, "IN"),
                         {.name = "ENTITY",
                          .place = &arguments->entity,
                          .help = "Its entity, in any letter case",
                          .kind = WordKind::entity},
                         {.name = "NAME=VALUE",
                          .place = &arguments->assignments,
                          .help = "FamilyName='Meier'",
                          .isRequired = false}},
            .options = saveOptions(arguments->saving),
            .text = "The instance gets the name after the highest one, which is printed, and a fresh\n"
                    "GlobalId where its entity has one. Values are as kpifc set takes them. Attributes\n"
                    "that must have a value and were given none are told on standard error.",
            .examples = {"kpifc new house.ifc IfcWall \"Name='North'\" 'OwnerHistory=#11' -o house_new.ifc"},
            .run = [arguments] { return createInstance(*arguments); }};
}

} // namespace kpifc
