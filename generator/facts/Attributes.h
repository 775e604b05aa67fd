#pragma once

#include "facts/Diagnostics.h"
#include "facts/Schema.h"
#include "facts/Syntax.h"

namespace kpifcgen::facts {

/// Resolves what refers to attributes: redeclarations, inverted attributes, uniqueness rules; reports attribute names
/// that stand twice in a chain of supertypes. Needs chains and the alternatives of selects; declarations of `schema`
/// stand at the same index as those of `written`.
void linkAttributes(const syntax::Schema& written, Schema& schema, Diagnostics& diagnostics);

} // namespace kpifcgen::facts
