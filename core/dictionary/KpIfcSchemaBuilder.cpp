#include <KpIfcCore/KpIfcSchemaBuilder.h>

#include <algorithm>
#include <initializer_list>

using namespace KP_SDAI;

KpIfcSchemaBuilder::KpIfcSchemaBuilder(KpIfcSchema* s, const KpAnsiString& name)
    : schema(s), entityDictionary(&s->m_entities), typeDictionary(&s->m_types),
      anonymousTypeDictionary(&s->m_anonymousTypes) {
    s->m_name = name.constStr();
}

KpIfcSchemaBuilder::~KpIfcSchemaBuilder() = default;

void KpIfcSchemaBuilder::initSchemaVersion(IfcSchemaMajorVersion majorVersion, IfcSchemaMinorVersion minorVersion) {
    schema->m_major = majorVersion;
    schema->m_minor = minorVersion;
}

DictionaryInstance* KpIfcSchemaBuilder::find(const char* name) const {
    const std::string_view text = name;
    const std::size_t hash = Dictionary::hashOf(text);
    for (const Dictionary* dictionary : {typeDictionary, entityDictionary, anonymousTypeDictionary})
        if (DictionaryInstance* const found = dictionary->at(text, hash)) return found;
    return KpIfcSimpleType::find(name);
}

void KpIfcSchemaBuilder::report(const std::string& who, const std::string& name) {
    schema->m_unresolved.push_back(who + ": " + name);
}

void KpIfcSchemaBuilder::build() {
    buildDictionary();
    linkTypes();
    linkSelects();
    linkAttributes();
    linkInverseAttributes();
    std::sort(schema->m_unresolved.begin(), schema->m_unresolved.end());
}

namespace {

/// The name under which one of the dictionaries has what a named type stands for; only reports need it.
std::string nameOver(const DictionaryInstance* underlying, std::initializer_list<const Dictionary*> dictionaries) {
    for (const Dictionary* dictionary : dictionaries)
        for (const Dictionary::Entry& entry : dictionary->entries())
            if (static_cast<const KpIfcDefinedType&>(*entry.object).underlyingType() == underlying) return entry.name;
    return "?";
}

std::string nameOf(const KpIfcAttributeDefinition& attribute) {
    return std::string(attribute.owner() ? attribute.owner()->name() : "?") + '.' + attribute.name();
}

} // namespace

void KpIfcSchemaBuilder::linkTypes() {
    for (const auto& [type, name] : pendingUnderlyingTypes) {
        auto* defined = static_cast<KpIfcDefinedType*>(type);
        defined->underlyingType(find(name));
        if (!defined->underlyingType()) report(defined->name(), name.constStr());
    }
    pendingUnderlyingTypes.clear();
    for (const auto& [type, name] : pendingElementTypes) {
        auto* aggregation = static_cast<KpIfcAggregationType*>(type);
        aggregation->elementType(find(name));
        if (!aggregation->elementType())
            report(nameOver(type, {typeDictionary, anonymousTypeDictionary}), name.constStr());
    }
    pendingElementTypes.clear();
}

void KpIfcSchemaBuilder::linkSelects() {
    for (const auto& [select, names] : pendingSelectMembers) {
        std::vector<const KpIfcNameType*> members;
        members.reserve(names.size());
        for (const KpAnsiString& name : names) {
            if (const DictionaryInstance* member = find(name))
                members.push_back(static_cast<const KpIfcNameType*>(member));
            else
                report(nameOver(select, {typeDictionary}), name.constStr());
        }
        select->members(std::move(members));
    }
    pendingSelectMembers.clear();
}

void KpIfcSchemaBuilder::linkAttributes() {
    const auto link = [this](KpIfcAttributeDefinition& attribute, const KpAnsiString& typeName) {
        attribute.domain(find(typeName));
        if (!attribute.domain()) report(nameOf(attribute), typeName.constStr());
    };
    for (const auto& [attribute, typeName] : pendingAttributeTypes) link(*attribute, typeName);
    pendingAttributeTypes.clear();
    for (const auto& [attribute, record] : pendingDerivedAttributes) {
        link(*attribute, record.typeName);
        if (!record.entityName.isEmpty()) linkRedeclared(*attribute, record.entityName);
    }
    pendingDerivedAttributes.clear();
}

/// "ifcedge_edgestart" redeclares the attribute edgestart of IfcEdge.
void KpIfcSchemaBuilder::linkRedeclared(KpIfcAttributeDefinition& attribute, const KpAnsiString& entityName) {
    const std::string_view name = attribute.name();
    const auto prefix = static_cast<std::size_t>(entityName.length()) + 1;
    const auto* entity = static_cast<const KpIfcEntityType*>(entityDictionary->at(entityName.view()));
    const KpIfcAttributeDefinition* found =
        entity && name.size() > prefix ? entity->findAttribute(name.substr(prefix)) : nullptr;
    const auto* redeclared = found ? found->as<KpIfcExplicitAttributeDefinition>() : nullptr;
    if (!redeclared) return report(nameOf(attribute), entityName.constStr());
    static_cast<KpIfcDerivedAttributeDefinition&>(attribute).redeclaredAttribute(redeclared);
}

void KpIfcSchemaBuilder::linkInverseAttributes() {
    // Those that name their entity first: the others leave out what these name.
    for (const bool isNamed : {true, false})
        for (const auto& [attribute, record] : pendingInverseAttributes)
            if (record.entityName.isEmpty() != isNamed)
                linkInverse(static_cast<KpIfcInverseAttributeDefinition&>(*attribute), record);
    pendingInverseAttributes.clear();
}

void KpIfcSchemaBuilder::linkInverse(KpIfcInverseAttributeDefinition& attribute, const InverseRecord& record) {
    KpIfcEntityType* entity = record.entityName.isEmpty()
                                  ? entityReferringTo(attribute, record.attributeName)
                                  : static_cast<KpIfcEntityType*>(entityDictionary->at(record.entityName.view()));
    attribute.domain(entity);
    const KpIfcAttributeDefinition* found = entity ? entity->findAttribute(record.attributeName.view()) : nullptr;
    const auto* inverted = found ? found->as<KpIfcExplicitAttributeDefinition>() : nullptr;
    attribute.invertedAttribute(inverted);
    if (!inverted)
        report(nameOf(attribute), std::string(record.entityName.constStr()) + '.' + record.attributeName.constStr());
}

/// The one entity that declares an attribute of that name over the owner of the inverse one and that no other inverse
/// attribute of the owner holds; null where there is none or more than one.
KpIfcEntityType* KpIfcSchemaBuilder::entityReferringTo(const KpIfcInverseAttributeDefinition& inverse,
                                                       const KpAnsiString& attributeName) const {
    const auto isNamedElsewhere = [&inverse](const KpIfcEntityType* entity) {
        for (const auto& other : inverse.owner()->attributes())
            if (other.get() != &inverse && other->kind() == KpIfcAttributeKind::inverseAttribute &&
                other->domain() == entity)
                return true;
        return false;
    };
    KpIfcEntityType* referring = nullptr;
    for (const Dictionary::Entry& entry : entityDictionary->entries()) {
        auto* entity = static_cast<KpIfcEntityType*>(entry.object.get());
        for (const auto& attribute : entity->attributes()) {
            if (attribute->kind() != KpIfcAttributeKind::explicitAttribute) break;
            if (attributeName.compareNoCase(attribute->name()) != 0 || !attribute->isOver(*inverse.owner())) continue;
            if (isNamedElsewhere(entity)) continue;
            if (referring) return nullptr;
            referring = entity;
        }
    }
    return referring;
}
