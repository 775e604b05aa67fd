#include "PropertyObjects.h"

#include "Failure.h"
#include "Labels.h"
#include "SchemaNames.h"
#include "Targets.h"
#include "Utf8.h"

#include <fmt/format.h>

using namespace KP_SDAI;

namespace kpifc {

namespace {

/// The supertype of all that has properties.
constexpr const char* kObjects = "IfcObjectDefinition";

[[noreturn]] void refuse(const KpIfcEntityType& entity) {
    throw Failure(fmt::format("{} is no type of objects, which have properties", entity.displayName()));
}

} // namespace

ObjectIdentity::ObjectIdentity(const KpIfcEntityBase& object)
    : id(object.instanceName()), type(object.getInstanceType()->displayName()) {
    const Labels labels(*object.owningModel());
    globalId = labels.globalId(object).value_or("");
    name = labels.name(object).value_or("");
}

std::vector<const KpIfcEntityBase*> propertyObjects(const KpIfcModel& model, const std::optional<std::string>& name) {
    const KpIfcEntityType* const objects = model.schema().findEntity(kObjects);
    if (!objects) {
        throw Failure(
            fmt::format("the schema {} has no {}, so nothing has properties", model.schema().name(), kObjects));
    }
    const KpIfcEntityType* entity = name ? model.schema().findEntity(*name) : objects;
    if (!entity) {
        if (!name->starts_with('#') && name->size() != KpIfcGUID::kLength) {
            throw Failure(fmt::format("\"{}\" is neither #15, a GlobalId nor an entity of {}{}", printable(*name),
                                      model.schema().name(),
                                      didYouMean(suggestions(SchemaNames(model.schema()).entities, *name))));
        }
        const KpIfcEntityBase* object = Targets(model).find(*name).instance;
        if (!object->isKindOf(objects)) {
            refuse(*object->getInstanceType());
        }
        return {object};
    }
    if (!entity->isKindOf(objects) && !objects->isKindOf(entity)) {
        refuse(*entity);
    }
    std::vector<const KpIfcEntityBase*> found;
    for (const KpIfcEntityBase* instance : model.instances(entity)) {
        if (instance->isKindOf(objects)) {
            found.push_back(instance);
        }
    }
    return found;
}

} // namespace kpifc
