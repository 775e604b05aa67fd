#pragma once

#include "model/ModelData.h"
#include "model/UnreadRecords.h"
#include "part21/ByteSource.h"
#include "part21/EntityNames.h"
#include "part21/ProgressMeter.h"
#include "part21/RecordReader.h"
#include "part21/ScannedGlobalIds.h"
#include "part21/SourceLayout.h"
#include "part21/Window.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace KP_SDAI {

/// Gives the bytes of another source from any place on, in small pieces. Throws KpIfcException 1000 where they cannot
/// be read or are no longer those of the file that was opened.
class PieceSource : public ByteSource {
public:
    explicit PieceSource(ByteSource& source) : m_source(source) {}
    void moveTo(std::uint64_t place) { m_next = place; }
    std::size_t read(char* to, std::size_t size) override;
    bool rewind() override { return false; }
    std::uint64_t size() const override { return m_source.size(); }
    std::uint64_t place() const override { return m_next; }
    std::uint64_t fileSize() const override { return m_source.fileSize(); }

private:
    ByteSource& m_source;
    std::uint64_t m_next = 0;
};

/// Reads the records of a file when they are touched.
///
/// What binding one needs to know of others is whether they exist, which the scan tells, and of which entity they are,
/// which their slots tell. Only where a select holds a reference, its instance is read along, for the class asks it;
/// that is done without recursion.
class LazyReader : public UnreadRecords {
public:
    /// Looks for the records of a file, the last header record of which ends at `offset`. Null where it is to be read
    /// in full, with `error` where it cannot be; the model is of no use then. `readFile` reads it in full into the same
    /// model. All but `error` must outlive what is given back.
    static std::unique_ptr<LazyReader> open(ByteSource& source, std::uint64_t offset, ModelData& data,
                                            KpIfcReport& report, ProgressMeter& progress,
                                            std::function<void()> readFile, std::string& error);

    std::uint64_t fileSize() const { return m_fileSize; }

    const KpIfcEntityType* entityOf(const KpIfcSlot& slot) const override;
    bool areMostlyRead() const override;
    bool isReading() const override { return m_isReading; }
    KpIfcEntityBase* read(KpIfcSlot& slot) override;
    std::vector<KpDbObjectId> mayHaveGlobalId(std::string_view globalId) const override {
        return m_globalIds.mayHave(globalId);
    }
    void readAll() override { m_data.readAnew(m_readFile, m_read); }

private:
    LazyReader(ByteSource& source, ModelData& data, KpIfcReport& report, std::function<void()> readFile)
        : m_data(data), m_report(report), m_readFile(std::move(readFile)), m_names(data.schema()), m_pieces(source),
          m_window(m_pieces, m_layout), m_records(data, m_window, report) {}

    KpIfcEntityBase* bind(KpIfcSlot& slot);
    void undo() noexcept;

    ModelData& m_data;
    KpIfcReport& m_report;
    std::function<void()> m_readFile;
    EntityNames m_names;
    ScannedGlobalIds m_globalIds;
    std::uint64_t m_fileSize = 0;

    PieceSource m_pieces;
    SourceLayout m_layout; ///< of what was read one by one; means nothing
    Window m_window;
    RecordReader m_records;
    struct Touched {
        KpIfcSlot* slot;
        std::uintptr_t word; ///< that it had
    };
    std::vector<KpIfcEntityBase*> m_read; ///< one by one
    std::vector<Touched> m_touched;       ///< by the touch that is under way
    bool m_isReading = false;
    bool m_hasFailed = false; ///< something that the touch under way needs could not be bound
};

} // namespace KP_SDAI
