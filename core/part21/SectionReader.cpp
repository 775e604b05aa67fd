#include "part21/SectionReader.h"

#include "part21/LateReferences.h"
#include "part21/Lexer.h"
#include "part21/RecordEnds.h"
#include "part21/ShareOut.h"
#include "part21/Spelling.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace KP_SDAI {

namespace {

void sortByName(std::vector<KpIfcEntityBase*>& instances) {
    // Names are looked up once, not at each comparison.
    using Named = std::pair<std::uint64_t, KpIfcEntityBase*>;
    std::uint64_t last = 0;
    const auto isInOrder = [&last](const KpIfcEntityBase* instance) {
        const std::uint64_t before = std::exchange(last, instance->instanceName());
        return before <= last;
    };
    if (std::all_of(instances.begin(), instances.end(), isInOrder)) return;
    std::vector<Named> named;
    named.reserve(instances.size());
    for (KpIfcEntityBase* const instance : instances) named.emplace_back(instance->instanceName(), instance);
    std::sort(named.begin(), named.end(), [](const Named& a, const Named& b) { return a.first < b.first; });
    std::transform(named.begin(), named.end(), instances.begin(), [](const Named& one) { return one.second; });
}

} // namespace

SectionReader::SectionReader(ModelData& data, PartSource& source, Window& window, SourceLayout& layout,
                             KpIfcReport& report, const Threading& threading)
    : m_data(data), m_source(source), m_window(window), m_layout(layout), m_report(report), m_threading(threading),
      m_names(data.schema()), m_reader(data, data.arena, m_names, threading.threads == 1),
      m_read(report.listedPerKind()), m_pending(data.pool), m_referring(data.pool), m_globalIds(data.pool) {
    m_reader.readInto(m_read);
    m_data.expectRest(m_source.source().fileSize(), m_source.source().place());
}

bool SectionReader::readSection(const char*& place) {
    if (m_threading.threads > 1 && !m_parts) {
        // The first part begins here.
        const char* const begin = place;
        const std::uint64_t offset = m_window.offsetOf(begin);
        m_layout.closeBlock({m_window.begin(), static_cast<std::size_t>(begin - m_window.begin())});
        m_source.giveBack({begin, static_cast<std::size_t>(m_window.end() - begin)});
        m_window.moveTo(offset, {});
        place = m_window.begin();
        m_parts = std::make_unique<PartReaders>(m_data, m_source, m_names, m_threading, m_report.listedPerKind());
    }
    RecordReader::Failure failure;
    m_reader.readFrom(m_window.begin(), m_window.end(), m_window.offsetOf(m_window.begin()));
    for (;;) {
        place = lexer::skipBlanks(place, m_window.end());
        if (place == m_window.end() || lexer::isComment(place)) {
            if (m_parts && place == m_window.end() && readParts(place)) continue;
            if (refill(place)) continue;
            take(m_read);
            return false;
        }
        if (*place == '#' && readRecordWithin(place, failure)) continue;
        if (m_window.end() - place < Window::kReach && !m_window.hasEnded()) {
            refill(place); // what fails close to the end of the window may be whole behind it
            continue;
        }

        const char* const begin = place;
        const bool isEnd = endsSection(begin, m_window.end());
        const char* const end =
            *begin == ';' || isEnd ? lexer::recordEnd(begin, m_window.end()) : damagedRecordEnd(begin, m_window.end());
        if (!end && refill(place)) continue;
        if (!end) {
            take(m_read);
            return false;
        }
        if (!isEnd && *begin != ';' && mayGoOn(begin, end)) {
            refill(place);
            continue;
        }
        if (!isEnd) {
            m_reader.passOver(begin, end, failure);
            place = end;
            continue;
        }
        if (hasLowerCase({begin, static_cast<std::size_t>(lexer::keywordEnd(begin) - begin)}))
            m_reader.report(begin, KpIfcFinding::spelling,
                            {"the end of a section", "ENDSEC; in upper case", kReadAllTheSame});
        m_sectionEnd = m_window.offsetOf(begin);
        if (isStatement(begin, end, "ENDSEC"))
            place = end;
        else
            m_reader.report(begin, KpIfcFinding::sectionStructure,
                            {"END-ISO-10303-21", "ENDSEC; before it", "read as if it stood there"});
        take(m_read);
        return true;
    }
}

