#include "PropertyObjects.h"

#include "Failure.h"
#include "SchemaNames.h"
#include "Targets.h"
#include "Utf8.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpStepText.h>

#include <fmt/format.h>

using namespace KP_SDAI;

namespace kpifc {

namespace {

/// The supertype of all that has properties, and what tells its instances apart.
constexpr const char* kObjects = "IfcObjectDefinition";
constexpr const char* kGlobalId = "GlobalId";
constexpr const char* kName = "Name";

[[noreturn]] void refuse(const KpIfcEntityType& entity) {
    throw Failure(fmt::format("{} is no type of objects, which have properties", entity.displayName()));
}

} // namespace

ObjectIdentity::ObjectIdentity(const KpIfcEntityBase& object)
    : id(object.instanceName()), type(object.getInstanceType()->displayName()) {
    KpIfcVariant value;
    if (peekAttribute(object, kGlobalId, value)) {
        const KpIfcGUID* own = value.getIf<KpIfcGUID>();
        globalId = own && !own->isUnset() ? own->constStr() : "";
    }
    const char* const* text = peekAttribute(object, kName, value) ? value.getIf<const char*>() : nullptr;
    if (text && !KpAnsiString(*text).isUnset()) {
        const std::string_view held = KpAnsiString::viewOf(*text);
        name = object.owningModel()->textIsUtf8() ? std::string(held) : KpStepText::decode(held);
    }
}

std::vector<const KpIfcEntityBase*> propertyObjects(const KpIfcModel& model, const std::optional<std::string>& name) {
    const KpIfcEntityType* const objects = model.schema().findEntity(kObjects);
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
