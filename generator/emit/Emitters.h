#pragma once

#include "emit/File.h"
#include "plan/ModulePlan.h"

#include <vector>

namespace kpifcgen::emit {

/// The files of one declaration: header and source.
std::vector<File> emitEnumeration(const plan::EnumerationPlan& enumeration, const plan::Frame& frame);
std::vector<File> emitSelect(const plan::SelectPlan& select, const plan::Frame& frame);
std::vector<File> emitEntity(const plan::EntityPlan& entity, const plan::Frame& frame);

/// The umbrella header and the steps that register the schema in the dictionary.
std::vector<File> emitSchema(const plan::SchemaPlan& schema, const plan::Frame& frame);

/// The property classes and what fills the collections of the entities with them.
std::vector<File> emitProperties(const plan::PropertiesPlan& properties, const plan::Frame& frame);

/// The tables by which descriptors are released.
std::vector<File> emitDescriptors(const plan::DescriptorsPlan& descriptors, const plan::Frame& frame);

/// All of them.
std::vector<File> emitModule(const plan::ModulePlan& plan);

} // namespace kpifcgen::emit
