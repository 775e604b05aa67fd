#include <IFC2X3/Entity.h>

#include <KpIfcCore/KpIfcEntityType.h>

namespace IFC2X3 {

namespace {

bool isNamed(const KpIfcEntityType& type, const char* name) {
    return name && KP_SDAI::compareNoCase(type.name(), name) == 0;
}

} // namespace

bool Entity::isInstanceOf(const KpIfcEntityType* type) const {
    return type == getInstanceType();
}

bool Entity::isInstanceOf(const char* typeName) const {
    const KpIfcEntityType* type = getInstanceType();
    return type && isNamed(*type, typeName);
}

bool Entity::isKindOf(const char* typeName) const {
    for (const KpIfcEntityType* type = getInstanceType(); type; type = type->superType())
        if (isNamed(*type, typeName)) return true;
    return false;
}

} // namespace IFC2X3
