#pragma once

#include <KpIfcCore/KpIfcAggregationType.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcFacts.h>

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace KP_SDAI {

/// How many there may be of something.
struct CheckedBounds {
    static constexpr std::size_t kOpen = std::numeric_limits<std::size_t>::max();
    std::size_t least = 0;
    std::size_t most = kOpen;

    bool allow(std::size_t count) const { return least <= count && count <= most; }
};

/// How many elements an aggregation allows; of an array, whose bounds are indices, just one number.
CheckedBounds boundsOf(const KpIfcAggregationType& type);

/// A field of a record that can be wrong, with what the dictionary says of it.
struct CheckedField {
    std::uint32_t field; ///< counts from 0 in the record
    const KpIfcAttributeFacts* row;
    const KpIfcExplicitAttributeDefinition* attribute;
    CheckedBounds bounds; ///< of aggregates
};

/// An inverse attribute that not every number of referrers fits.
struct CheckedInverse {
    const KpIfcInverseFacts* row;
    const KpIfcInverseAttributeDefinition* attribute;
    CheckedBounds bounds;
};

/// A rule of uniqueness; equal pointers are the same rule.
struct CheckedRule {
    const KpIfcEntityType* entity; ///< whose instances it is about, those of subtypes included
    const KpIfcUniqueFacts* rule;
    std::string attributes; ///< "ApplicationFullName, Version"
    std::vector<std::uint32_t> fields;
};

/// What there is to check of the instances of one entity.
struct CheckedEntity {
    explicit CheckedEntity(const KpIfcEntityType& type);

    const KpIfcEntityType& type;
    std::vector<CheckedField> fields;
    std::vector<CheckedInverse> inverses;
    std::vector<CheckedRule> rules;

private:
    void addInverses(const KpIfcEntityType& level);
    void addRules(const KpIfcEntityType& level);
};

} // namespace KP_SDAI
