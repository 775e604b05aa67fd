#pragma once

#include "facts/Diagnostics.h"
#include "facts/Schema.h"
#include "facts/Syntax.h"

#include <optional>
#include <string_view>

namespace kpifcgen::facts {

/// Resolves every name and fills in what follows from the declarations; none where something was reported.
std::optional<Schema> link(const syntax::Schema& written, Diagnostics& diagnostics);

/// Parses and links a schema file's text; none where something was reported.
std::optional<Schema> load(std::string_view text, Diagnostics& diagnostics);

} // namespace kpifcgen::facts
