#include "Assignments.h"

#include "Failure.h"
#include "Files.h"
#include "HeldAttributes.h"
#include "Output.h"
#include "StepConversion.h"
#include "TypeText.h"
#include "Utf8.h"

#include <KpIfcCore/KpIfcAggr.h>

#include <fmt/format.h>

#include <cstdint>

using namespace KP_SDAI;

namespace kpifc {

namespace {

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

} // namespace

Assignment parseAssignment(const std::string& text, Targets& targets) {
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

namespace {

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

} // namespace

static void noteDepartures(const Assignment& assignment, std::vector<std::string>& notes) {
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

namespace {

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

} // namespace

static void apply(const Assignment& assignment, const StepConversion& conversion) {
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

std::vector<std::string> applyAll(const std::vector<Assignment>& assignments, const KpIfcModel& model) {
    const StepConversion conversion(model);
    std::vector<std::string> notes;
    for (const Assignment& assignment : assignments) {
        apply(assignment, conversion);
        noteDepartures(assignment, notes);
    }
    return notes;
}

void tellAll(const std::vector<std::string>& notes) {
    for (const std::string& note : notes) {
        tell("kpifc: " + note);
    }
}

} // namespace kpifc
