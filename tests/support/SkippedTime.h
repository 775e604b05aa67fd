#pragma once

#include <chrono>

/// Makes so much time pass for all who ask the steady clock, the runtime included, without waiting where that can be.
void skipTime(std::chrono::milliseconds duration);
