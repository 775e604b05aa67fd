#pragma once

#include "HeaderFields.h"
#include "ModelNodes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kpifc {

/// A field that is not the same in two instances; none on the side whose entity has no such attribute.
struct FieldChange {
    std::optional<std::size_t> a;
    std::optional<std::size_t> b;
    std::vector<std::uint32_t> onlyA; ///< of aggregates on both sides: the members of one that the other has not
    std::vector<std::uint32_t> onlyB;
};

/// An instance, or record kept as text, that both models have, and what of it is not the same.
struct InstanceChange {
    ModelNodes::Node a;
    ModelNodes::Node b;
    std::vector<FieldChange> fields; ///< may be empty where the entity is another one
};

/// What two models differ in, by NodeMatching.
struct ModelDifferences {
    ModelDifferences(const ModelNodes& a, const ModelNodes& b);

    std::vector<ModelNodes::Node> removed; ///< those of the first model that the second has not; ascending
    std::vector<ModelNodes::Node> added;
    std::vector<InstanceChange> changed; ///< ascending in the first model
    std::size_t changedFields = 0;       ///< of all of them; another entity counts as one
};

bool areOfOneEntity(const ModelNodes& a, const ModelNodes& b, const InstanceChange& change);

/// A header field, or other record by its keyword, with its texts on both sides.
struct HeaderChange {
    std::string name;
    std::vector<std::string> a;
    std::vector<std::string> b;
};

std::vector<HeaderChange> headerDifferences(const KP_SDAI::KpIfcHeader& a, const KP_SDAI::KpIfcHeader& b);

} // namespace kpifc
