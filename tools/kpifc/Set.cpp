#include "Commands.h"
#include "Files.h"
#include "HeldAttributes.h"
#include "Output.h"
#include "Save.h"
#include "StepConversion.h"
#include "Targets.h"
#include "TypeText.h"
#include "Utf8.h"

#include <KpIfcCore/KpIfcAggr.h>

#include <fmt/format.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct SetArguments {
    std::string input;
    std::vector<std::string> assignments;
    SaveOptions saving;
};

/// What is to be set to what.
struct Assignment {
    KpIfcEntityBase* instance;
    const KpIfcExplicitAttributeDefinition* attribute;
    std::string target; ///< for messages
    KpStepValue value;
};

/// The attribute as one that may be set; throws Failure where it may not.
const KpIfcExplicitAttributeDefinition* settable(const Target& target) {
    if (target.isDerived()) {
        throw Failure(target.text() + " is derived and cannot be set");
    }
    if (const auto* inverse = target.attribute->as<KpIfcInverseAttributeDefinition>()) {
        const KpIfcAttributeDefinition* inverted = inverse->invertedAttribute();
        throw Failure(fmt::format("{} is inverse and cannot be set; {}.{} of the instances that refer to this one can",
                                  target.text(), inverse->target()->displayName(), inverted ? inverted->name() : "?"));
    }
    if (!baseType(target.attribute->domain())) {
        throw Failure(target.text() + " is of a type that the schema does not declare");
    }
    return target.attribute->as<KpIfcExplicitAttributeDefinition>();
}

Assignment parse(const std::string& text, Targets& targets) {
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos) {
        throw Failure(fmt::format("\"{}\" is no assignment, such as #15.FamilyName='Meier'", printable(text)));
    }
    const Target target = targets.find(std::string_view(text).substr(0, sign));
    if (!target.attribute) {
        throw Failure(
            fmt::format("\"{}\" names no attribute, such as #15.FamilyName", printable(text.substr(0, sign))));
    }
    Assignment assignment{target.instance, settable(target), target.text(), {}};
    const std::string_view value = trimmed(std::string_view(text).substr(sign + 1));
    if (!KpStepValue::read(value, assignment.value)) {
        throw Failure(
            fmt::format("{}: found {}, which is no value in the notation of STEP files (texts stand in apostrophes), "
                        "expected {}",
                        assignment.target, value.empty() ? "nothing" : printable(value),
                        valuesText(*assignment.attribute->domain())));
    }
    return assignment;
}

/// The descriptor of the selects that an attribute holds; null where it holds none.
const KpIfcVariantType* selectDescriptor(const Assignment& assignment) {
    const KpIfcAttributeFacts* facts = assignment.attribute->facts();
    if (facts && facts->select) {
        return &facts->select->value.value();
    }
    KpIfcVariant held;
    assignment.instance->getAttr(assignment.attribute->name(), held);
    const KpIfcAggr* aggregate = held.isEmpty() ? nullptr : held.type()->aggregate(held.data());
    return aggregate ? aggregate->implementation()->elementType() : nullptr;
}

/// Notes what was stored but is not as the schema wants it.
void noteDepartures(const Assignment& assignment, std::vector<std::string>& notes) {
    const KpIfcExplicitAttributeDefinition& attribute = *assignment.attribute;
    const auto note = [&](const std::string& text) { notes.push_back(assignment.target + ": " + text); };
    if (assignment.value.kind == KpStepValue::Kind::unset) {
        if (!attribute.isOptionalInFiles()) {
            note("is not optional, but has no value now");
        }
        return;
    }
    const auto* aggregation = baseType(attribute.domain())->as<KpIfcAggregationType>();
    KpIfcVariant held;
    assignment.instance->getAttr(attribute.name(), held);
    const KpIfcAggr* aggregate = held.isEmpty() ? nullptr : held.type()->aggregate(held.data());
    if (!aggregation || !aggregate) {
        return;
    }
    const auto given = static_cast<std::int64_t>(assignment.value.items.size());
    const auto kept = static_cast<std::int64_t>(aggregate->size());
    if (kept != given) {
        note(fmt::format("{} of {} members left out, because they come again", given - kept, given));
    }
    if (kept == 0 && attribute.isOptionalInFiles()) {
        return; // no value
    }
    // Bounds of arrays are indices.
    const KpIfcIntegerBound& lower = aggregation->lowerBound();
    const KpIfcIntegerBound& upper = aggregation->upperBound();
    const std::int64_t first = aggregation->as<KpIfcArrayType>() ? lower.value() : 1;
    const std::int64_t least = aggregation->as<KpIfcArrayType>() ? upper.value() - first + 1 : lower.value();
    if (kept < least || (!upper.isUnbounded() && kept > upper.value() - first + 1)) {
        note(fmt::format("{} now, not {}", counted(static_cast<std::uint64_t>(kept), "member"),
                         valuesText(*attribute.domain())));
    }
}

