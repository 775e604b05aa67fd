#include "model/Cascade.h"

#include <KpIfcCore/KpIfcSchema.h>

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace KP_SDAI {

Cascade::Cascade(const KpIfcSchema& schema, const ReferrerIndex& referrers, const TextReferences& texts,
                 Leaving& leaving)
    : m_referrers(referrers), m_texts(texts), m_leaving(leaving), m_object(schema.findEntity("IfcObjectDefinition")),
      m_feature(schema.findEntity("IfcFeatureElement")), m_relation(schema.findEntity("IfcRelationship")) {
    const auto add = [&](std::vector<Attribute>& to, std::string_view entity, std::string_view name) {
        const KpIfcEntityType* const owner = schema.findEntity(entity);
        const auto* const attribute = owner ? owner->findAttribute(name) : nullptr;
        const auto* const held = attribute ? attribute->as<KpIfcExplicitAttributeDefinition>() : nullptr;
        if (held && held->facts()) to.push_back({owner, held->facts()});
    };
    add(m_hosting, "IfcRelVoidsElement", "RelatedOpeningElement");
    add(m_hosting, "IfcRelProjectsElement", "RelatedFeatureElement");
    add(m_telling, "IfcStyledItem", "Item");
    add(m_telling, "IfcShapeAspect", "PartOfProductDefinitionShape");
    add(m_telling, "IfcPresentationLayerAssignment", "AssignedItems");
    add(m_telling, "IfcMaterialDefinitionRepresentation", "RepresentedMaterial");
}

bool Cascade::isHosting(const KpIfcEntityBase& instance, const KpIfcAttributeFacts& row) const {
    for (const Attribute& each : m_hosting)
        if (each.isOf(instance, row)) return true;
    return false;
}

bool Cascade::isTelling(const KpIfcEntityBase& instance, const KpIfcAttributeFacts& row) const {
    for (const Attribute& each : m_telling)
        if (each.isOf(instance, row)) return true;
    return false;
}

bool Cascade::keeps(const KpIfcEntityBase& referrer, const KpIfcAttributeFacts& row,
                    const KpIfcEntityBase& target) const {
    const bool isOfFeature = m_feature && m_relation && target.isKindOf(m_feature) && referrer.isKindOf(m_relation);
    return isOfFeature ? isHosting(referrer, row) : !isTelling(referrer, row);
}

bool Cascade::keeps(KpIfcEntityBase& referrer, const KpIfcEntityBase& target) const {
    const auto& rows = referrer.getInstanceType()->recordFields();
    const auto keepsByRow = [&](const KpIfcAttributeFacts* row) { return keeps(referrer, *row, target); };
    if (std::all_of(rows.begin(), rows.end(), keepsByRow)) return true; // by whichever it refers
    for (const KpIfcAttributeFacts* row : rows) {
        if (!keepsByRow(row)) continue;
        bool refers = false;
        visitReferences(referrer, *row, [&](const KpDbObjectId& each) { refers |= each == target.objectId(); });
        if (refers) return true;
    }
    return false;
}

bool Cascade::isKept(KpIfcEntityBase& instance, const Used* ignored) const {
    for (const KpDbObjectId& referrer : m_texts.to(instance.objectId()))
        if (!m_leaving.contains(referrer)) return true;
    return m_referrers.any(instance.objectId(), [&](const KpDbObjectId& handle) {
        if (m_leaving.contains(handle) || (ignored && ignored->count(handle.slot()))) return false;
        KpIfcEntityBase* const referrer = handle.openObject();
        return referrer && referrer != &instance && keeps(*referrer, instance);
    });
}

bool Cascade::losesMeaning(KpIfcEntityBase& instance) const {
    if (isObject(instance)) return false;
    bool loses = false;
    for (const KpIfcAttributeFacts* row : instance.getInstanceType()->recordFields()) {
        const LostReferences references = lostReferences(instance, *row, m_leaving);
        if (references.lost == 0) continue;
        const std::size_t rest = references.count - references.lost;
        loses = loses || lacksValues(instance, *row, rest) || (rest == 0 && isTelling(instance, *row));
    }
    return loses && !isKept(instance, nullptr);
}

void Cascade::addUsed(KpIfcEntityBase& instance, Used& used, std::vector<KpIfcEntityBase*>& found) const {
    for (const KpIfcAttributeFacts* row : instance.getInstanceType()->recordFields()) {
        visitReferences(instance, *row, [&](const KpDbObjectId& handle) {
            KpIfcEntityBase* const target = handle.openObject();
            if (!target || m_leaving.contains(handle)) return;
            if (isObject(*target) && !(m_feature && target->isKindOf(m_feature) && isHosting(instance, *row))) return;
            if (used.emplace(handle.slot(), false).second) found.push_back(target);
        });
    }
}

void Cascade::run(std::vector<KpDbObjectId> wave) {
    while (!wave.empty()) {
        std::vector<KpDbObjectId> next;
        const auto leave = [&](const KpDbObjectId& handle) {
            if (m_leaving.add(handle)) next.push_back(handle);
        };
        std::unordered_set<KpIfcSlot*> asked;
        for (const KpDbObjectId& gone : wave) {
            m_referrers.any(gone, [&](const KpDbObjectId& handle) {
                KpIfcEntityBase* const referrer = handle.openObject();
                if (referrer && !m_leaving.contains(handle) && asked.insert(handle.slot()).second &&
                    losesMeaning(*referrer))
                    leave(handle);
                return false;
            });
        }

        // All that the wave used, directly or not, goes but for what others keep and what that refers to in turn. So
        // instances that refer to each other in a circle do not keep themselves.
        Used used;
        std::vector<KpIfcEntityBase*> found;
        for (const KpDbObjectId& gone : wave)
            if (KpIfcEntityBase* const instance = gone.openObject()) addUsed(*instance, used, found);
        for (std::size_t i = 0; i < found.size(); ++i) addUsed(*found[i], used, found);
        std::vector<KpIfcEntityBase*> kept;
        const auto keep = [&](KpIfcEntityBase& instance) {
            bool& isKnown = used.at(instance.objectId().slot());
            if (!isKnown) kept.push_back(&instance);
            isKnown = true;
        };
        for (KpIfcEntityBase* instance : found)
            if (isKept(*instance, &used)) keep(*instance);
        for (std::size_t i = 0; i < kept.size(); ++i) {
            KpIfcEntityBase& keeper = *kept[i];
            for (const KpIfcAttributeFacts* row : keeper.getInstanceType()->recordFields()) {
                visitReferences(keeper, *row, [&](const KpDbObjectId& handle) {
                    KpIfcEntityBase* const target = handle.openObject();
                    if (target && used.count(handle.slot()) && keeps(keeper, *row, *target)) keep(*target);
                });
            }
        }
        for (KpIfcEntityBase* instance : found)
            if (!used.at(instance->objectId().slot())) leave(instance->objectId());
        wave = std::move(next);
    }
}

} // namespace KP_SDAI
