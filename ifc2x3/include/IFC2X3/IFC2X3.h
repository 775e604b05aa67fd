#pragma once

/// Every class of the IFC 2x3 schema. Programs that use a few include their headers instead: <IFC2X3/IfcWall.h>.

#include <IFC2X3/Entities.h>
