#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcFacts.h>

#include <span>

namespace KP_SDAI {

/// Reads the fields of `rows` into the members of an instance of their class, in order: what the inFields() of entity
/// classes are made of. Values that a member cannot hold are the filer's matter.
KPIFCCORE_EXPORT void readRecordFields(KpIfcEntityBase& instance, KpSpfFilerBase& filer,
                                       std::span<const KpIfcAttributeFacts> rows);
/// Writes the members of an instance as the fields of `rows`, in order: what outFields() are made of.
KPIFCCORE_EXPORT void writeRecordFields(KpIfcEntityBase& instance, KpSpfFilerBase& filer,
                                        std::span<const KpIfcAttributeFacts> rows);

} // namespace KP_SDAI
