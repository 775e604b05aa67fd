#include "Require.h"
#include "facts/Linker.h"
#include "plan/ModulePlan.h"

#include <cstddef>
#include <cstdint>
#include <string>

using namespace kpifcgen;

/// Whatever the bytes: a schema is refused with the reasons, or all that is generated for it can be planned or is
/// refused with the reasons.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    facts::Diagnostics diagnostics;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto schema = facts::load(text, diagnostics);
    require(schema.has_value() == diagnostics.empty(), "a schema has either facts or errors");
    if (schema) {
        require(plan::planModule(*schema, "fuzzed", diagnostics).has_value() == diagnostics.empty(),
                "a module has either a plan or errors");
    }
    return 0;
}
