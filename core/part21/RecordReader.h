#pragma once

#include <KpIfcCore/KpIfcReport.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include "model/ModelData.h"
#include "model/ReadingMemory.h"
#include "part21/EntityNames.h"
#include "part21/Findings.h"
#include "part21/ReadRecords.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace KP_SDAI {

/// Reads single records of data sections into the slots of a model. Several may read into one model at once, each in
/// its own thread and from its own stretch of the source.
class RecordReader {
public:
    class FieldReader; ///< of the fields of a record

    /// Why a record could not be bound.
    struct Failure {
        KpIfcFinding finding = KpIfcFinding::unreadableRecord;
        KpIfcSeverity severity = KpIfcSeverity::error;
        std::string expected;
        std::string found; ///< empty where that is what stands at `place`
        const char* place = nullptr;
        std::uint64_t name = 0;
        std::string entity;
        bool isAllowed = false; ///< unusual, but as the standard wants it
    };

    /// Instances and what they hold go to `arena`. One that is alone may meet names that come twice; one that is not
    /// throws ReadAgain there.
    RecordReader(ModelData& data, KpArena& arena, const EntityNames& names, bool isAlone)
        : m_data(data), m_memory(arena, data.pool), m_names(names), m_isAlone(isAlone), m_filer(data, &m_memory) {}

    /// From now on the rest of what is read goes to `into`.
    void readInto(ReadRecords& into) {
        m_into = &into;
        m_filer.m_pending = &into.pending;
    }
    /// What is read stands in memory from `begin` to `sight`; the first is `offset` of the source.
    void readFrom(const char* begin, const char* sight, std::uint64_t offset) {
        m_begin = begin;
        m_sight = sight;
        m_offset = offset;
    }

    /// Reads the record at `place`, which may look as far as `end`, where a zero stands, and moves behind it. False,
    /// with the reason, where it is not bound; `place` then has not moved.
    bool read(const char*& place, const char* end, Failure& failure);
    /// Passes over what could not be read: keeps it as text, unless it is but a semicolon.
    void passOver(const char* begin, const char* end, Failure& failure);
    void report(const char* place, KpIfcFinding finding, Said said);
    /// Gives back memory that only reading needs.
    void finish() {
        m_memory.types.clear();
        m_filer.m_sharedTexts = {};
    }

private:
    void keep(const char* begin, const char* end, Failure& failure);
    bool readFields(const KpIfcEntityType& type, KpIfcSlot* slot, const char*& place, Failure& failure);
    void bind(const KpIfcEntityType& type, KpIfcSlot* slot, KpIfcEntityBase* instance, std::string_view parameters);
    /// Fills an empty or unread slot; false where it has been filled before.
    bool fill(KpIfcSlot& slot, std::uintptr_t word);
    void takeIssues(const KpIfcEntityType& type, KpIfcEntityBase& instance, std::string_view parameters);
    KpIfcReportEntry entryOf(const KpSpfFilerBase::FieldIssue& issue, const KpIfcEntityBase& instance) const;
    std::uint64_t offsetOf(const char* place) const { return m_offset + static_cast<std::uint64_t>(place - m_begin); }

    ModelData& m_data;
    ReadingMemory m_memory;
    const EntityNames& m_names;
    const bool m_isAlone;
    KpSpfFilerBase m_filer;
    ReadRecords* m_into = nullptr;
    const char* m_begin = nullptr;
    const char* m_sight = nullptr;
    std::uint64_t m_offset = 0;
    bool m_tooManyParameters = false;
    bool m_isMisspelled = false; ///< the keyword of the record that is being read is not in upper case
    const char* m_end = nullptr; ///< how far the record that is being read may look
};

} // namespace KP_SDAI
