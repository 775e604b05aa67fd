#pragma once

#include <KpIfcCore/KpIfcHeader.h>
#include <KpIfcCore/KpIfcReport.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kpifc {

/// What `kpifc info` tells about a file.
struct FileInfo {
    std::string path;
    std::uint64_t size = 0;   ///< bytes
    std::string moduleSchema; ///< name of the schema that the file was read with
    KP_SDAI::KpIfcHeader header;
    std::uint64_t instances = 0;
    std::vector<std::pair<std::string, std::uint64_t>> types; ///< most frequent first, then by name
    std::uint64_t keptRecords = 0;
    KP_SDAI::KpIfcReport report;

    /// How often each kind of finding occurs, most frequent first; kinds without findings are left out.
    std::vector<std::pair<std::string, std::uint64_t>> findings() const;
};

/// For people, in 80 columns.
std::string textOf(const FileInfo& info);
/// For programs; one JSON object.
std::string jsonOf(const FileInfo& info);

} // namespace kpifc
