#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcFacts.h>

namespace KP_SDAI {

class KpIfcEntityType;
class KpIfcSchema;

/// The entity whose instances have a GlobalId, and that attribute, found by their names. Null in a schema without them.
struct RootedEntity {
    explicit RootedEntity(const KpIfcSchema& schema);

    /// The GlobalId of an instance of the entity.
    KpIfcGUID& globalIdOf(KpIfcEntityBase& instance) const { return instance.*globalId->member.guid; }

    const KpIfcEntityType* entity = nullptr;
    const KpIfcAttributeFacts* globalId = nullptr;
};

} // namespace KP_SDAI
