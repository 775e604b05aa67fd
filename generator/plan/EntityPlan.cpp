#include "plan/Departures.h"
#include "plan/Planners.h"
#include "plan/Storage.h"

#include <algorithm>

namespace kpifcgen::plan {

namespace {

/// True for a defined type that stands for an aggregation.
bool isDefinedAggregate(const facts::TypeRef& type) {
    const auto* defined = std::get_if<const facts::DefinedType*>(&type);
    return defined && std::holds_alternative<const facts::Aggregation*>((*defined)->underlying);
}

/// What an attribute is an aggregate of, defined types followed to their ends; null where it is none.
const facts::Aggregation* aggregationOf(const facts::TypeRef& type) {
    const facts::TypeRef underlying = facts::underlying(type);
    const auto* aggregation = std::get_if<const facts::Aggregation*>(&underlying);
    return aggregation ? *aggregation : nullptr;
}

/// Bits that a binary, or each binary of an aggregate, has at most; 0 where the schema does not say.
int binaryWidth(const facts::TypeRef& type) {
    const facts::Aggregation* aggregation = aggregationOf(type);
    const facts::TypeRef value = facts::underlying(aggregation ? aggregation->element : type);
    const auto* simple = std::get_if<facts::SimpleType>(&value);
    return simple && simple->kind == facts::SimpleKind::Binary ? simple->width.value_or(0) : 0;
}

/// Flags of a field; `fields` is the record it stands in.
std::string flags(const facts::ExplicitAttribute& attribute, const std::vector<facts::RecordField>& fields,
                  bool isBinary, bool isDerived) {
    std::string text;
    const auto add = [&](const char* flag) { text += (text.empty() ? "" : " | ") + std::string(flag); };
    if (attribute.optional && !isDerived) {
        add("kOptional");
    }
    if (fields.front().attribute == &attribute) {
        add("kFirst");
    }
    if (isBinary && !isDerived) {
        add("kBinary");
    }
    if (isDefinedAggregate(attribute.type)) {
        add("kDefinedType");
    }
    if (const facts::Aggregation* aggregation = aggregationOf(attribute.type); aggregation && aggregation->unique) {
        add("kUnique");
    }
    return text.empty() ? "0" : text;
}

class EntityPlanner {
public:
    EntityPlanner(const facts::Entity& entity, const Context& context) : m_entity(entity), m_context(context) {}

    EntityPlan run() {
        planClass();
        for (const auto& attribute : m_entity.explicitAttributes) {
            planAttribute(attribute);
        }
        for (const auto& inverse : m_entity.inverseAttributes) {
            planInverse(inverse);
        }
        planCounterparts();
        planRecord();
        for (const auto& rule : m_entity.uniqueRules) {
            planUniqueRule(rule);
        }
        sortUnique(m_plan.files.headerIncludes);
        sortUnique(m_plan.files.sourceIncludes);
        sortUnique(m_plan.forwardDeclarations);
        return std::move(m_plan);
    }

private:
    void planClass() {
        const std::string& name = m_entity.name;
        m_plan.files.headerPath = m_context.names.headerPath(name);
        m_plan.files.sourcePath = entitySource(name);
        m_plan.files.include = include(name, m_context);
        m_plan.name = name;
        m_plan.className = className(name);
        m_plan.isRoot = !m_entity.supertype;
        m_plan.isAbstract = m_entity.abstract;
        m_plan.summary = (m_entity.abstract ? "Abstract entity " : "Entity ") + name;
        if (m_entity.supertype) {
            m_plan.baseClass = className(m_entity.supertype->name);
            m_plan.baseFacts = "&" + entityFacts(m_plan.baseClass);
            m_plan.files.headerIncludes = {include(m_entity.supertype->name, m_context)};
            m_plan.summary += ", subtype of " + m_entity.supertype->name;
        } else {
            m_plan.baseClass = "KpIfcEntityBase";
            m_plan.baseFacts = "nullptr";
            m_plan.files.headerIncludes = {include("Entity", m_context)};
        }
        m_plan.summary += ".";
    }

    void planAttribute(const facts::ExplicitAttribute& attribute) {
        const auto storage = storageOf(attribute.type);
        if (!storage) {
            m_context.diagnostics.push_back(
                {attribute.at,
                 "attribute '" + attribute.name + "': there is no class for a '" + facts::spell(attribute.type) + "'"});
            return;
        }
        EntityPlan::Attribute planned{.kind = EntityPlan::AccessorKind::Value,
                                      .type = storage->type,
                                      .member = member(attribute.name),
                                      .initializer = storage->initializer,
                                      .getter = getter(attribute.name),
                                      .setter = setter(attribute.name),
                                      .array = storage->array,
                                      .instanceGetter = {},
                                      .instanceClass = {}};
        if (storage->kind == StorageKind::Aggregate) {
            planned.kind = EntityPlan::AccessorKind::Aggregate;
        } else if (storage->kind == StorageKind::Reference) {
            planned.kind = EntityPlan::AccessorKind::Reference;
            planned.instanceGetter = instanceGetter(attribute.name, m_context.classNames);
            planned.instanceClass = className(storage->target->name);
            if (!m_entity.isKindOf(*storage->target)) {
                m_plan.forwardDeclarations.push_back(planned.instanceClass);
            }
        }
        m_plan.attributes.push_back(std::move(planned));
        if (!storage->included.empty()) {
            m_plan.files.headerIncludes.push_back(include(storage->included, m_context));
        }
        if (storage->target && !m_entity.isKindOf(*storage->target)) {
            m_plan.files.sourceIncludes.push_back(include(storage->target->name, m_context));
        }
        m_plan.attributeRows.push_back(row(attribute, *storage));
    }

