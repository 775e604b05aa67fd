#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

/// Writes a STEP file of about `bytes` bytes to `target`: the header of the first of `files`, then the records
/// of all of them in turns, over and over, each time under further instance names and with other GlobalIds. It is as
/// sound as they are. Files may be compressed (.gz). Throws std::runtime_error where that fails.
void writeJoinedFile(const std::vector<std::filesystem::path>& files, std::uint64_t bytes,
                     const std::filesystem::path& target);
