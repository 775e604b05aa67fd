#include <IFC2X3/SimpleProperty.h>

#include <IFC2X3/IfcComplexProperty.h>
#include <IFC2X3/IfcPhysicalComplexQuantity.h>
#include <IFC2X3/IfcPropertyBoundedValue.h>
#include <IFC2X3/IfcPropertySingleValue.h>
#include <IFC2X3/IfcQuantityArea.h>
#include <IFC2X3/IfcQuantityCount.h>
#include <IFC2X3/IfcQuantityLength.h>
#include <IFC2X3/IfcQuantityTime.h>
#include <IFC2X3/IfcQuantityVolume.h>
#include <IFC2X3/IfcQuantityWeight.h>
#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcSimpleProperty.h>

using namespace IFC2X3;
using namespace KP_SDAI;

namespace {

struct Quantity {
    KpIfcEntityType* const* type;
    const char* attribute;
};

constexpr Quantity kQuantities[] = {
    {&IfcQuantityArea::g_pEntityType, "areavalue"},     {&IfcQuantityCount::g_pEntityType, "countvalue"},
    {&IfcQuantityLength::g_pEntityType, "lengthvalue"}, {&IfcQuantityTime::g_pEntityType, "timevalue"},
    {&IfcQuantityVolume::g_pEntityType, "volumevalue"}, {&IfcQuantityWeight::g_pEntityType, "weightvalue"},
};

/// The kind of the nominal value; `typeCode` as it was where there is none.
void readTypeCode(const KpIfcEntityBase& instance, KpTypeCodeKind& typeCode) {
    const KpIfcModel* const model = instance.owningModel();
    if (model && model->mode() == kAccessUndefined) return;
    KpIfcVariant value;
    if (peekAttribute(instance, "nominalvalue", value)) value.get(typeCode);
}

} // namespace

bool kpIfcBuildPropertyForSimple(KpIfcEntityBase* entity, KpIfcProperty*& propertyOut, KpTypeCodeKind& typeCodeOut) {
    const KpIfcEntityType* const type = entity ? entity->getInstanceType() : nullptr;
    if (!type) return false;
    if (type == IfcPropertySingleValue::g_pEntityType) {
        propertyOut = new KpIfcPropertySingleValue;
        readTypeCode(*entity, typeCodeOut);
        return false; // on purpose: whether there is a property, propertyOut tells
    }
    if (type == IfcPropertyBoundedValue::g_pEntityType) {
        propertyOut = new KpIfcPropertyBoundedValue;
        return true;
    }
    if (type == IfcComplexProperty::g_pEntityType || type == IfcPhysicalComplexQuantity::g_pEntityType) {
        propertyOut = new KpIfcComplexProperty("hasQuantities");
        typeCodeOut = kTypeString;
        return true;
    }
    for (const Quantity& quantity : kQuantities) {
        if (type != *quantity.type) continue;
        propertyOut = new KpIfcQuantityClusterProperty(quantity.attribute);
        typeCodeOut = kTypeReal;
        return true;
    }
    return false;
}
