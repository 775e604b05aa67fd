#pragma once

#include "plan/ModulePlan.h"
#include "plan/Names.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

/// One function per family of generated files.
namespace kpifcgen::plan {

struct Context {
    const facts::Schema& schema;
    SchemaNames names;
    std::set<std::string> classNames;
    facts::Diagnostics& diagnostics;
};

EnumerationPlan planEnumeration(const facts::Enumeration& enumeration, const Context& context);
SelectPlan planSelect(const facts::Select& select, const Context& context);
EntityPlan planEntity(const facts::Entity& entity, const Context& context);
SchemaPlan planSchema(const Context& context);
PropertiesPlan planProperties(const Context& context);
DescriptorsPlan planDescriptors(const ModulePlan& plan);

/// "<IFC2X3/IfcWall.h>" of a declaration or a hand-written header.
std::string include(std::string_view file, const Context& context);

/// A text as a string literal.
std::string literal(std::string_view text);

/// True where an entity has properties of its own: attributes that it declares or redeclares.
bool hasProperties(const facts::Entity& entity);

void sortUnique(std::vector<std::string>& texts);

} // namespace kpifcgen::plan