/// True where a record was cut within a text or comment, and its own end, however far behind, is not in the window yet.
bool SectionReader::mayGoOn(const char* begin, const char* end) {
    const char* const piece = openPiece(begin, end);
    const bool isComment = piece && lexer::isComment(piece);
    if (!piece || (isComment && m_window.offsetOf(begin) < m_openComment)) return false;
    if (!m_window.hasEnded() && !wholeRecordEnd(piece, m_window.end())) return true;
    if (!isComment) return false;
    if (m_parts && !m_window.hasEnded()) throw ReadAgain(); // other threads do not know of it
    const char* const behind = lexer::commentEnd(piece, m_window.end());
    m_openComment = m_window.offsetOf(behind ? behind : m_window.end());
    return false;
}

/// Reads one record, looking for the ends of its texts and comments within the window. Where a record was cut because
/// its comment goes on over what looks like the next ones, comments before the end of that one are looked for within
/// their own record only, so that many of them cost no more than their length.
bool SectionReader::readRecordWithin(const char*& place, RecordReader::Failure& failure) {
    const char* end = m_window.end();
    if (m_window.offsetOf(place) < m_openComment)
        if (const char* line = nextRecordLine(place + 1, end)) {
            while (*line == ' ' || *line == '\t') ++line;
            end = line;
        }
    return m_reader.read(place, end, failure);
}

bool SectionReader::refill(const char*& place) {
    take(m_read);
    const bool isMore = m_window.refill(place);
    m_reader.readFrom(m_window.begin(), m_window.end(), m_window.offsetOf(m_window.begin()));
    return isMore;
}

bool SectionReader::readParts(const char*& place) {
    bool isAny = false;
    while (Part* const part = m_parts->next(m_reader)) {
        if (!isAny) { // all of the window is read
            take(m_read);
            m_layout.closeBlock({m_window.begin(), static_cast<std::size_t>(m_window.end() - m_window.begin())});
            isAny = true;
        }
        take(part->read);
        if (part->firstZero != Window::kNoZero) m_window.noteZero(part->firstZero);
        m_window.moveTo(part->offset + static_cast<std::uint64_t>(part->readTo - part->begin()),
                        {part->readTo, static_cast<std::size_t>(part->end() - part->readTo)});
        if (m_window.begin() != m_window.end()) break;
    }
    m_reader.readInto(m_read);
    m_reader.readFrom(m_window.begin(), m_window.end(), m_window.offsetOf(m_window.begin()));
    if (isAny) place = m_window.begin();
    return m_window.begin() != m_window.end() && isAny;
}

void SectionReader::take(ReadRecords& read) {
    m_data.take(read.instances);
    m_report.append(std::move(read.report));
    m_layout.append(read.layout);
    // What was read into is used again.
    m_globalIds.add(read.globalIds);
    m_pending.add(read.pending);
    m_referring.add(read.referring);
    read.globalIds.clear();
    read.pending.clear();
    read.referring.clear();
    m_data.expectRest(m_source.source().fileSize(), m_source.source().place());
}

void SectionReader::keep(std::string text) {
    m_read.instances.keep(std::move(text), 0);
    m_data.take(m_read.instances);
}

void SectionReader::finish(ProgressMeter& progress) {
    m_parts.reset();
    m_reader.finish();
    m_data.table.sortSparse();
    m_data.endTaking();
    LateReferences(m_data, m_report).look(m_pending, m_threading, progress);
    m_pending.clear();
    m_globalIds.look(m_report);
    enterInverses(progress);
}

void SectionReader::enterInverses(ProgressMeter& progress) {
    std::vector<KpIfcEntityBase*> referring;
    referring.reserve(m_referring.count());
    for (const auto& part : m_referring.parts()) referring.insert(referring.end(), part.begin(), part.end());
    m_referring.clear();
    constexpr std::size_t kEach = 64; // bytes that the entries of an instance take, about
    m_data.pool.expect(kEach * referring.size());
    progress.beginItems(KpIfcStage::inverses, referring.size());
    sortByName(referring); // so that every set grows at its end
    const unsigned shares = m_threading.threadsFor(referring.size());
    std::vector<KpArena*> arenas{&m_data.arena};
    while (arenas.size() < shares) arenas.push_back(&m_data.addArena());
    shareOut(shares, [&](unsigned share, const std::atomic<bool>& isStopped) {
        Inverses::fill(referring, share, shares, *arenas[share], [&] {
            if (share == 0) progress.step();
            return !isStopped;
        });
    });
    m_data.pool.expect(BlockPool::kUnknown);
}

} // namespace KP_SDAI
