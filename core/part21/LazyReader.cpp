#include "part21/LazyReader.h"

#include "part21/Lexer.h"
#include "part21/RecordScan.h"
#include "part21/UnreadWord.h"

#include <KpIfcCore/KpIfcException.h>

#include <algorithm>
#include <utility>

namespace KP_SDAI {

namespace {

[[noreturn]] void throwSystemError(const std::string& reason) {
    throw KpIfcException(1000, "Underlying system error", reason.c_str());
}

} // namespace

std::size_t PieceSource::read(char* to, std::size_t size) {
    constexpr std::size_t kPiece = 64 * 1024;
    std::string reason;
    const std::size_t got = m_source.readAt(m_next, to, std::min(size, kPiece), reason);
    if (!reason.empty()) throwSystemError(reason);
    if (m_source.hasChanged()) throwSystemError(kSourceHasChanged);
    m_next += got;
    return got;
}

std::unique_ptr<LazyReader> LazyReader::open(ByteSource& source, std::uint64_t offset, ModelData& data,
                                             KpIfcReport& report, ProgressMeter& progress,
                                             std::function<void()> readFile, std::string& error) {
    if (!source.isDirect()) return nullptr;
    std::unique_ptr<LazyReader> reader(new LazyReader(source, data, report, std::move(readFile)));
    RecordScan scan(source, data, reader->m_names, reader->m_globalIds);
    const bool isPlain = scan.run(offset, progress);
    error = source.hasChanged() ? kSourceHasChanged : scan.error();
    if (!isPlain || !error.empty()) return nullptr;
    reader->m_fileSize = scan.fileSize();
    return reader;
}

const KpIfcEntityType* LazyReader::entityOf(const KpIfcSlot& slot) const {
    return m_names.at(UnreadWord::entity(slot.word));
}

bool LazyReader::areMostlyRead() const {
    constexpr std::size_t kFew = 1000;
    return m_read.size() > std::max(m_data.instanceCount / 4, kFew);
}

KpIfcEntityBase* LazyReader::read(KpIfcSlot& slot) {
    if (m_isReading) { // resolving a select; the touch under way takes care of the rest
        KpIfcEntityBase* const instance = bind(slot);
        m_hasFailed |= !instance;
        return instance;
    }
    const std::size_t findings = m_report.entries().size();
    m_touched.clear();
    m_hasFailed = false;
    m_isReading = true;
    try {
        m_hasFailed = !bind(slot);
        if (!m_hasFailed) m_records.lookAtReferences();
    } catch (...) {
        undo();
        throw;
    }
    if (m_hasFailed) {
        undo();
        return nullptr;
    }
    for (const Touched& touched : m_touched) m_read.push_back(KpDbObjectId(touched.slot).instanceRead());
    for (std::size_t i = findings; i < m_report.entries().size(); ++i) m_report.located()[i].line = 0;
    m_isReading = false;
    return KpDbObjectId(&slot).instanceRead();
}

void LazyReader::undo() noexcept {
    m_records.forgetReferences();
    for (const Touched& touched : m_touched) m_data.unread(touched.slot, touched.word);
    m_isReading = false;
}

/// Binds one record; its references are still to be looked at. Null where it cannot be bound.
KpIfcEntityBase* LazyReader::bind(KpIfcSlot& slot) {
    constexpr std::uint64_t kBefore = 16 * 1024; // what is touched next stands before as often as behind
    const KpDbObjectId handle(&slot);
    const std::uint64_t offset = UnreadWord::offset(slot.word);
    m_touched.push_back({&slot, slot.word});
    if (m_read.capacity() < m_read.size() + m_touched.size()) m_read.reserve(2 * (m_read.size() + m_touched.size()));
    if (!m_window.at(offset)) {
        const std::uint64_t begin = offset < kBefore ? 0 : offset - kBefore;
        m_pieces.moveTo(begin);
        m_window.moveTo(begin);
    }
    for (;;) {
        const char* place = m_window.at(offset);
        if (place && m_records.readOne(place, handle.instanceName())) return handle.instanceRead();
        if (!place) place = m_window.begin();
        if (!m_window.refill(place)) return nullptr;
    }
}

} // namespace KP_SDAI
