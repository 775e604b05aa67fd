#pragma once

#include <KpIfcCore/KpIfcModel.h>

#include <array>
#include <map>
#include <string>
#include <vector>

/// Gives the attributes of instances values of their kinds, chosen by the facts of their entities.
///
/// A value follows from the attribute's place and a number: the variant. Counting variants up walks through all
/// literals of enumerations and all alternatives of selects.
class AttributeValues {
public:
    /// Creates two instances of every entity, for references to point at.
    explicit AttributeValues(KP_SDAI::KpIfcModel& model);

    /// How many variants of an entity it takes to see every literal and alternative.
    int variants(const KP_SDAI::KpIfcEntityType& type);
    /// Sets every attribute.
    void fill(KP_SDAI::KpIfcEntityBase& instance, int variant);
    /// Sets one attribute; `seed` varies values that have no alternatives to walk through.
    void fill(KP_SDAI::KpIfcEntityBase& instance, const KP_SDAI::KpIfcAttributeFacts& attribute, int variant, int seed);

private:
    /// An instance of an entity or a subtype of it; `which` tells two apart.
    KP_SDAI::KpDbObjectId instanceOf(const KP_SDAI::KpIfcEntityType* type, int which) const;
    void fillSelect(KP_SDAI::KpIfcSelect& select, int variant);
    void fillAggregate(KP_SDAI::KpIfcAggr& aggregate, const KP_SDAI::KpIfcAttributeFacts& attribute, int seed);
    template <class Select>
    bool fillSelects(KP_SDAI::KpIfcAggr& aggregate, std::size_t count, int variant);
    const std::vector<std::string>& alternatives(const KP_SDAI::KpIfcSelect& select);

    KP_SDAI::KpIfcModel& m_model;
    std::map<const KP_SDAI::KpIfcEntityType*, std::array<KP_SDAI::KpDbObjectId, 2>> m_targets;
    std::map<std::string, std::vector<std::string>> m_alternatives;
};
