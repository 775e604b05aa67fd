#include "part21/LazyReader.h"

#include "part21/Findings.h"
#include "part21/LateReferences.h"
#include "part21/Lexer.h"
#include "part21/RecordScan.h"
#include "part21/UnreadWord.h"

#include <algorithm>
#include <utility>

namespace KP_SDAI {

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
    reader->m_counts = scan.counts();
    return reader;
}

const KpIfcEntityType* LazyReader::entityOf(const KpIfcSlot& slot) const {
    return m_names.at(UnreadWord::entity(slot.word));
}

std::vector<KpIfcEntityCount> LazyReader::entityCounts() const {
    std::vector<KpIfcEntityCount> counts;
    for (std::size_t i = 0; i < m_counts.size(); ++i)
        if (m_counts[i]) counts.push_back({m_names.at(i), m_counts[i]});
    return counts;
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
    m_touched.clear();
    m_hasFailed = false;
    m_isReading = true;
    try {
        m_hasFailed = !bind(slot);
        if (!m_hasFailed) lookAtReferences();
        if (m_hasFailed) {
            undo();
            return nullptr;
        }
        for (KpIfcReportEntry& entry : m_into.report.located()) entry.line = 0;
        m_report.append(std::move(m_into.report));
    } catch (...) {
        undo();
        throw;
    }
    for (const Touched& touched : m_touched) m_read.push_back(KpDbObjectId(touched.slot).instanceRead());
    m_isReading = false;
    return KpDbObjectId(&slot).instanceRead();
}

/// Looks at the references of all that the touch under way has bound, what that leads to included.
void LazyReader::lookAtReferences() {
    LateReferences references(m_data, m_into.report);
    for (std::size_t next = 0; next < m_into.pending.size(); ++next) {
        const PendingField field = m_into.pending[next]; // looking may append
        references.look(field);
    }
    m_into.pending.clear();
}

void LazyReader::undo() noexcept {
    for (const Touched& touched : m_touched) m_data.unread(touched.slot, touched.word);
    m_into.instances.forget();
    m_into.pending.clear();
    m_into.report.clear();
    m_isReading = false;
}

/// Binds one record; its references are still to be looked at. Null where it cannot be bound.
KpIfcEntityBase* LazyReader::bind(KpIfcSlot& slot) {
    const KpDbObjectId handle(&slot);
    const std::uint64_t offset = UnreadWord::offset(slot.word);
    m_touched.push_back({&slot, slot.word});
    if (m_read.capacity() < m_read.size() + m_touched.size()) m_read.reserve(2 * (m_read.size() + m_touched.size()));
    while (const char* const place = m_piece.at(offset)) {
        if (readRecord(place, handle.instanceName())) return handle.instanceRead();
        if (!m_piece.grow()) break;
    }
    return nullptr;
}

/// Reads the record at a place of the piece; false where it is not that of `name`, or not whole.
bool LazyReader::readRecord(const char* place, std::uint64_t name) {
    const char* digit = place + 1;
    std::uint64_t found = 0;
    while (lexer::isDigit(*digit)) found = found * 10 + static_cast<unsigned>(*digit++ - '0');
    if (*place != '#' || found != name) return false;
    RecordReader::Failure failure;
    m_records.readFrom(m_piece.begin(), m_piece.end(), m_piece.offset());
    const bool isBound = m_records.read(place, m_piece.end(), failure);
    m_data.takeNoted(m_into.instances);
    m_into.referring.clear();
    m_into.globalIds = {};
    return isBound;
}

} // namespace KP_SDAI
