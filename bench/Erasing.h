#pragma once

#include <filesystem>

/// Prints what it costs to erase instances of a file one by one, once the referrer index stands, and to find them by
/// GlobalId.
void measureErasing(const std::filesystem::path& path);
