#pragma once

#include <KpIfcCore/KpIfcReport.h>

#include "model/ModelData.h"
#include "part21/EntityNames.h"
#include "part21/PartReaders.h"
#include "part21/PartSource.h"
#include "part21/ProgressMeter.h"
#include "part21/RecordReader.h"
#include "part21/Threading.h"
#include "part21/Window.h"

#include <memory>
#include <string>
#include <vector>

namespace KP_SDAI {

/// Reads the records of data sections into a model, alone or with further threads.
///
/// A record is parsed where it stands in the window. Only when that fails is it looked at whether the window cut it; so
/// sound files are walked once. With further threads the window stays empty where the source can be cut into parts
/// that the threads read: what they give is put together in file order, up to what is no record.
class SectionReader {
public:
    SectionReader(ModelData& data, PartSource& source, Window& window, SourceLayout& layout, KpIfcReport& report,
                  const Threading& threading);

    /// Reads from `place`, which stands behind the opening of a data section, to its end or the end of the source, and
    /// moves `place` there. False where the section has no end.
    bool readSection(const char*& place);
    /// Offset of what ended the section that was read last.
    std::uint64_t sectionEnd() const { return m_sectionEnd; }
    /// Keeps what stands between sections at its place in the order of the records.
    void keep(std::string text);
    /// What can only be done when everything is read: references to instances that came later or not at all.
    void finish(ProgressMeter& progress);

private:
    bool mayGoOn(const char* begin, const char* end);
    bool readRecordWithin(const char*& place, RecordReader::Failure& failure);
    bool refill(const char*& place);
    /// Reads on in parts. True where something follows, at `place`, that is to be looked at in the window.
    bool readParts(const char*& place);
    void take(ReadRecords& read);
    void enterInverses(ProgressMeter& progress);

    ModelData& m_data;
    PartSource& m_source;
    Window& m_window;
    SourceLayout& m_layout;
    KpIfcReport& m_report;
    const Threading m_threading;
    EntityNames m_names;
    RecordReader m_reader;
    ReadRecords m_read; ///< what m_reader has read of the window, as far as it has not been taken
    StoredParts<PendingField> m_pending;
    StoredParts<KpIfcEntityBase*> m_referring;
    GlobalIdCheck m_globalIds;
    std::unique_ptr<PartReaders> m_parts; ///< made when first needed
    std::uint64_t m_sectionEnd = 0;
    std::uint64_t m_openComment = 0; ///< to here goes a comment that a record was cut from
};

} // namespace KP_SDAI
