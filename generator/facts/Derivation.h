#pragma once

#include "facts/Schema.h"

/// Facts that follow from linked declarations; each function states what must be there before. Cycles must have been
/// refused.
namespace kpifcgen::facts {

/// Underlying types of defined types, alternatives of selects; needs types and members.
void deriveTypeFacts(Schema& schema);

/// Chains, subtypes and the order of supertypes first; needs supertypes.
void deriveChains(Schema& schema);

/// Record fields, the inverses of each explicit attribute, inverted entities; needs chains and linked attributes.
void deriveAttributeFacts(Schema& schema);

} // namespace kpifcgen::facts
