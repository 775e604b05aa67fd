#include "values/SystemMemory.h"

#include <cstdlib>

#if __has_include(<sys/mman.h>)
#include <sys/mman.h>
#endif

namespace KP_SDAI {

void* allocateLargePages(std::size_t pages) {
    void* const memory = std::aligned_alloc(kLargePage, pages * kLargePage);
#ifdef MADV_HUGEPAGE
    if (memory) ::madvise(memory, pages * kLargePage, MADV_HUGEPAGE); // a wish: it may fail
#endif
    return memory;
}

} // namespace KP_SDAI
