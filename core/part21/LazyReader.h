#pragma once

#include "model/ModelData.h"
#include "model/UnreadRecords.h"
#include "part21/ByteSource.h"
#include "part21/EntityNames.h"
#include "part21/ProgressMeter.h"
#include "part21/ReadRecords.h"
#include "part21/RecordReader.h"
#include "part21/ScannedGlobalIds.h"
#include "part21/SourcePiece.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace KP_SDAI {

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
    std::vector<KpIfcEntityCount> entityCounts() const override;
    std::vector<KpDbObjectId> mayHaveGlobalId(std::string_view globalId) const override {
        return m_globalIds.mayHave(globalId, m_data.table);
    }
    void readAll() override { m_data.readAnew(m_readFile, m_read); }

private:
    LazyReader(ByteSource& source, ModelData& data, KpIfcReport& report, std::function<void()> readFile)
        : m_data(data), m_report(report), m_readFile(std::move(readFile)), m_names(data.schema()), m_piece(source),
          m_records(data, data.arena, m_names, true), m_into(report.listedPerKind()) {
        m_records.readInto(m_into);
    }

    KpIfcEntityBase* bind(KpIfcSlot& slot);
    bool readRecord(const char* place, std::uint64_t name);
    void lookAtReferences();
    void undo() noexcept;

    ModelData& m_data;
    KpIfcReport& m_report;
    std::function<void()> m_readFile;
    EntityNames m_names;
    ScannedGlobalIds m_globalIds;
    std::vector<std::size_t> m_counts; ///< of records, by the places of entities in m_names
    std::uint64_t m_fileSize = 0;

    SourcePiece m_piece;
    RecordReader m_records;
    ReadRecords
        m_into; ///< by the touch that is under way, as far as the model has not been told; its layout is of no use
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
