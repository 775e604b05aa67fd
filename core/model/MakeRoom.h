#pragma once

#include <cstddef>

namespace KP_SDAI {

/// Sees to it that what is appended next needs no memory: for steps that must not fail once the first is done.
template <class Vector>
void makeRoomForOne(Vector& vector) {
    constexpr std::size_t kFirst = 8;
    if (vector.size() == vector.capacity()) vector.reserve(vector.empty() ? kFirst : 2 * vector.size());
}

} // namespace KP_SDAI
