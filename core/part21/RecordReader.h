#pragma once

#include <KpIfcCore/KpIfcReport.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include "model/ModelData.h"
#include "part21/EntityNames.h"
#include "part21/Findings.h"
#include "part21/GlobalIdCheck.h"
#include "part21/ProgressMeter.h"
#include "part21/Window.h"

#include <string>
#include <string_view>
#include <vector>

namespace KP_SDAI {

/// Reads the records of data sections into a model.
///
/// A record is parsed where it stands in the window. Only when that fails is it looked at whether the window cut it; so
/// sound files are walked once.
class RecordReader {
public:
    RecordReader(ModelData& data, Window& window, KpIfcReport& report);

    /// Reads from `place`, which stands behind the opening of a data section, to its end or the end of the source, and
    /// moves `place` there. False where the section has no end.
    bool readSection(const char*& place);
    /// Offset of what ended the section that was read last.
    std::uint64_t sectionEnd() const { return m_sectionEnd; }
    /// Reads the record of an instance of this name at `place` alone, into its unread slot; false where it cannot be
    /// bound, or that is another one. Many may be read so; their references are left to be looked at.
    bool readOne(const char* place, std::uint64_t name);
    /// Looks at the references of all records that readOne() has read; what that leads to it may be called for, too.
    void lookAtReferences();
    void forgetReferences() { m_filer.m_pending.clear(); }
    /// What can only be done when everything is read: references to instances that came later or not at all.
    void finish(ProgressMeter& progress);

    class FieldReader; ///< of the fields of a record

private:
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

    bool readRecordWithin(const char*& place, Failure& failure);
    bool readRecord(const char*& place, Failure& failure);
    bool readFields(const KpIfcEntityType& type, KpIfcSlot* slot, const char*& place, Failure& failure);
    void bind(const KpIfcEntityType& type, KpIfcSlot* slot, KpIfcEntityBase* instance, std::string_view parameters);
    void takeIssues(const KpIfcEntityType& type, KpIfcEntityBase& instance, std::string_view parameters);
    KpIfcReportEntry entryOf(const KpSpfFilerBase::FieldIssue& issue, const KpIfcEntityBase& instance) const;
    void keepRecord(const char* begin, const char* end, Failure& failure);
    void enterInverses(ProgressMeter& progress);

    ModelData& m_data;
    Window& m_window;
    KpIfcReport& m_report;
    EntityNames m_names;
    KpSpfFilerBase m_filer;
    GlobalIdCheck m_globalIds;
    std::vector<KpIfcEntityBase*> m_referring; ///< instances that inverse attributes are about
    bool m_tooManyParameters = false;
    bool m_isMisspelled = false; ///< the keyword of the record that is being read is not in upper case
    std::uint64_t m_sectionEnd = 0;
    const char* m_end = nullptr;     ///< how far the record that is being read may look
    std::uint64_t m_openComment = 0; ///< to here goes a comment that a record was cut from
};

} // namespace KP_SDAI
