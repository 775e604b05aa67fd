#pragma once

#include <IFC2X3/Property.h>
#include <KpIfcCore/KpIfcEntityType.h>

namespace IFC2X3 {

/// Adds a property, which is taken over, to the collection of the entity that has the attribute.
void addProperty(KP_SDAI::KpIfcPropertyCollection& collection, const KpIfcEntityType* type, ExplicitProperty* property);
void addProperty(KP_SDAI::KpIfcPropertyCollection& collection, const KpIfcEntityType* type, InverseProperty* property);
void addProperty(KP_SDAI::KpIfcPropertyCollection& collection, const KpIfcEntityType* type,
                 HierarchyProperty* property);

} // namespace IFC2X3
