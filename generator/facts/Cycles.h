#pragma once

#include "facts/Diagnostics.h"
#include "facts/Schema.h"

namespace kpifcgen::facts {

/// Reports each cycle of supertypes, of defined types (through aggregations too) and of selects once.
void reportCycles(const Schema& schema, Diagnostics& diagnostics);

} // namespace kpifcgen::facts
