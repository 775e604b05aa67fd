#pragma once

#include "StepFiles.h"

#include <KpIfcCore/KpIfcEntityType.h>

#include <vector>

/// The module is loaded before the first test and until the last has run, so that the entity types stand.

/// A new, empty file of the schema.
KP_SDAI::KpIfcFile emptyFile();
/// All entities of a schema, abstract ones too.
std::vector<const KP_SDAI::KpIfcEntityType*> entityTypes(const KP_SDAI::KpIfcSchema& schema);
/// The lines of the data section that would be written.
std::string savedRecords(KP_SDAI::KpIfcFile& file);
