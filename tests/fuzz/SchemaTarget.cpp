#include "Harness.h"
#include "facts/Linker.h"
#include "plan/ModulePlan.h"

using namespace kpifcgen;

/// Whatever the bytes: a schema is refused with the reasons, or all that is generated for it can be planned or is
/// refused with the reasons.
void fuzzTarget(std::string_view bytes) {
    facts::Diagnostics diagnostics;
    const auto schema = facts::load(bytes, diagnostics);
    require(schema.has_value() == diagnostics.empty(), "a schema has either facts or errors");
    if (schema) {
        require(plan::planModule(*schema, "fuzzed", diagnostics).has_value() == diagnostics.empty(),
                "a module has either a plan or errors");
    }
}
