#include "SkippedTime.h"

#ifdef __linux__

#include <atomic>

#include <dlfcn.h>
#include <time.h>

static std::atomic<long> g_skipped{0}; // milliseconds

void skipTime(std::chrono::milliseconds duration) {
    g_skipped += static_cast<long>(duration.count());
}

/// Stands before the system's.
extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock, timespec* time) noexcept {
    static const auto real = reinterpret_cast<int (*)(clockid_t, timespec*)>(dlsym(RTLD_NEXT, "clock_gettime"));
    const int result = real(clock, time);
    if (result != 0 || clock != CLOCK_MONOTONIC) return result;
    const long nanoseconds = time->tv_nsec + g_skipped % 1000 * 1'000'000;
    time->tv_sec += g_skipped / 1000 + nanoseconds / 1'000'000'000;
    time->tv_nsec = nanoseconds % 1'000'000'000;
    return result;
}

#else

#include <thread>

void skipTime(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

#endif
