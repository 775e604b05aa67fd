#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpTextCase.h>

#include "loader/SharedLibrary.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <mutex>
#include <new>
#include <string_view>

namespace KP_SDAI {

KpIfcModuleLifeCycle::~KpIfcModuleLifeCycle() = default;

namespace {

namespace fs = std::filesystem;

/// The loaded libraries and how many modules use each. Loading and unloading happen under one lock, so that a schema is
/// never taken down while somebody else is about to use it.
struct Loaded {
    void* library;
    KpIfcModuleLifeCycle* lifeCycle;
    int users;
};
std::mutex g_lock;
/// From then on nothing is unloaded: static objects of modules may be gone before those that hold a module.
std::atomic<bool> g_processEnds{false};
std::map<std::string, Loaded>& loadedLibraries() {
    static auto& libraries = *new std::map<std::string, Loaded>; // never freed: static objects may hold modules
    return libraries;
}

/// Closes a library that nobody has come to use.
struct OpenLibrary {
    void* library;
    ~OpenLibrary() {
        if (library) shared_library::close(library);
    }
};

std::vector<std::string> searchFolders() {
    std::vector<std::string> folders;
    if (const char* path = std::getenv("KPIFC_MODULE_PATH")) {
        std::string_view rest(path);
        while (!rest.empty()) {
            const std::size_t length = std::min(rest.find(shared_library::kPathSeparator), rest.size());
            if (length) folders.emplace_back(rest.substr(0, length));
            rest.remove_prefix(std::min(length + 1, rest.size()));
        }
    }
    const std::string own = shared_library::ownFolder();
    if (!own.empty()) folders.push_back(own);
    return folders;
}

/// The name under which a schema's module is known: "IFC2X3" for " ifc2x3_tc1 { 1 0 10303 }".
std::string moduleName(std::string_view schemaName) {
    std::string name;
    for (const char c : schemaName) {
        if (c == '{') break;
        if (static_cast<unsigned char>(c) > ' ') name += upperAscii(c);
    }
    for (const std::string_view suffix : {"_TC1", "_FINAL"})
        if (name.size() > suffix.size() && std::string_view(name).substr(name.size() - suffix.size()) == suffix)
            name.resize(name.size() - suffix.size());
    return name;
}

bool isSchemaName(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    });
}

} // namespace

std::shared_ptr<KpIfcModule> KpIfcModule::load(const std::string& schemaName, std::string& error) {
    const std::string name = moduleName(schemaName);
    if (isSchemaName(name)) {
        for (const std::string& folder : searchFolders()) {
            const fs::path path = fs::path(folder) / (shared_library::kPrefix + name + shared_library::kSuffix);
            std::error_code code;
            const bool isThere = fs::exists(path, code);
            if (!isThere && !code) continue;
            // Who cannot be told whether it is there may find out by loading it.
            std::shared_ptr<KpIfcModule> module = loadFile(path.string(), error);
            if (module || isThere) return module;
        }
    }
    error = "schema " + schemaName + " has no module; can be read:";
    const std::vector<std::string> names = available();
    for (const std::string& known : names) error += ' ' + known;
    if (names.empty()) error += " nothing, because no module was found";
    return nullptr;
}

std::shared_ptr<KpIfcModule> KpIfcModule::loadFile(const std::string& path, std::string& error) {
    std::error_code code;
    const fs::path canonical = fs::canonical(path, code);
    if (code == std::errc::not_enough_memory) throw std::bad_alloc(); // one library is known by one name only
    const std::string key = code ? path : canonical.string();

    // Before the lock, so that one that fails to load lets go of the library, which takes the lock, after it.
    std::shared_ptr<KpIfcModule> module(new KpIfcModule);
    module->m_path = key;
    const std::lock_guard guard(g_lock);
    std::map<std::string, Loaded>& libraries = loadedLibraries();
    auto found = libraries.find(key);
    if (found == libraries.end()) {
        OpenLibrary opened{shared_library::open(key, error)};
        void* const library = opened.library;
        if (!library) return nullptr;
        std::atexit([] { g_processEnds = true; }); // runs before what the library registered while it was opened
        using LifeCycle = KpIfcModuleLifeCycle* (*)();
        const auto lifeCycle = reinterpret_cast<LifeCycle>(shared_library::symbol(library, "kpGetModuleLifeCycleApp"));
        if (!lifeCycle) {
            error = path + ": is no schema module";
            return nullptr;
        }
        found = libraries.emplace(key, Loaded{library, lifeCycle(), 0}).first;
        opened.library = nullptr;
    }
    Loaded& loaded = found->second;
    ++loaded.users;
    module->m_library = loaded.library;
    module->m_lifeCycle = loaded.lifeCycle;
    const bool built = loaded.lifeCycle->initialise();
    using SchemaPointer = KpIfcSchema* (*)();
    const auto schema =
        reinterpret_cast<SchemaPointer>(shared_library::symbol(loaded.library, "kpifcGetSchemaPointer"));
    module->m_schema = built && schema ? schema() : nullptr;
    if (!module->m_schema) {
        error = path + ": gives no schema";
        return nullptr;
    }
    return module;
}

KpIfcModule::~KpIfcModule() {
    if (!m_library || g_processEnds) return;
    const std::lock_guard guard(g_lock);
    std::map<std::string, Loaded>& libraries = loadedLibraries();
    const auto found = libraries.find(m_path);
    if (--found->second.users) return;
    m_lifeCycle->unload();
    shared_library::close(m_library);
    libraries.erase(found);
}

std::vector<std::string> KpIfcModule::available() {
    std::vector<std::string> names;
    const std::string_view prefix = shared_library::kPrefix;
    const std::string_view suffix = shared_library::kSuffix;
    for (const std::string& folder : searchFolders()) {
        std::error_code code;
        for (fs::directory_iterator it(folder, code), end; !code && it != end; it.increment(code)) {
            const std::string file = it->path().filename().string();
            if (file.size() <= prefix.size() + suffix.size() || file.rfind(prefix, 0) != 0) continue;
            if (std::string_view(file).substr(file.size() - suffix.size()) != suffix) continue;
            const std::string name = file.substr(prefix.size(), file.size() - prefix.size() - suffix.size());
            if (isSchemaName(name)) names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

} // namespace KP_SDAI
