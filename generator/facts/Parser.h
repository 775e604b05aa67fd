#pragma once

#include "facts/Diagnostics.h"
#include "facts/Syntax.h"

#include <string_view>

namespace kpifcgen::facts {

/// Reads a schema file. A line that cannot be read is reported and left out, reading goes on with the next one; the
/// result is meant for linking only where nothing was reported.
///
///     schema IFC2X3 2.3
///     type NAME = T
///     enum NAME                    literals on indented lines
///     select NAME                  members on indented lines
///     [abstract] entity NAME [: SUPERTYPE]
///       NAME: [optional] T
///       derive [ENTITY.]NAME: T
///       inverse NAME: [set|bag BOUNDS of] ENTITY for ATTRIBUTE
///       unique LABEL: NAME, NAME...
///
/// T is a name, a simple type or "list|set|array|bag [low:high] of [unique] T".
syntax::Schema parse(std::string_view text, Diagnostics& diagnostics);

} // namespace kpifcgen::facts
