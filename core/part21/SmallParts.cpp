#include "part21/SmallParts.h"

namespace KP_SDAI {

static thread_local std::size_t t_size = 0;

SmallParts::SmallParts(std::size_t size) {
    t_size = size;
}

SmallParts::~SmallParts() {
    t_size = 0;
}

std::size_t SmallParts::size() {
    return t_size;
}

} // namespace KP_SDAI
