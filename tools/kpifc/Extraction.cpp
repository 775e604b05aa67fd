#include "Extraction.h"

#include "Interrupt.h"

#include <KpIfcCore/KpIfcReferences.h>

using namespace KP_SDAI;

namespace kpifc {

namespace {

bool holds(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, const KpDbObjectId& handle) {
    bool isHeld = false;
    visitReferences(instance, row, [&](const KpDbObjectId& each) { isHeld |= each == handle; });
    return isHeld;
}

} // namespace

Extraction::Extraction(const KpIfcModel& model) : m_model(model), m_rules(model.schema()) {}

void Extraction::complete() {
    for (const KpIfcEntityBase* project : m_model.instances(m_rules.project)) {
        enter(project->objectId(), Part::place);
    }
    while (!m_entered.empty()) {
        stopIfInterrupted();
        const KpDbObjectId handle = m_entered.back();
        m_entered.pop_back();
        bringNeeded(handle);
        for (const KpDbObjectId& referrer : m_model.referrers(handle)) {
            consider(referrer, handle);
        }
    }
}

Extraction::Part Extraction::partOf(const KpDbObjectId& handle) const {
    const auto found = m_parts.find(handle.slot());
    return found == m_parts.end() ? Part::none : found->second;
}

bool Extraction::isObject(const KpDbObjectId& handle) const {
    const KpIfcEntityBase* const instance = handle.openObject();
    return instance && instance->isKindOf(m_rules.object);
}

void Extraction::enter(const KpDbObjectId& handle, Part part) {
    if (!handle.isDefined()) {
        return;
    }
    Part& former = m_parts[handle.slot()];
    if (former >= part) {
        return;
    }
    if (former == Part::none) {
        m_found.append(handle);
    }
    former = part;
    m_entered.push_back(handle);
}

void Extraction::bringNeeded(const KpDbObjectId& handle) {
    const bool isAlong = partOf(handle) == Part::along;
    visitAllReferences(handle, [&](const KpIfcReference& reference) {
        if (!isAlong || !isMember(reference, m_rules.of(handle.openObject()->getInstanceType()))) {
            enter(reference.to, Part::needed);
        }
    });
}

/// Looks whether something comes along that refers to what has just got its part.
void Extraction::consider(const KpDbObjectId& referrer, const KpDbObjectId& handle) {
    const ExtractionRule& rule = m_rules.of(referrer.openObject()->getInstanceType());
    if (rule.kind == ExtractionRule::Kind::none) {
        return;
    }
    bringWholeOrParts(referrer, rule, handle);
    if (!contains(referrer) && comesAlong(referrer, rule, handle)) {
        enter(referrer, Part::along);
    }
}

void Extraction::bringWholeOrParts(const KpDbObjectId& relation, const ExtractionRule& rule,
                                   const KpDbObjectId& handle) {
    const Part part = partOf(handle);
    if (!rule.whole || part < Part::place) {
        return;
    }
    KpIfcEntityBase& instance = *relation.openObject();
    if (part == Part::chosen && holds(instance, *rule.whole, handle)) {
        visitReferences(instance, *rule.parts, [this](const KpDbObjectId& each) { enter(each, Part::chosen); });
    } else if (rule.isPlace && !holds(instance, *rule.whole, handle)) {
        visitReferences(instance, *rule.whole, [this](const KpDbObjectId& each) { enter(each, Part::place); });
    }
}

bool Extraction::comesAlong(const KpDbObjectId& referrer, const ExtractionRule& rule,
                            const KpDbObjectId& handle) const {
    KpIfcEntityBase& instance = *referrer.openObject();
    switch (rule.kind) {
    case ExtractionRule::Kind::none: break;
    case ExtractionRule::Kind::link: return isLinkThere(instance);
    case ExtractionRule::Kind::addition: return holds(instance, *rule.members, handle);
    case ExtractionRule::Kind::statement:
        // What is there as a place only or as member of a relation that was chosen is not what was asked for. Types and
        // what else defines objects is.
        return (partOf(handle) == Part::chosen || !isObject(handle)) && holds(instance, *rule.members, handle);
    }
    return false;
}

bool Extraction::isLinkThere(KpIfcEntityBase& relation) const {
    const ExtractionRule rule{ExtractionRule::Kind::link};
    bool hasMembers = false;
    for (const bool isAggregate : {false, true}) { // those last, for they may be long
        for (const KpIfcAttributeFacts* row : relation.getInstanceType()->recordFields()) {
            if ((row->kind == KpIfcFieldKind::aggregate) != isAggregate) {
                continue;
            }
            bool isHeld = false;
            bool isThere = false;
            visitReferences(relation, *row, [&](const KpDbObjectId& to) {
                if (!isThere && to.isDefined() && isMember({relation.objectId(), row, to}, rule)) {
                    isHeld = true;
                    isThere = contains(to);
                }
            });
            if (isHeld && !isThere) {
                return false;
            }
            hasMembers |= isHeld;
        }
    }
    return hasMembers;
}

/// True for references of what comes along that do not bring along what they refer to.
bool Extraction::isMember(const KpIfcReference& reference, const ExtractionRule& rule) const {
    if (rule.members && reference.attribute) {
        return reference.attribute == rule.members;
    }
    const bool isSingle = reference.attribute && reference.attribute->kind != KpIfcFieldKind::aggregate;
    const KpIfcEntityBase* const to = reference.to.openObject();
    if (!to) {
        return !isSingle; // a record kept as text
    }
    return to->isKindOf(isSingle ? m_rules.object : m_rules.root);
}

} // namespace kpifc
