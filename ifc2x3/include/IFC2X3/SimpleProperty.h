#pragma once

#include <IFC2X3/Types.h>
#include <KpIfcCore/KpIfcProperty.h>
#include <KpIfcCore/KpIfcSelect.h>

/// Makes the property that an entry of a property set or of element quantities stands for: a single value, a bounded
/// value, a complex one or a quantity. The caller owns it. `typeCodeOut` tells how to show its value: kTypeReal for
/// quantities, kTypeString for complex ones, for a single value the kind of its nominal value; it stays as it was for
/// bounded values and where there is no value.
///
/// Other entities leave `propertyOut` as it was. The result is false for these, and for single values, too: whether a
/// property was made, `propertyOut` tells.
extern "C" KPIFC2X3_EXPORT bool kpIfcBuildPropertyForSimple(KP_SDAI::KpIfcEntityBase* entity,
                                                            KP_SDAI::KpIfcProperty*& propertyOut,
                                                            KP_SDAI::KpTypeCodeKind& typeCodeOut);
