#include "PeakMemory.h"

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#endif

std::uint64_t peakOfThisProcess() {
#if __has_include(<sys/resource.h>)
#ifdef __APPLE__
    constexpr std::uint64_t unit = 1;
#else
    constexpr std::uint64_t unit = 1024;
#endif
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::uint64_t>(usage.ru_maxrss) * unit;
#else
    return 0;
#endif
}
