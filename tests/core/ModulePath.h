#pragma once

#include <KpIfcCore/KpIfcModule.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>

/// A search path for modules that lasts as long as one test.
class ModulePath {
public:
    explicit ModulePath(const std::string& folders) { ::setenv("KPIFC_MODULE_PATH", folders.c_str(), 1); }
    ModulePath(const ModulePath&) = delete;
    ModulePath& operator=(const ModulePath&) = delete;
    ~ModulePath() { ::unsetenv("KPIFC_MODULE_PATH"); }
};

/// A folder that is gone after the test.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "kpifc_module_XXXXXX").string();
        m_path = ::mkdtemp(name.data());
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    const std::filesystem::path& path() const { return m_path; }
    void write(const std::string& name, const std::string& text) const { std::ofstream(m_path / name) << text; }

private:
    std::filesystem::path m_path;
};

inline std::shared_ptr<KP_SDAI::KpIfcModule> loadModule(const std::string& schema = "IFC2X3") {
    std::string error;
    std::shared_ptr<KP_SDAI::KpIfcModule> module = KP_SDAI::KpIfcModule::load(schema, error);
    EXPECT_NE(module, nullptr) << error;
    return module;
}
