#include "check/FieldCheck.h"

#include "check/ValueTests.h"

#include <KpIfcCore/KpIfcExpressText.h>
#include <KpIfcCore/KpIfcGlobalIds.h>
#include <KpIfcCore/KpIfcSchema.h>
#include <KpIfcCore/KpStepValue.h>

#include <algorithm>
#include <set>
#include <type_traits>
#include <vector>

namespace KP_SDAI {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// The positions of two equal elements, neither without a value; kNone where there are none.
template <class At>
std::pair<std::size_t, std::size_t> repeatedElements(std::size_t count, At at) {
    constexpr std::size_t kFew = 12; // are compared one by one faster than they are sorted
    if (count <= kFew) {
        for (std::size_t second = 1; second < count; ++second)
            for (std::size_t first = 0; first < second; ++first)
                if (at(first) == at(second) && !isUnset(at(first))) return {first, second};
        return {kNone, kNone};
    }
    std::vector<std::size_t> order(count);
    for (std::size_t i = 0; i < count; ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return at(a) < at(b); });
    for (std::size_t i = 1; i < count; ++i)
        if (at(order[i - 1]) == at(order[i]) && !isUnset(at(order[i]))) return {order[i - 1], order[i]};
    return {kNone, kNone};
}

/// Bits of a binary as files write it: a digit that tells how many bits of the next one are unused, then the digits.
std::size_t bitsOf(std::string_view binary) {
    if (binary.size() < 2) return 0;
    const auto unused = static_cast<std::size_t>(binary[0] - '0');
    return 4 * (binary.size() - 1) - std::min<std::size_t>(unused, 3);
}

/// What is expected of an attribute, for messages.
std::string expected(const CheckedField& field) {
    return field.attribute->typeText();
}

} // namespace

/// The elements of an aggregate that are not as they should be: which is the first, and how many there are.
struct FieldCheck::Faults {
    std::size_t looked = 0;
    std::size_t count = 0;
    std::size_t first = 0;
    KpDbObjectId handle; ///< of the first, where it is a reference

    /// Takes the next element.
    void look(bool isFault, const KpDbObjectId& found = {}) {
        if (isFault && count++ == 0) {
            first = looked;
            handle = found;
        }
        ++looked;
    }
    /// "element 3", "element 3 and 2 more"; in sets, which have no positions, "1 element", "3 elements".
    std::string elements(const KpIfcAttributeFacts& row) const {
        if (row.aggregate->isSet) return countOf(count, "element");
        std::string text = "element " + std::to_string(first + 1);
        if (count > 1) text += " and " + std::to_string(count - 1) + " more";
        return text;
    }
};

void FieldCheck::missing(KpIfcEntityBase& instance, const CheckedField& field) {
    m_findings.add(KpIfcFinding::missingValue, instance, field.row->name, [&] {
        return Said{"no value", expected(field)};
    });
}

void FieldCheck::check(KpIfcEntityBase& instance, const CheckedField& field) {
    const KpIfcAttributeFacts& row = *field.row;
    if (row.kind == KpIfcFieldKind::aggregate) return checkAggregate(instance, field);
    if (isUnset(instance, row)) {
        if (!row.isOptional()) missing(instance, field);
        return;
    }
    if (row.kind == KpIfcFieldKind::reference) return checkReference(instance, field);
    if (row.kind == KpIfcFieldKind::select) return checkSelect(instance, field);
    if (row.kind != KpIfcFieldKind::guid) return;
    const std::string_view id = (instance.*row.member.guid).constStr();
    if (isGlobalId(id)) return;
    m_findings.add(KpIfcFinding::globalId, instance, row.name, [&] {
        return Said{'\'' + std::string(id) + '\'', "22 of the characters 0-9A-Za-z_$, the first one of 0-3"};
    });
}

void FieldCheck::checkReference(KpIfcEntityBase& instance, const CheckedField& field) {
    const KpDbObjectId& handle = instance.*field.row->member.reference;
    const ReferenceFault fault = faultOf(handle, **field.row->target);
    if (fault == ReferenceFault::dangling)
        m_findings.add(KpIfcFinding::danglingReference, instance, field.row->name, [&] {
            return Said{labelOf(handle), expected(field)};
        });
    if (fault == ReferenceFault::wrong)
        m_findings.add(KpIfcFinding::wrongReference, instance, field.row->name, [&] {
            return Said{labelOf(handle), expected(field)};
        });
}

void FieldCheck::checkSelect(KpIfcEntityBase& instance, const CheckedField& field) {
    const KpIfcSelect& select = field.row->member.select(instance);
    KpDbObjectId handle;
    select.getHandle(handle);
    const ReferenceFault fault = faultOf(select);
    if (fault != ReferenceFault::none)
        m_findings.add(fault == ReferenceFault::wrong ? KpIfcFinding::wrongReference : KpIfcFinding::danglingReference,
                       instance, field.row->name, [&] {
                           return Said{labelOf(handle), expected(field)};
                       });
    const KpIfcAggr* const aggregate = select.getAggregate();
    if (!aggregate) return;
    const KpIfcDefinedType* const type = m_schema.findType(select.underlyingTypeName());
    if (!type || !type->aggregation() || boundsOf(*type->aggregation()).allow(aggregate->size())) return;
    m_findings.add(KpIfcFinding::aggregateSize, instance, field.row->name, [&] {
        return Said{countOf(aggregate->size(), "element") + " in " + type->displayName(), definitionText(*type)};
    });
}

