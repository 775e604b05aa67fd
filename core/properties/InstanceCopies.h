#pragma once

#include "properties/PropertyEntities.h"

#include <KpIfcCore/KpIfcArray.h>

namespace KP_SDAI {

class KpIfcModel;

/// Makes and changes instances of property sets. Every operation is one that cannot be refused: callers have checked.
class InstanceCopies {
public:
    InstanceCopies(KpIfcModel& model, const PropertyEntities& entities) : m_model(model), m_entities(entities) {}

    KpIfcEntityBase& create(const KpIfcEntityType* entity);
    /// With a GlobalId of its own and the owner history of `owner`.
    KpIfcEntityBase& createRooted(const KpIfcEntityType* entity, const KpIfcEntityBase& owner);
    /// An instance with the same values but for the GlobalId, which is its own.
    KpIfcEntityBase* copy(const KpIfcEntityBase& instance);

    void put(KpIfcEntityBase& instance, const PropertyAttribute& attribute, const KpIfcVariant& value);
    void putText(KpIfcEntityBase& instance, const PropertyAttribute& attribute, const std::string& utf8);
    void append(KpIfcEntityBase& instance, const PropertyAttribute& attribute, const KpDbObjectId& handle);
    /// Replaces a member of an aggregate; null: takes it out.
    void replace(KpIfcEntityBase& instance, const PropertyAttribute& attribute, const KpDbObjectId& former,
                 const KpDbObjectId& handle);

    /// How many sets, complex entries and overriding relations hold an entry.
    std::size_t holderCount(const KpIfcEntityBase& entry) const;

private:
    KpIfcModel& m_model;
    const PropertyEntities& m_entities;
};

} // namespace KP_SDAI
