#include <KpIfcCore/KpIfcAttributeDefinition.h>

#include <KpIfcCore/KpIfcAggregationType.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcExpressText.h>

#include "dictionary/BoundsText.h"

namespace KP_SDAI {

KpIfcAttributeDefinition::~KpIfcAttributeDefinition() = default;
KpIfcExplicitAttributeDefinition::~KpIfcExplicitAttributeDefinition() = default;
KpIfcDerivedAttributeDefinition::~KpIfcDerivedAttributeDefinition() = default;
KpIfcInverseAttributeDefinition::~KpIfcInverseAttributeDefinition() = default;

bool KpIfcAttributeDefinition::isOver(const DictionaryInstance& type) const {
    if (m_domain == &type) return true;
    const auto* named = m_domain ? m_domain->as<KpIfcDefinedType>() : nullptr;
    const KpIfcAggregationType* aggregation = named && named->isAnonymous() ? named->aggregation() : nullptr;
    return aggregation && aggregation->elementType() == &type;
}

std::string KpIfcAttributeDefinition::typeText() const {
    return expressText(m_domain);
}

const KpIfcAttributeFacts* KpIfcExplicitAttributeDefinition::facts() const {
    const KpIfcEntityFacts* entity = owner() ? owner()->facts() : nullptr;
    return entity && m_index < entity->attributeCount ? &entity->attributes[m_index] : nullptr;
}

bool KpIfcExplicitAttributeDefinition::isOptionalInFiles() const {
    const KpIfcAttributeFacts* row = facts();
    return row ? row->isOptional() : m_optional;
}

std::string KpIfcExplicitAttributeDefinition::declarationText() const {
    return (isOptionalInFiles() ? "OPTIONAL " : "") + typeText();
}

const char* KpIfcDerivedAttributeDefinition::displayName() const {
    return m_redeclared ? m_redeclared->name() : name();
}

KpIfcInverseAttributeDefinition::KpIfcInverseAttributeDefinition(const char* name, const KpIfcEntityType* owner,
                                                                 DictionaryInstance* domain,
                                                                 KpIfcExplicitAttributeDefinition* inverted,
                                                                 int minimum, int maximum, bool)
    : KpIfcAttributeDefinition(name, domain, owner), m_inverted(inverted), m_minimum(minimum), m_maximum(maximum) {}

bool KpIfcInverseAttributeDefinition::isSingleValued() const {
    return m_minimum == Consts::KpIntUnset;
}

const KpIfcEntityType* KpIfcInverseAttributeDefinition::target() const {
    return domain() ? domain()->as<KpIfcEntityType>() : nullptr;
}

std::string KpIfcInverseAttributeDefinition::typeText() const {
    const std::string target = expressText(domain());
    return isSingleValued() ? target : "SET " + boundsText(m_minimum, m_maximum) + " OF " + target;
}

std::string KpIfcInverseAttributeDefinition::declarationText() const {
    return typeText() + " FOR " + (m_inverted ? m_inverted->name() : "?");
}

} // namespace KP_SDAI
