#pragma once

#include <KpIfcCore/KpIfcHeader.h>

#include "part21/ByteSource.h"
#include "part21/RecordWriter.h"
#include "part21/SourceLayout.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace KP_SDAI {

/// Writes a source again as it is, but for what has changed in the model and the header that were read from it: changed
/// records are written anew at their places, further ones behind the last, erased ones are left out.
///
/// The source is read again, and every block compared with what was read the first time.
class SourceRewriter {
public:
    using Sink = std::function<bool(std::string_view)>;

    SourceRewriter(ModelData& data, const KpIfcHeader& header, const SourceLayout& layout, KpIfcReport& report);

    /// Hands the file to `sink` piece by piece. False where the sink stopped or, with error(), where the source cannot
    /// be read any more or is not what it was.
    bool write(ByteSource& source, const Sink& sink);
    const std::string& error() const { return m_error; }

private:
    /// A name whose instance was changed, created or erased.
    struct Touched {
        std::uint64_t name;
        bool isWritten;
    };

    void collectTouched();
    void collectHeaderEdits();
    Touched* findTouched(std::uint64_t name);
    bool isTouched(const SourceLayout::Block& block) const;
    void rewrite();
    const char* opaqueEnd(const char* place, const char* end);
    void rewriteRecord(const char* begin, const char* end, std::uint64_t name);
    void replace(const char* begin, const char* end, std::string_view text);
    void leaveOut(const char* begin, const char* end);
    void insertLines(const char* place, std::string_view lines);
    void insertNewRecords(const char* place);
    std::uint64_t offsetOf(const char* place) const {
        return m_offset + static_cast<std::uint64_t>(place - m_block.data());
    }
    /// What was handed out or made last.
    char lastByte() const { return m_out.empty() ? m_lastByte : m_out.back(); }

    ModelData& m_data;
    const KpIfcHeader& m_header;
    const SourceLayout& m_layout;
    RecordWriter m_records;
    std::string m_error;

    std::vector<Touched> m_touched;                               ///< ascending
    std::unordered_map<std::uint64_t, std::string> m_headerEdits; ///< by place; empty for what is left out
    std::string m_newHeader;                                      ///< records to insert, a line each
    bool m_isDataComplete = false;                                ///< the new records are inserted
    std::size_t m_nextOpaque = 0;
    const char* m_lineEnd = "\n";

    std::string_view m_block;       ///< the bytes at hand, a zero behind them
    std::uint64_t m_offset = 0;     ///< of the first of them
    char m_lastByte = '\n';         ///< before them
    std::string m_out;              ///< what they become
    const char* m_copied = nullptr; ///< what stands before is in m_out or left out
};

} // namespace KP_SDAI
