#include <KpIfcCore/KpIfcSchema.h>

#include <KpIfcCore/KpIfcAggregationType.h>
#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcSelectType.h>

#include <algorithm>

namespace KP_SDAI {

KpIfcSchema::KpIfcSchema() = default;
KpIfcSchema::~KpIfcSchema() = default;

KpIfcEntityType* KpIfcSchema::findEntity(std::string_view name) const {
    return static_cast<KpIfcEntityType*>(m_entities.at(name));
}

KpIfcDefinedType* KpIfcSchema::findType(std::string_view name) const {
    return static_cast<KpIfcDefinedType*>(m_types.at(name));
}

const KpIfcNameType* KpIfcSchema::find(std::string_view name) const {
    if (const KpIfcDefinedType* type = findType(name)) return type;
    return findEntity(name);
}

KpIfcSchemaCounts KpIfcSchema::counts() const {
    KpIfcSchemaCounts counts;
    counts.entities = m_entities.count();
    for (const Dictionary::Entry& entry : m_entities.entries()) {
        const auto& entity = static_cast<const KpIfcEntityType&>(*entry.object);
        counts.abstractEntities += entity.isAbstract();
        for (const auto& attribute : entity.attributes()) {
            switch (attribute->kind()) {
            case KpIfcAttributeKind::explicitAttribute: ++counts.explicitAttributes; break;
            case KpIfcAttributeKind::derivedAttribute: ++counts.derivedAttributes; break;
            case KpIfcAttributeKind::inverseAttribute: ++counts.inverseAttributes; break;
            }
        }
    }
    for (const Dictionary::Entry& entry : m_types.entries()) {
        const auto& type = static_cast<const KpIfcDefinedType&>(*entry.object);
        if (const KpIfcEnumerationType* enumeration = type.enumeration()) {
            ++counts.enumerations;
            counts.literals += enumeration->literals().size();
        } else {
            ++(type.select() ? counts.selects : counts.definedTypes);
        }
    }
    for (const Dictionary::Entry& entry : m_anonymousTypes.entries())
        counts.anonymousAggregations += static_cast<const KpIfcDefinedType&>(*entry.object).aggregation() != nullptr;
    return counts;
}

std::vector<const KpIfcAttributeDefinition*> KpIfcSchema::attributesOver(const DictionaryInstance& type) const {
    std::vector<const KpIfcAttributeDefinition*> attributes;
    for (const Dictionary::Entry& entry : m_entities.entries())
        for (const auto& attribute : static_cast<const KpIfcEntityType&>(*entry.object).attributes())
            if (attribute->isOver(type)) attributes.push_back(attribute.get());
    return attributes;
}

std::vector<const KpIfcDefinedType*> KpIfcSchema::typesOver(const DictionaryInstance& type) const {
    std::vector<const KpIfcDefinedType*> types;
    for (const Dictionary::Entry& entry : m_types.entries()) {
        const auto& named = static_cast<const KpIfcDefinedType&>(*entry.object);
        bool isOver = named.underlyingType() == &type;
        if (const KpIfcAggregationType* aggregation = named.aggregation()) isOver = aggregation->elementType() == &type;
        if (const KpIfcSelectType* select = named.select())
            isOver = std::find(select->members().begin(), select->members().end(), &type) != select->members().end();
        if (isOver) types.push_back(&named);
    }
    return types;
}

} // namespace KP_SDAI
