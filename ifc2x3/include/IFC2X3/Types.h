#pragma once

#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcBoolean.h>
#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcVariant.h>

/// KPIFC2X3_EXPORT marks what the module exports: its classes and its three plain functions.
#if defined(_WIN32)
#if defined(KPIFC2X3_BUILDING)
#define KPIFC2X3_EXPORT __declspec(dllexport)
#else
#define KPIFC2X3_EXPORT __declspec(dllimport)
#endif
#else
#define KPIFC2X3_EXPORT __attribute__((visibility("default")))
#endif

namespace KP_SDAI {
class KpIfcDefinedType;
class KpIfcNameType;
} // namespace KP_SDAI

/// The runtime's names as the classes of the schema use them.
namespace IFC2X3 {

using KP_SDAI::KpAnsiString;
using KP_SDAI::KpDbObjectId;
using KP_SDAI::KpIfcArray;
using KP_SDAI::KpIfcAttributeFacts;
using KP_SDAI::KpIfcBoolean;
using KP_SDAI::KpIfcDefinedType;
using KP_SDAI::KpIfcDescriptorSlot;
using KP_SDAI::KpIfcEntityBase;
using KP_SDAI::KpIfcEntityFacts;
using KP_SDAI::KpIfcEntityType;
using KP_SDAI::KpIfcEnumFacts;
using KP_SDAI::KpIfcGUID;
using KP_SDAI::KpIfcInverseFacts;
using KP_SDAI::KpIfcListElementDescriptors;
using KP_SDAI::KpIfcLogical;
using KP_SDAI::KpIfcNameType;
using KP_SDAI::KpIfcSelectDescriptors;
using KP_SDAI::KpIfcSetElementDescriptors;
using KP_SDAI::KpIfcVariant;

} // namespace IFC2X3
