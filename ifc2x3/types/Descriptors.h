#pragma once

#include <IFC2X3/Types.h>

#include <span>

namespace IFC2X3 {

/// The slots of all descriptors of the module, in the order in which they are released. Generated.
extern const std::span<KpIfcDescriptorSlot* const> selectDescriptors;    ///< of values, pointers and arrays
extern const std::span<KpIfcDescriptorSlot* const> aggregateDescriptors; ///< of pointers to aggregates
extern const std::span<KpIfcDescriptorSlot* const> enumerationDescriptors;

} // namespace IFC2X3
