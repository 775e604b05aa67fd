#include "entities/EntityClass.h"

#include <KpIfcCore/KpIfcRecordFields.h>

namespace IFC2X3 {

bool isNamed(const KpIfcEntityType* type, const char* name) {
    return type && name && KP_SDAI::compareNoCase(type->name(), name) == 0;
}

KP::ErrorStatus readFields(KpIfcEntityBase& instance, KpSpfFilerBase& filer,
                           std::span<const KpIfcAttributeFacts> rows) {
    KP_SDAI::readRecordFields(instance, filer, rows);
    return KP::eOk;
}

KP::ErrorStatus writeFields(KpIfcEntityBase& instance, KpSpfFilerBase& filer,
                            std::span<const KpIfcAttributeFacts> rows) {
    KP_SDAI::writeRecordFields(instance, filer, rows);
    return KP::eOk;
}

} // namespace IFC2X3
