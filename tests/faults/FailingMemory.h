#pragma once

#include <cstddef>

/// Lets allocations of this process fail, by whatever function of the C or C++ library they are made. All
/// threads count alike.
namespace failing_memory {

/// From now on the allocation number `at`, from 1, fails; `forever`: all from it on. Those of fewer than `least` bytes
/// neither fail nor count.
void arm(std::size_t at, bool forever, std::size_t least = 0);
/// Back to normal. Returns whether any has failed.
bool disarm();
/// Allocations since arm().
std::size_t count();
/// Blocks of memory that are not given back; 0 with the address sanitizer, which looks for leaks itself.
std::ptrdiff_t blocks();
/// False where allocations cannot be intercepted.
bool isAvailable();

} // namespace failing_memory
