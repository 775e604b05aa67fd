#pragma once

#include <cstddef>

namespace KP_SDAI {

/// The size of a large page. Memory that is handed out in these costs the system a tenth of what it costs in small
/// ones; but what is not used of one is taken, too.
constexpr std::size_t kLargePage = std::size_t{2} * 1024 * 1024;

/// Memory of `pages` large pages, for std::free(); in small pages where the system has no others. Null where there is
/// none.
void* allocateLargePages(std::size_t pages);

/// Says of memory that is about to be written that it should be in large pages as far as these lie within it.
void preferLargePages(void* memory, std::size_t bytes);

} // namespace KP_SDAI
