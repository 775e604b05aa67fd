#pragma once

#include <string>

/// The operating system's loader; the only source that knows it is SharedLibrary.cpp.
namespace KP_SDAI::shared_library {

/// Loads a library; null with a text in `error` where that fails.
void* open(const std::string& path, std::string& error);
void close(void* library);
/// The address of an exported function; null where there is none.
void* symbol(void* library, const char* name);
/// The folder of the library that this code is part of; empty where it cannot be told.
std::string ownFolder();

/// File names of modules: prefix and suffix around the name of the schema.
extern const char* const kPrefix;
extern const char* const kSuffix;
/// What separates the folders of a search path.
extern const char kPathSeparator;

} // namespace KP_SDAI::shared_library