void FieldCheck::checkAggregate(KpIfcEntityBase& instance, const CheckedField& field) {
    const KpIfcAttributeFacts& row = *field.row;
    const KpIfcAggr& aggregate = row.member.aggregate(instance);
    if (aggregate.empty()) { // of a mandatory one files say that it is empty
        if (!row.isOptional()) checkSize(instance, field, 0);
        return;
    }
    checkSize(instance, field, aggregate.size());
    Faults unset;
    visitElements(aggregate, *row.aggregate, [&](const auto& element) { unset.look(isUnset(element)); });
    checkValues(instance, field, unset);
    checkElementReferences(instance, field);
    if (row.isUnique()) checkRepetition(instance, field);
    if (row.width != 0 && row.aggregate->element == KpIfcElementKind::binary) checkWidths(instance, field);
}

void FieldCheck::checkValues(KpIfcEntityBase& instance, const CheckedField& field, const Faults& unset) {
    if (unset.count == 0) return;
    m_findings.add(KpIfcFinding::missingValue, instance, field.row->name, [&] {
        return Said{unset.elements(*field.row) + " of " + std::to_string(unset.looked) + " without a value",
                    expected(field)};
    });
}

void FieldCheck::checkSize(KpIfcEntityBase& instance, const CheckedField& field, std::size_t count) {
    if (field.bounds.allow(count)) return;
    m_findings.add(KpIfcFinding::aggregateSize, instance, field.row->name, [&] {
        return Said{countOf(count, "element"), expected(field)};
    });
}

void FieldCheck::checkElementReferences(KpIfcEntityBase& instance, const CheckedField& field) {
    const KpIfcAttributeFacts& row = *field.row;
    Faults dangling;
    Faults wrong;
    const auto look = [&](ReferenceFault fault, const KpDbObjectId& handle) {
        dangling.look(fault == ReferenceFault::dangling, handle);
        wrong.look(fault == ReferenceFault::wrong, handle);
    };
    visitElements(row.member.aggregate(instance), *row.aggregate, [&](const auto& element) {
        using Element = std::decay_t<decltype(element)>;
        if constexpr (std::is_same_v<Element, KpDbObjectId>) {
            look(faultOf(element, **row.target), element);
        } else if constexpr (std::is_same_v<Element, KpIfcSelect>) {
            KpDbObjectId handle;
            element.getHandle(handle);
            look(faultOf(element), handle);
        }
    });
    const auto tell = [&](KpIfcFinding finding, const Faults& faults) {
        if (faults.count == 0) return;
        m_findings.add(finding, instance, row.name, [&] {
            return Said{faults.elements(row) + ": " + labelOf(faults.handle), expected(field)};
        });
    };
    tell(KpIfcFinding::danglingReference, dangling);
    tell(KpIfcFinding::wrongReference, wrong);
}

void FieldCheck::repeated(KpIfcEntityBase& instance, const CheckedField& field, std::size_t first, std::size_t second) {
    m_findings.add(KpIfcFinding::repeatedMember, instance, field.row->name, [&] {
        return Said{"the same value as elements " + std::to_string(first + 1) + " and " + std::to_string(second + 1),
                    "different ones in " + expected(field)};
    });
}

void FieldCheck::checkRepetition(KpIfcEntityBase& instance, const CheckedField& field) {
    const KpIfcAggrFacts& facts = *field.row->aggregate;
    const KpIfcAggr& aggregate = field.row->member.aggregate(instance);
    const auto look = [&](auto at) {
        const auto [first, second] = repeatedElements(aggregate.size(), at);
        if (first != kNone) repeated(instance, field, first, second);
    };
    if (facts.element == KpIfcElementKind::select) {
        look([&](std::size_t i) -> const KpIfcSelect& { return facts.selectAt(aggregate, i); });
        return;
    }
    bool isDone = false; // all elements are looked at with the first
    visitElements(aggregate, facts, [&](const auto& element) {
        if constexpr (!std::is_same_v<std::decay_t<decltype(element)>, KpIfcSelect>) {
            if (!isDone) look([elements = &element](std::size_t i) -> const auto& { return elements[i]; });
            isDone = true;
        }
    });
}

void FieldCheck::checkWidths(KpIfcEntityBase& instance, const CheckedField& field) {
    Faults wide;
    for (const KpAnsiString& element :
         static_cast<const KpIfcAggrElements<KpAnsiString>&>(*field.row->member.aggregate(instance).implementation()))
        wide.look(!element.isUnset() && bitsOf(element.view()) > field.row->width);
    if (wide.count != 0)
        m_findings.add(KpIfcFinding::tooLong, instance, field.row->name, [&] {
            return Said{wide.elements(*field.row) + " of more than " + std::to_string(field.row->width) + " bits",
                        "no more"};
        });
}

void FieldCheck::checkKept(KpIfcEntityBase& instance, const CheckedField& field, std::string_view source) {
    KpStepValue value;
    if (field.row->kind != KpIfcFieldKind::aggregate || !KpStepValue::read(source, value)) return;
    if (value.kind == KpStepValue::Kind::unset && !field.row->isOptional()) return missing(instance, field);
    if (value.kind != KpStepValue::Kind::list) return;
    if (value.items.empty()) return checkSize(instance, field, 0);
    std::vector<KpAnsiString> spelled;
    for (const KpStepValue& item : value.items)
        spelled.push_back(item.kind == KpStepValue::Kind::unset ? KpAnsiString::unset() : KpAnsiString(item.spelled()));
    Faults unset;
    for (const KpAnsiString& item : spelled) unset.look(item.isUnset());
    checkValues(instance, field, unset);
    checkElementReferences(instance, field);
    if (!field.row->aggregate->isSet) return;
    const auto [first, second] =
        repeatedElements(spelled.size(), [&](std::size_t i) -> const KpAnsiString& { return spelled[i]; });
    if (first == kNone) return;
    repeated(instance, field, first, second);
    checkSize(instance, field, std::set<KpAnsiString>(spelled.begin(), spelled.end()).size());
}

} // namespace KP_SDAI
