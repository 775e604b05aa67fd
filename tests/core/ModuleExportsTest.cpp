#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cxxabi.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

/// The names that a library exports, as the linker knows them.
std::vector<std::string> exportsOf(const std::string& library) {
    std::vector<std::string> names;
    const std::string command = std::string(KP_NM) + " -D --defined-only --format=just-symbols '" + library + "'";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> lines(::popen(command.c_str(), "r"), ::pclose);
    char line[4096];
    while (lines && std::fgets(line, sizeof line, lines.get())) {
        std::string name = line;
        name.resize(name.find_first_of("@\n")); // versions are behind an @
        names.push_back(name);
    }
    return names;
}

std::string readable(const std::string& name) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status),
                                                      std::free);
    return text ? text.get() : name;
}

TEST(ModuleExports, AreItsPlainFunctionsAndItsClasses) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "with a sanitizer there are names that the optimised module has not";
#endif
    const std::vector<std::string> names = exportsOf(KP_MODULE_FILE);
    if (names.empty()) GTEST_SKIP() << "cannot list symbols with " << KP_NM;
    std::set<std::string> plain;
    std::set<std::string> strangers;
    for (const std::string& name : names) {
        if (name.rfind("_Z", 0) != 0) {
            plain.insert(name);
            continue;
        }
        const std::string text = readable(name);
        if (text.find("IFC2X3::") == std::string::npos && text.find("KP_SDAI::") == std::string::npos)
            strangers.insert(text);
    }
    EXPECT_THAT(
        plain, testing::ElementsAre("kpGetModuleLifeCycleApp", "kpIfcBuildPropertyForSimple", "kpifcGetSchemaPointer"));
    EXPECT_THAT(strangers, testing::IsEmpty());
}

} // namespace
