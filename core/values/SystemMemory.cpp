#include "values/SystemMemory.h"

#include <cstdlib>
#include <memory>

#if __has_include(<sys/mman.h>)
#include <sys/mman.h>
#endif

namespace KP_SDAI {

void* allocateLargePages(std::size_t pages) {
    void* const memory = std::aligned_alloc(kLargePage, pages * kLargePage);
    if (memory) preferLargePages(memory, pages * kLargePage);
    return memory;
}

void preferLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) {
#ifdef MADV_HUGEPAGE
    void* begin = memory;
    if (!std::align(kLargePage, kLargePage, begin, bytes)) return;
    ::madvise(begin, bytes / kLargePage * kLargePage, MADV_HUGEPAGE); // a wish: it may fail
#endif
}

} // namespace KP_SDAI
