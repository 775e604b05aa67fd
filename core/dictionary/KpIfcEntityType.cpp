#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcProperty.h>

namespace KP_SDAI {

KpIfcEntityType::KpIfcEntityType(KpIfcSchema* schema, const char* name, Factory factory, PropertyBuilder builder,
                                 const KpIfcEntityType* supertype)
    : KpIfcNameType(name), m_schema(schema), m_factory(factory), m_propertyBuilder(builder), m_supertype(supertype) {}

KpIfcEntityType::~KpIfcEntityType() {
    delete m_properties.load();
}

const KpIfcPropertyCollection& KpIfcEntityType::properties() const {
    if (const KpIfcPropertyCollection* made = m_properties.load(std::memory_order_acquire)) return *made;
    const KpIfcAutoLocker guard(kpifcGetVaraintTypeLocker());
    if (const KpIfcPropertyCollection* made = m_properties.load(std::memory_order_relaxed)) return *made;
    auto collection = std::make_unique<KpIfcPropertyCollection>();
    if (m_propertyBuilder) m_propertyBuilder(collection.get(), this);
    m_properties.store(collection.get(), std::memory_order_release);
    return *collection.release();
}

std::vector<const KpIfcProperty*> KpIfcEntityType::allProperties() const {
    std::vector<const KpIfcProperty*> all;
    if (m_supertype) all = m_supertype->allProperties();
    const KpIfcPropertyCollection& own = properties();
    for (std::size_t i = 0; i < own.size(); ++i) all.push_back(&own[i]);
    return all;
}

const KpIfcProperty* KpIfcEntityType::findProperty(std::string_view name) const {
    for (const KpIfcEntityType* type = this; type; type = type->superType())
        if (const KpIfcProperty* found = type->properties().find(name)) return found;
    return nullptr;
}

KpIfcEntityType* KpIfcEntityType::createEntityType(KpIfcSchema* schema, const char* name, bool, Factory factory,
                                                   PropertyBuilder propertyBuilder, KpIfcEntityType*& staticType,
                                                   const KpIfcEntityType* supertype) {
    std::unique_ptr<KpIfcEntityType> type(new KpIfcEntityType(schema, name, factory, propertyBuilder, supertype));
    // The supertype is constant for everybody but its subtypes' registration.
    if (supertype) const_cast<KpIfcEntityType*>(supertype)->m_subtypes.push_back(type.get());
    return staticType = type.release();
}

bool KpIfcEntityType::isKindOf(const KpIfcEntityType* other) const {
    for (const KpIfcEntityType* type = this; type; type = type->m_supertype)
        if (type == other) return true;
    return false;
}

void KpIfcEntityType::appendAttribute(KpIfcAttributeDefinition* attribute) {
    std::unique_ptr<KpIfcAttributeDefinition> owned(attribute);
    attribute->m_owner = this;
    if (attribute->kind() == KpIfcAttributeKind::explicitAttribute)
        static_cast<KpIfcExplicitAttributeDefinition*>(attribute)->m_index = m_explicitCount++;
    m_attributes.push_back(std::move(owned));
}

std::vector<const KpIfcAttributeDefinition*> KpIfcEntityType::allAttributes() const {
    std::vector<const KpIfcAttributeDefinition*> all;
    if (m_supertype) all = m_supertype->allAttributes();
    for (const auto& attribute : m_attributes) all.push_back(attribute.get());
    return all;
}

const KpIfcAttributeDefinition* KpIfcEntityType::findAttribute(std::string_view name) const {
    for (const KpIfcEntityType* type = this; type; type = type->m_supertype)
        for (const auto& attribute : type->m_attributes)
            if (equalNoCase(name.data(), name.size(), attribute->name())) return attribute.get();
    return nullptr;
}

const KpIfcDerivedAttributeDefinition*
KpIfcEntityType::redeclarationOf(const KpIfcAttributeDefinition& attribute) const {
    for (const KpIfcEntityType* type = this; type && type != attribute.owner(); type = type->m_supertype)
        for (const auto& own : type->m_attributes)
            if (const auto* derived = own->as<KpIfcDerivedAttributeDefinition>())
                if (derived->redeclaredAttribute() == &attribute) return derived;
    return nullptr;
}

void KpIfcEntityType::facts(const KpIfcEntityFacts* facts) {
    m_facts = facts;
    m_recordFields.clear();
    m_counterparts.clear();
    if (!facts) return;
    if (m_supertype) m_counterparts = m_supertype->m_counterparts;
    m_counterparts.insert(m_counterparts.end(), facts->counterparts, facts->counterparts + facts->counterpartCount);
    if (facts->record) {
        m_recordFields.reserve(facts->recordCount);
        for (std::uint32_t i = 0; i < facts->recordCount; ++i) m_recordFields.push_back(&facts->record[i]);
        return;
    }
    if (m_supertype) {
        m_recordFields.reserve(m_supertype->m_recordFields.size() + facts->attributeCount);
        m_recordFields = m_supertype->m_recordFields;
    }
    for (std::uint32_t i = 0; i < facts->attributeCount; ++i) m_recordFields.push_back(&facts->attributes[i]);
}

} // namespace KP_SDAI
