#include "plan/Storage.h"

#include "plan/Names.h"

namespace kpifcgen::plan {

namespace {

using namespace facts;

/// Upper bound of the aggregate classes where the schema has an open one.
constexpr int openBound = 65536;

/// Characters of a globally unique id, the one fixed string with a class of its own.
constexpr int guidWidth = 22;

Storage simple(StorageKind kind, std::string type, std::string initializer = {}) {
    Storage storage;
    storage.kind = kind;
    storage.type = std::move(type);
    storage.initializer = std::move(initializer);
    return storage;
}

Storage text() {
    return simple(StorageKind::Text, "KpAnsiString", " = unsetText()");
}

std::optional<Storage> store(const SimpleType& type) {
    switch (type.kind) {
    case SimpleKind::Real:
    case SimpleKind::Number: return simple(StorageKind::Real, "double", " = Consts::KpRealUnset");
    case SimpleKind::Integer: return simple(StorageKind::Integer, "int", " = Consts::KpIntUnset");
    case SimpleKind::Boolean: return simple(StorageKind::Boolean, "KpIfcBoolean");
    case SimpleKind::Logical: return simple(StorageKind::Logical, "KpIfcLogical");
    case SimpleKind::String:
        return type.fixed && type.width == guidWidth ? simple(StorageKind::Guid, "KpIfcGUID") : text();
    case SimpleKind::Binary: {
        Storage storage = text();
        storage.isBinary = true;
        return storage;
    }
    }
    return std::nullopt;
}

std::optional<Storage> store(const DefinedType* type) {
    return storageOf(type->underlying);
}

std::optional<Storage> store(const Enumeration* enumeration) {
    Storage storage =
        simple(StorageKind::Enumeration, className(enumeration->name), " = " + enumUnsetConstant(enumeration->name));
    storage.included = enumeration->name;
    return storage;
}

std::optional<Storage> store(const Select* select) {
    Storage storage = simple(StorageKind::Select, className(select->name));
    storage.included = select->name;
    return storage;
}

std::optional<Storage> store(const Entity* entity) {
    Storage storage = simple(StorageKind::Reference, "KpDbObjectId");
    storage.target = entity;
    return storage;
}

bool canBeElement(StorageKind kind) {
    return kind == StorageKind::Text || kind == StorageKind::Real || kind == StorageKind::Integer ||
           kind == StorageKind::Reference || kind == StorageKind::Select;
}

std::optional<Storage> store(const Aggregation* aggregation) {
    const auto element = storageOf(aggregation->element);
    if (!element || !canBeElement(element->kind) || aggregation->kind == AggregateKind::Bag) {
        return std::nullopt;
    }
    const auto& [low, high] = aggregation->bounds;
    const bool isOpen = low == 0 && !high;
    std::string family = "KpIfcListAggr";
    if (aggregation->kind == AggregateKind::Set) {
        family = "KpIfcSetAggr";
    } else if (aggregation->kind == AggregateKind::Array) {
        family = "KpIfcArrayAggr";
    }
    Storage storage = *element;
    storage.kind = StorageKind::Aggregate;
    storage.initializer.clear();
    storage.array = "KpIfcArray<" + element->type + ">";
    storage.type = isOpen ? family + "<" + element->type + ">"
                          : family + "Bounded<" + element->type + ", " + std::to_string(low) + ", " +
                                std::to_string(high.value_or(openBound)) + ">";
    return storage;
}

} // namespace

std::optional<Storage> storageOf(const facts::TypeRef& type) {
    return std::visit([](const auto& one) { return store(one); }, type);
}

} // namespace kpifcgen::plan