/// Makes sure that the value is written, also in place of text that the attribute could not hold.
void forgetSource(const Assignment& assignment) {
    std::size_t place = 0; // in the record, which has a field for every explicit attribute
    for (const KpIfcAttributeDefinition* attribute : assignment.instance->getInstanceType()->allAttributes()) {
        if (attribute == assignment.attribute) {
            return assignment.instance->owningModel()->forgetSource(*assignment.instance, place);
        }
        place += attribute->kind() == KpIfcAttributeKind::explicitAttribute;
    }
}

/// Stores the value in the model; throws Failure where the attribute cannot hold it.
void apply(const Assignment& assignment, const StepConversion& conversion) {
    const KpAnsiString name(assignment.attribute->name());
    if (assignment.value.kind == KpStepValue::Kind::unset) {
        assignment.instance->unsetAttr(name);
    } else {
        const KpIfcAttributeFacts* facts = assignment.attribute->facts();
        if (facts && facts->kind == KpIfcFieldKind::notKept) {
            throw Failure(assignment.target + " cannot be set: values of it are neither read nor written");
        }
        if (facts && facts->kind == KpIfcFieldKind::guid && assignment.value.kind == KpStepValue::Kind::string &&
            assignment.value.text.size() != KpIfcGUID::kLength) {
            throw Failure(fmt::format("{}: found {} characters, expected {}", assignment.target,
                                      assignment.value.text.size(), KpIfcGUID::kLength));
        }
        KpIfcVariant value;
        try {
            value = conversion.convert(assignment.value, *assignment.attribute->domain(), selectDescriptor(assignment));
        } catch (const Failure& failure) {
            throw Failure(assignment.target + ": " + failure.what());
        }
        if (!assignment.instance->putAttr(name, value)) {
            throw Failure(fmt::format("{} does not take this value", assignment.target));
        }
    }
    forgetSource(assignment);
}

ExitCode set(const SetArguments& arguments) {
    checkTarget(arguments.input, arguments.saving);
    KpIfcFile file = openFile(arguments.input);
    Targets targets(*file.model());
    std::vector<Assignment> assignments;
    for (const std::string& text : arguments.assignments) {
        assignments.push_back(parse(text, targets));
    }
    const StepConversion conversion(*file.model());
    std::vector<std::string> notes; // told only when nothing was refused
    for (const Assignment& assignment : assignments) {
        apply(assignment, conversion);
        noteDepartures(assignment, notes);
    }
    for (const std::string& note : notes) {
        tell("kpifc: " + note);
    }
    return save(file, arguments.input, arguments.saving, counted(assignments.size(), "attribute") + " set");
}

} // namespace

void addSet(CLI::App& app, Action& action) {
    const auto arguments = std::make_shared<SetArguments>();
    CLI::App* command = app.add_subcommand("set", "Change attributes and write the file anew");
    command->add_option("IN", arguments->input, "STEP file to read")->required();
    command->add_option("ASSIGNMENT", arguments->assignments, "#15.FamilyName='Meier'; a GlobalId may stand for #15")
        ->required();
    addSaveOptions(*command, arguments->saving);
    command->footer("Values are in the notation of STEP files, as kpifc get prints them:\n"
                    "  1.5  7                 numbers; a real may be without its point\n"
                    "  'Oak'                  texts, encoded as in files or plain UTF-8; '' for an apostrophe\n"
                    "  .ELEMENT.  .T.         literals of enumerations; booleans .T. .F., logicals .U. too\n"
                    "  #22                    an instance\n"
                    "  (1.,2.)  (#22,#23)     aggregates\n"
                    "  IFCLABEL('Oak')        a value of a select, by its type\n"
                    "  \"0FF\"                  binaries\n"
                    "  $                      no value\n"
                    "Nothing is written unless every assignment fits its attribute. What the schema\n"
                    "does not want but files can hold (no value where one must be, too many members)\n"
                    "is stored and told on standard error. All other records stay byte for byte.\n\n"
                    "Example:\n"
                    "  kpifc set house.ifc \"#15.FamilyName='Meier'\" '#15.GivenName=$' -o house_new.ifc");
    command->callback([arguments, &action] { action = [arguments] { return set(*arguments); }; });
}

} // namespace kpifc
