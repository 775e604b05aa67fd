#include "Commands.h"
#include "Files.h"
#include "Labels.h"
#include "Output.h"
#include "Save.h"
#include "Targets.h"

#include <KpIfcCore/KpIfcErase.h>

#include <fmt/format.h>

#include <memory>
#include <string>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct EraseArguments {
    std::string input;
    std::vector<std::string> targets;
    SaveOptions saving;
    std::string policy = "refuse";
};

KpIfcErasePolicy policyOf(const std::string& name) {
    return name == "drop"      ? KpIfcErasePolicy::dropReferences
           : name == "cascade" ? KpIfcErasePolicy::cascade
                               : KpIfcErasePolicy::refuse;
}

/// Because of which references nothing was erased: `#5 IfcWall "A": #7 IfcRelAggregates, #9 IfcRelVoidsElement`.
std::string refusal(const KpIfcArray<KpIfcReferrer>& references, const Labels& labels) {
    constexpr std::size_t kMost = 20; // are listed
    std::string text = "nothing erased, for others refer to it (--policy drop or cascade erases all the same)";
    KpDbObjectId target;
    for (std::size_t i = 0; i < references.size() && i < kMost; ++i) {
        if (references[i].target == target) {
            text += ", ";
        } else {
            target = references[i].target;
            text += fmt::format("\n  {} is referred to by ", labels.reference(target));
        }
        text += labels.reference(references[i].referrer);
    }
    if (references.size() > kMost) {
        text += fmt::format("\n  and {} more", grouped(references.size() - kMost));
    }
    return text;
}

ExitCode eraseTargets(const EraseArguments& arguments) {
    checkTarget(arguments.input, arguments.saving);
    KpIfcFile file = openFile(arguments.input);
    KpIfcModel& model = *file.model();
    Targets targets(model);
    std::vector<KpDbObjectId> handles;
    for (const std::string& name : arguments.targets) {
        handles.push_back(targets.handle(name));
    }
    const KpIfcEraseResult result = erase(model, handles, policyOf(arguments.policy));
    const Labels labels(model);
    if (result.status != KP::eOk) {
        throw Failure(refusal(result.references, labels));
    }
    for (const KpIfcLackingValue& lacking : result.lacking) {
        tell(fmt::format("kpifc: {}.{}: lost what it referred to and now lacks a value",
                         labels.reference(lacking.instance), lacking.attribute));
    }
    for (const KpIfcReferrer& naming : result.stillNamed) {
        tell(fmt::format("kpifc: {} still names #{}, which is erased", labels.reference(naming.referrer),
                         naming.target.instanceName()));
    }
    std::string changes = counted(result.erased.size(), "instance") + " erased";
    if (!result.changed.empty()) {
        changes += fmt::format(", references dropped from {}", grouped(result.changed.size()));
    }
    return save(file, arguments.input, arguments.saving, changes);
}

} // namespace

Command eraseCommand() {
    const auto arguments = std::make_shared<EraseArguments>();
    std::vector<Option> options = saveOptions(arguments->saving);
    options.push_back({.name = "--policy",
                       .place = &arguments->policy,
                       .help = "What happens to what refers to them: refuse, drop or cascade",
                       .value = "POLICY",
                       .choices = {"refuse", "drop", "cascade"}});
    return {.name = "erase",
            .summary = "Erase instances and write the file anew",
            .operands = {inputFile(&arguments->input, "IN"),
                         {.name = "NAME", .place = &arguments->targets, .help = "#15, or a GlobalId"}},
            .options = options,
            .text = "  refuse   nothing is erased while anything else refers to it (if nothing is said)\n"
                    "  drop     attributes that refer to it are unset, members of aggregates removed\n"
                    "  cascade  the same; then goes what only it used (placement, geometry, properties),\n"
                    "           openings in it, and relations that are left without what they relate.\n"
                    "           Other objects stay.\n"
                    "Attributes that lack a value afterwards are told on standard error. All other\n"
                    "records stay byte for byte.",
            .examples = {"kpifc erase house.ifc '#15' '#16' -o house_new.ifc",
                         "kpifc erase house.ifc 2O2Fr$t4X7Zf8NOew3FLOH --policy cascade -o house_new.ifc"},
            .run = [arguments] { return eraseTargets(*arguments); }};
}

} // namespace kpifc
