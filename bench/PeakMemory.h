#pragma once

#include <cstdint>

/// The most resident memory that this process has had, in bytes; 0 where the system does not tell.
std::uint64_t peakOfThisProcess();
