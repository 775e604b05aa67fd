#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcHeader.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcReport.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace KP_SDAI {

/// A STEP physical file (ISO 10303-21): its header and its model.
///
///     KpIfcFile file;
///     if (file.open("house.ifc") != KP::eOk) std::cerr << file.error();
///     for (IfcWall* wall : file.model()->instances<IfcWall>()) ...
///
/// Reading is total: whatever the bytes are, the result is a model and a report, or an error where not even the schema
/// can be told. Nothing that was read is lost: records that fit no class keep their text, so do single fields that
/// their attribute cannot hold, and both are written back.
class KPIFCCORE_EXPORT KpIfcFile {
public:
    KpIfcFile();
    KpIfcFile(KpIfcFile&&) noexcept;
    KpIfcFile& operator=(KpIfcFile&&) noexcept;
    ~KpIfcFile();

    /// Reads a file; what was open before is closed. eNotAvailable where it cannot be read, eInvalidInput where it is
    /// no STEP file or its schema has no module; error() then says why, and there is no model. eOk also where report()
    /// has findings.
    KP::ErrorStatus open(const std::string& path);
    /// Reads a file from memory, which is not needed afterwards. `name` stands for the path in messages.
    KP::ErrorStatus openMemory(const void* data, std::size_t size, const std::string& name = "memory");
    /// Begins a new, empty file of a schema ("IFC2X3").
    KP::ErrorStatus create(const std::string& schemaName);
    void close();

    /// Writes header and model. eNotAvailable with error() where that fails; findings go to writeReport().
    KP::ErrorStatus save(const std::string& path);
    KP::ErrorStatus saveToMemory(std::string& out);

    /// Null while nothing is open.
    KpIfcModel* model() const;
    KpIfcHeader& header();
    const KpIfcReport& report() const;
    const KpIfcReport& writeReport() const;
    /// Why the last operation failed; empty where it did not.
    const std::string& error() const;
    /// Bytes of the file that was read.
    std::uint64_t size() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace KP_SDAI