    void planInverse(const facts::InverseAttribute& inverse) {
        m_plan.inverseMember = inverseMember();
        m_plan.inverseRows.push_back({"inverse<&" + m_plan.className + "::" + m_plan.inverseMember + ">",
                                      {literal(inverse.name), std::to_string(m_plan.inverseRows.size())}});
        m_plan.inverseGetters.push_back(inverseGetter(inverse.name));
    }

    void planCounterparts() {
        const auto feedsInverses = [](const facts::ExplicitAttribute& attribute) {
            return !attribute.inverses.empty();
        };
        for (std::size_t i = 0; i < m_entity.explicitAttributes.size(); ++i) {
            for (const facts::InverseAttribute* inverse : m_entity.explicitAttributes[i].inverses) {
                planCounterpart(i, *inverse);
            }
        }
        if (m_plan.counterpartRows.empty()) {
            return;
        }
        const auto base = std::ranges::find_if(m_entity.supertypes(), [&](const facts::Entity* supertype) {
            return std::ranges::any_of(supertype->explicitAttributes, feedsInverses);
        });
        m_plan.counterpartsBase = base == m_entity.supertypes().end() ? "KpIfcEntityBase" : className((*base)->name);
    }

    void planCounterpart(std::size_t attribute, const facts::InverseAttribute& inverse) {
        const auto& siblings = inverse.owner->inverseAttributes;
        const auto index = std::ranges::find(siblings, &inverse, [](const auto& one) { return &one; });
        EntityPlan::Row row{"",
                            {"&attributes[" + std::to_string(attribute) + "]", entityTypeAddress(*inverse.owner),
                             std::to_string(index - siblings.begin())}};
        if (inverse.target != &m_entity) {
            row.arguments.push_back(entityTypeAddress(*inverse.target));
        }
        m_plan.counterpartRows.push_back(std::move(row));
    }

    /// Of another entity's dictionary type, for which its header is included.
    std::string entityTypeAddress(const facts::Entity& entity) {
        if (!m_entity.isKindOf(entity)) {
            m_plan.files.sourceIncludes.push_back(include(entity.name, m_context));
        }
        return "&" + entityTypeOf(className(entity.name));
    }

    EntityPlan::Row row(const facts::ExplicitAttribute& attribute, const Storage& storage) const {
        const auto text = flags(attribute, m_entity.recordFields, storage.isBinary, false);
        if (isNotKept(m_context.schema.name, attribute.owner->name, attribute.name)) {
            return {"notKept<&" + m_plan.className + "::" + member(attribute.name) + ">",
                    {literal(attribute.name), text}};
        }
        EntityPlan::Row row{"field<&" + m_plan.className + "::" + member(attribute.name) + ">",
                            {literal(attribute.name), text}};
        if (storage.target) {
            row.arguments.push_back("&" + entityTypeOf(className(storage.target->name)));
        }
        if (const int width = binaryWidth(attribute.type)) {
            row.arguments.insert(row.arguments.end(), {"nullptr", std::to_string(width)});
        }
        return row;
    }

    void planRecord() {
        const auto isDerived = [](const facts::RecordField& field) { return field.redeclaredAs != nullptr; };
        if (std::ranges::none_of(m_entity.recordFields, isDerived)) {
            return;
        }
        for (const auto& field : m_entity.recordFields) {
            const facts::ExplicitAttribute& attribute = *field.attribute;
            const auto storage = storageOf(attribute.type);
            if (field.redeclaredAs) {
                m_plan.recordRows.push_back(
                    {"derived", {literal(attribute.name), flags(attribute, m_entity.recordFields, false, true)}});
            } else if (storage) { // a type without class is reported where its owner is planned
                m_plan.recordRows.push_back(row(attribute, *storage));
                if (storage->target && !m_entity.isKindOf(*storage->target)) {
                    m_plan.files.sourceIncludes.push_back(include(storage->target->name, m_context));
                }
            }
        }
    }

    void planUniqueRule(const facts::UniqueRule& rule) {
        std::string attributes;
        for (const auto& attribute : rule.attributes) {
            attributes += (attributes.empty() ? "" : " ");
            attributes += std::visit([](const auto* one) { return one->name; }, attribute);
        }
        m_plan.uniqueRows.push_back({"", {literal(rule.label), literal(attributes)}});
    }

    const facts::Entity& m_entity;
    const Context& m_context;
    EntityPlan m_plan;
};

} // namespace

EntityPlan planEntity(const facts::Entity& entity, const Context& context) {
    return EntityPlanner(entity, context).run();
}

} // namespace kpifcgen::plan
