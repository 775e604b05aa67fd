#pragma once

/// Every entity class of the IFC 2x3 schema, and the selects and enumerations that they use. Programs that use a few
/// include their headers instead: <IFC2X3/IfcWall.h>.

#include <IFC2X3/Entities.h>
