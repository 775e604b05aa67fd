#pragma once

#include "ModelNodes.h"
#include "ValueForm.h"

#include <cstdint>
#include <vector>

namespace kpifc {

/// Keys of all nodes of a model that are equal where their content is: entity and values, references by the content of
/// what they lead to, all the way down. Neither names nor GlobalIds have a say. (Keys have 64 bits; that two of a
/// million contents share one by chance is a matter of one in ten million.)
///
/// An instance with an identity is the same whatever its content: its key is given, in `identities` (0: has none), and
/// no way goes on through it. Instances on a cycle are told apart by what is near.
struct ContentKeys {
    ContentKeys(const ModelNodes& nodes, const std::vector<std::uint64_t>& identities);

    std::vector<std::uint64_t> keys;
    std::vector<ModelNodes::Node> upwards; ///< the nodes without identity, each after all that it refers to
    std::vector<bool> isReferredTo;        ///< by any node
};

/// A hash of the entity and all fields, without those of GlobalIds.
std::uint64_t contentHash(const ModelNodes& nodes, ModelNodes::Node node, ValueForm& form);

} // namespace kpifc
