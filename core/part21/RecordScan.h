#pragma once

#include "model/ModelData.h"
#include "part21/ByteSource.h"
#include "part21/EntityNames.h"
#include "part21/ParameterScan.h"
#include "part21/ProgressMeter.h"
#include "part21/ScannedGlobalIds.h"

#include <cstdint>
#include <string>
#include <vector>

namespace KP_SDAI {

/// Finds the records of a file without reading them, and notes each in its slot (UnreadWord).
class RecordScan {
public:
    /// `names` tells the entities, `globalIds` takes the GlobalIds.
    RecordScan(ByteSource& source, ModelData& data, const EntityNames& names, ScannedGlobalIds& globalIds);

    /// Looks at the file from `offset` on, behind the last header record, to its end. False, with the model of no use
    /// any more, where anything in it is out of the ordinary or, with error(), cannot be read.
    bool run(std::uint64_t offset, ProgressMeter& progress);
    /// Of the file, all of which was looked at.
    std::uint64_t fileSize() const { return m_offset + m_length; }
    const std::string& error() const { return m_error; }
    /// How many records there are of each entity, by its place in EntityNames.
    const std::vector<std::size_t>& counts() const { return m_counts; }

private:
    bool refill(const char*& place, ProgressMeter& progress);
    bool skipBlanks(const char*& place, ProgressMeter& progress);
    bool passWord(const char*& place, std::string_view word, ProgressMeter& progress);
    bool passRecords(const char*& place, ProgressMeter& progress);
    const char* end() const { return m_buffer.data() + m_length; }

    ByteSource& m_source;
    ModelData& m_data;
    const EntityNames& m_names;
    ScannedGlobalIds& m_globalIds;
    const ParameterScan::Pass m_pass = ParameterScan::ways().back();
    std::vector<char> m_hasGlobalId; ///< whether entities have, by their places in m_names
    std::vector<std::size_t> m_counts;
    std::vector<char> m_buffer;
    std::size_t m_length = 0;
    std::uint64_t m_offset = 0; ///< of the buffer's first byte
    bool m_hasEnded = false;
    std::string m_error;
};

} // namespace KP_SDAI
