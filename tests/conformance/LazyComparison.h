#pragma once

#include <string>

/// Expects of a file that was opened lazily what a full reading gives: before all is read, by touching instances in an
/// order that `seed` gives, and afterwards. True where it was opened lazily, rather than read in full at once.
bool compareWithFullReading(const std::string& content, unsigned seed);
