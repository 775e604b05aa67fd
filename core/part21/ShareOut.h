#pragma once

#include <atomic>
#include <exception>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

namespace KP_SDAI {

/// Runs `work(share, isStopped)` once for each of `shares` shares, share 0 in the caller's thread, the others in
/// threads of their own where those can be had. Returns when all are done. Where one throws, `isStopped` becomes true,
/// so that the others can end early, and what the first of them threw comes to the caller.
template <class Work>
void shareOut(unsigned shares, Work work) {
    std::atomic<bool> isStopped{false};
    std::vector<std::exception_ptr> failures(shares);
    const auto guarded = [&](unsigned share) {
        try {
            work(share, isStopped);
        } catch (...) {
            failures[share] = std::current_exception();
            isStopped = true;
        }
    };
    std::vector<std::thread> threads;
    threads.reserve(shares);
    unsigned share = 1;
    try {
        for (; share < shares; ++share) threads.emplace_back(guarded, share);
    } catch (const std::system_error&) {
    } catch (const std::bad_alloc&) {
    }
    guarded(0);
    for (; share < shares; ++share) guarded(share);
    for (std::thread& thread : threads) thread.join();
    for (const std::exception_ptr& failure : failures)
        if (failure) std::rethrow_exception(failure);
}

} // namespace KP_SDAI
