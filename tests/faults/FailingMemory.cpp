#include "FailingMemory.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <new>

#if defined(KP_ADDRESS_SANITIZER)
#define KP_REAL(function) __interceptor_##function
#else
#define KP_REAL(function) __libc_##function
#endif

#if defined(__GLIBC__) && !defined(__SANITIZE_THREAD__)
#define KP_INTERCEPTS 1
#else
#define KP_INTERCEPTS 0
#endif

namespace {

std::atomic<bool> g_isArmed = false;
std::atomic<bool> g_isForever = false;
std::atomic<bool> g_hasFailed = false;
std::atomic<std::size_t> g_failsAt = 0;
std::atomic<std::size_t> g_least = 0;
std::atomic<std::size_t> g_count = 0;
std::atomic<std::ptrdiff_t> g_blocks = 0;

[[maybe_unused]] bool fails(std::size_t size) {
    if (!g_isArmed || size < g_least) return false;
    const std::size_t number = ++g_count;
    if (number != g_failsAt && !(g_isForever && number > g_failsAt)) return false;
    g_hasFailed = true;
    errno = ENOMEM;
    return true;
}

[[maybe_unused]] void* counted(void* block) {
    if (block) ++g_blocks;
    return block;
}

/// Says at which allocation it came to that.
void tellPosition(int signal) {
    char text[80];
    const int length = std::snprintf(text, sizeof text, "signal %d; allocation %zu was to fail%s\n", signal,
                                     g_failsAt.load(), g_isForever ? ", and all behind it" : "");
    std::fwrite(text, 1, static_cast<std::size_t>(length), stderr);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace

namespace failing_memory {

void arm(std::size_t at, bool forever, std::size_t least) {
    for (const int signal : {SIGSEGV, SIGABRT}) std::signal(signal, tellPosition);
    g_failsAt = at;
    g_isForever = forever;
    g_least = least;
    g_count = 0;
    g_hasFailed = false;
    g_isArmed = true;
}

bool disarm() {
    g_isArmed = false;
    return g_hasFailed;
}

std::size_t count() {
    return g_count;
}

std::ptrdiff_t blocks() {
#if defined(KP_ADDRESS_SANITIZER)
    return 0;
#else
    return g_blocks;
#endif
}

bool isAvailable() {
    return KP_INTERCEPTS != 0;
}

} // namespace failing_memory

#if KP_INTERCEPTS

extern "C" {

void* KP_REAL(malloc)(size_t size);
void* KP_REAL(calloc)(size_t count, size_t size);
void* KP_REAL(realloc)(void* block, size_t size);
void* KP_REAL(memalign)(size_t alignment, size_t size);
void KP_REAL(free)(void* block);

void* malloc(size_t size) {
    return fails(size) ? nullptr : counted(KP_REAL(malloc)(size));
}
void* calloc(size_t count, size_t size) {
    return fails(count * size) ? nullptr : counted(KP_REAL(calloc)(count, size));
}
void* realloc(void* block, size_t size) {
    if (fails(size)) return nullptr;
    void* const moved = KP_REAL(realloc)(block, size);
    return block ? moved : counted(moved);
}
void* aligned_alloc(size_t alignment, size_t size) {
    return fails(size) ? nullptr : counted(KP_REAL(memalign)(alignment, size));
}
void* memalign(size_t alignment, size_t size) {
    return fails(size) ? nullptr : counted(KP_REAL(memalign)(alignment, size));
}
int posix_memalign(void** block, size_t alignment, size_t size) {
    if (fails(size)) return ENOMEM;
    *block = counted(KP_REAL(memalign)(alignment, size));
    return *block ? 0 : ENOMEM;
}
void free(void* block) {
    if (block) --g_blocks;
    KP_REAL(free)(block);
}

} // extern "C"

#if defined(KP_ADDRESS_SANITIZER) // whose operators do not come to malloc

/// The system's loader forgets what it has allocated where it runs out of memory.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() {
    return "leak:ld-linux\n";
}

void* operator new(std::size_t size) {
    if (void* const block = malloc(size ? size : 1)) return block;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return malloc(size ? size : 1);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return malloc(size ? size : 1);
}
void operator delete(void* block) noexcept {
    free(block);
}
void operator delete[](void* block) noexcept {
    free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    free(block);
}

#endif
#endif
