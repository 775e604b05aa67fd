#include "loader/SharedLibrary.h"

#include <dlfcn.h>

namespace KP_SDAI::shared_library {

const char* const kPrefix = "libKp";
const char* const kSuffix = ".so";
const char kPathSeparator = ':';

void* open(const std::string& path, std::string& error) {
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        const char* text = dlerror();
        error = text ? text : path + ": cannot be loaded";
    }
    return library;
}

void close(void* library) {
    dlclose(library);
}

void* symbol(void* library, const char* name) {
    return dlsym(library, name);
}

std::string ownFolder() {
    Dl_info info;
    if (!dladdr(reinterpret_cast<void*>(&ownFolder), &info) || !info.dli_fname) return {};
    const std::string path = info.dli_fname;
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash);
}

} // namespace KP_SDAI::shared_library
