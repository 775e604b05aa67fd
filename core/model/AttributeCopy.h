#pragma once

namespace KP_SDAI {

class KpIfcEntityBase;

/// Makes all attributes of an instance what those of another one of the same entity are, nil aggregates included.
/// What the two hold is apart then. Neither counts as changed: whoever calls takes care of that.
void copyAttributes(KpIfcEntityBase& to, const KpIfcEntityBase& from);

} // namespace KP_SDAI
