#include "plan/Planners.h"
#include "plan/Storage.h"

namespace kpifcgen::plan {

namespace {

/// More are counted rather than listed in the comment on the class.
constexpr std::size_t mostListed = 8;

/// How the hand-written base class holds values of one kind; no `store` for what the base class resolves itself.
struct Holding {
    std::string_view typeCode;
    std::string_view store;
    std::string argument;
};

Holding holdingOf(const Storage& storage) {
    switch (storage.kind) {
    case StorageKind::Text:
    case StorageKind::Guid: return {"kTypeString", "setString", "const KpAnsiString&"};
    case StorageKind::Real: return {"kTypeReal", "setDouble", "double"};
    case StorageKind::Integer: return {"kTypeInteger", "setInt", "int"};
    case StorageKind::Boolean: return {"kTypeBoolean", "setBoolean", "KpIfcBoolean"};
    case StorageKind::Logical: return {"kTypeLogical", "setLogical", "KpIfcLogical"};
    case StorageKind::Enumeration: return {"kTypeEnumeration", "setEnumeration", storage.type};
    case StorageKind::Aggregate: return {"kTypeAggregate", "setAggregate", "const " + storage.array + "&"};
    case StorageKind::Reference:
    case StorageKind::Select: // nested selects are flattened
        break;
    }
    return {"kTypeEntity", "", ""};
}

std::string row(const std::string& name, const Storage& storage, std::string_view typeCode) {
    std::string text = "\"" + name + "\", " + std::string(typeCode);
    if (storage.kind == StorageKind::Reference) {
        text += ", &" + entityTypeOf(className(storage.target->name));
    } else if (storage.kind == StorageKind::Enumeration) {
        text += ", nullptr, &EnumFacts<" + storage.type + ">::value";
    } else if (storage.kind == StorageKind::Aggregate) {
        text += ", nullptr, nullptr, &kAggregateFacts<" + storage.type + ">";
    }
    return text;
}

std::string summary(const facts::Select& select) {
    const auto count = select.alternatives.size();
    std::string text = "EXPRESS select of ";
    if (count > mostListed) {
        return text + std::to_string(count) + " alternatives.";
    }
    for (std::size_t i = 0; i < count; ++i) {
        text += facts::spell(select.alternatives[i]) + (i + 1 < count ? ", " : ".");
    }
    return text;
}

facts::Diagnostic noCodeFor(const std::string& alternative, const facts::Select& select) {
    return {select.at, "select '" + select.name + "': there is no code for a value of '" + alternative + "'"};
}

/// The kind of aggregates of which a select is an element; none where no attribute holds aggregates of it.
std::optional<facts::AggregateKind> elementOf(const facts::Select& select, const facts::Schema& schema) {
    std::optional<facts::AggregateKind> kind;
    for (const auto& entity : schema.entities) {
        for (const auto& attribute : entity.explicitAttributes) {
            const facts::TypeRef type = facts::underlying(attribute.type);
            const auto* aggregation = std::get_if<const facts::Aggregation*>(&type);
            if (!aggregation) {
                continue;
            }
            const facts::TypeRef element = facts::underlying((*aggregation)->element);
            const auto* held = std::get_if<const facts::Select*>(&element);
            if (held && *held == &select) {
                kind = (*aggregation)->kind;
            }
        }
    }
    return kind;
}

/// The descriptors of a select; those of arrays and aggregates of it come with them where it is an element.
void planDescriptors(SelectPlan& plan, const facts::Select& select, const Context& context) {
    const std::string qualified = context.names.space + "::" + select.name;
    plan.descriptors = "KpIfcSelectDescriptors";
    plan.describe = "describeSelect";
    plan.descriptorNames = {{"value", qualified}, {"pointer", qualified + "*"}};
    const auto kind = elementOf(select, context.schema);
    if (!kind) {
        return;
    }
    const bool isSet = *kind == facts::AggregateKind::Set;
    const std::string family = isSet ? "Set" : "List";
    plan.heldIn = isSet ? "set" : "list";
    plan.descriptors = "KpIfc" + family + "ElementDescriptors";
    plan.describe = "describe" + family + "Element";
    // Programs know the two spellings of the runtime's namespace as they are.
    plan.descriptorNames.push_back({"array", "SDAI_NAMESPACE_PFX KpIfcArray<" + qualified + ">"});
    plan.descriptorNames.push_back({"aggregate", "::KP_SDAI:: KpIfc" + family + "Aggr<" + qualified + ">*"});
}

} // namespace

SelectPlan planSelect(const facts::Select& select, const Context& context) {
    const std::string& name = select.name;
    SelectPlan plan;
    plan.files.headerPath = context.names.headerPath(name);
    plan.files.sourcePath = typeSource(name);
    plan.files.include = include(name, context);
    plan.files.headerIncludes = {include("Select", context)};
    plan.name = name;
    plan.className = className(name);
    plan.summary = summary(select);
    plan.tagType = selectTagType(name);
    plan.alternativeTable = selectAlternativeTable(name);
    plan.facts = selectFacts(name);
    for (const facts::TypeRef& type : select.alternatives) {
        const std::string alternative = facts::spell(type);
        const auto storage = storageOf(type);
        if (!storage || storage->isBinary) {
            context.diagnostics.push_back(noCodeFor(alternative, select));
            continue;
        }
        if (storage->kind == StorageKind::Reference) {
            plan.files.sourceIncludes.push_back(include(alternative, context));
        } else if (storage->kind == StorageKind::Enumeration) {
            plan.files.headerIncludes.push_back(include(alternative, context));
        }
        const auto [typeCode, store, argument] = holdingOf(*storage);
        plan.alternatives.push_back({.tag = selectTag(alternative),
                                     .tester = selectTester(alternative),
                                     .row = row(alternative, *storage, typeCode),
                                     .hasSetter = !store.empty(),
                                     .setter = selectSetter(alternative),
                                     .argument = argument,
                                     .store = std::string(store)});
    }
    sortUnique(plan.files.headerIncludes);
    sortUnique(plan.files.sourceIncludes);
    planDescriptors(plan, select, context);
    return plan;
}

} // namespace kpifcgen::plan
