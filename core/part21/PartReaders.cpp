#include "part21/PartReaders.h"

#include "part21/Lexer.h"
#include "part21/RecordEnds.h"

#include <cstring>
#include <system_error>
#include <utility>

namespace KP_SDAI {

namespace {

/// Reads the records of a part, up to its end or the end of the section. Throws ReadAgain where it does not end
/// between records, or where what is needed to go on as one thread would is not in sight.
void readRecords(RecordReader& reader, Part& part) {
    const char* const sight = part.begin() + part.seen;
    reader.readInto(part.read);
    reader.readFrom(part.begin(), sight, part.offset);
    RecordReader::Failure failure;
    const char* place = part.begin();
    for (;;) {
        place = lexer::skipBlanks(place, sight);
        if (place >= part.end()) break;
        if (*place == '#' && reader.read(place, sight, failure)) continue;
        if (endsSection(place, sight)) break;
        const char* const end = *place == ';' ? place + 1 : damagedRecordEnd(place, sight);
        const char* const piece = end ? openPiece(place, end) : nullptr;
        const bool isComment = piece && lexer::isComment(piece);
        if (!end || isComment) { // how the following records are read depends on such a comment
            if (part.isLast) break;
            throw ReadAgain();
        }
        if (piece && !part.isLast && !wholeRecordEnd(piece, sight)) throw ReadAgain();
        reader.passOver(place, end, failure);
        place = end;
    }
    if (place > part.end()) throw ReadAgain();
    part.readTo = place;
}

void readPart(RecordReader& reader, Part& part) {
    try {
        readRecords(reader, part);
        if (const void* const zero = std::memchr(part.begin(), 0, part.length))
            part.firstZero = part.offset + static_cast<std::uint64_t>(static_cast<const char*>(zero) - part.begin());
        part.read.layout.closeBlock({part.begin(), static_cast<std::size_t>(part.readTo - part.begin())});
    } catch (...) {
        part.failure = std::current_exception();
    }
}

} // namespace

PartReaders::~PartReaders() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopped = true;
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads) thread.join();
}

Part* PartReaders::next(RecordReader& reader) {
    if (m_current) m_spare.push_back(std::move(m_current));
    giveOut();
    std::unique_lock lock(m_mutex);
    while (!m_parts.empty() && m_parts.front()->state != Part::State::done) {
        if (Part* const part = firstWaiting()) {
            part->state = Part::State::inWork;
            lock.unlock();
            readPart(reader, *part);
            lock.lock();
            part->state = Part::State::done;
        } else {
            m_changed.wait(lock);
        }
        lock.unlock();
        giveOut(); // so that the other threads do not wait
        lock.lock();
    }
    if (m_parts.empty()) return nullptr;
    m_current = std::move(m_parts.front());
    m_parts.pop_front();
    lock.unlock();
    if (m_current->failure) std::rethrow_exception(m_current->failure);
    m_source.comeBack();
    return m_current.get();
}

/// Reads the source as far as it is of use to do so now.
void PartReaders::giveOut() {
    for (;;) {
        std::size_t out = 0;
        {
            const std::lock_guard lock(m_mutex);
            out = m_parts.size();
        }
        if (out >= m_threadCount + kParts) return;
        std::unique_ptr<Part> part;
        if (m_spare.empty()) {
            part = std::make_unique<Part>(m_listedPerKind);
        } else {
            part = std::move(m_spare.back());
            m_spare.pop_back();
        }
        part->state = Part::State::waiting;
        part->firstZero = Window::kNoZero;
        if (!m_source.next(*part)) {
            m_spare.push_back(std::move(part));
            return;
        }
        {
            const std::lock_guard lock(m_mutex);
            m_parts.push_back(std::move(part));
        }
        startThread();
        m_changed.notify_one();
    }
}

/// One more, where there is a part for it.
void PartReaders::startThread() {
    if (m_threads.size() + 1 >= m_threadCount || m_threads.size() + 1 >= m_source.partsOut()) return;
    if (m_source.offset() < m_smallest) return;
    m_readers.push_back(std::make_unique<RecordReader>(m_data, m_data.addArena(), m_names, false));
    m_threads.reserve(m_threadCount - 1);
    try {
        m_threads.emplace_back([this, &reader = *m_readers.back()] { work(reader); });
    } catch (const std::system_error&) { // there are no more; it goes without
        m_threadCount = static_cast<unsigned>(m_threads.size() + 1);
    }
}

void PartReaders::work(RecordReader& reader) {
    std::unique_lock lock(m_mutex);
    while (!m_isStopped) {
        Part* const part = firstWaiting();
        if (!part) {
            m_changed.wait(lock);
            continue;
        }
        part->state = Part::State::inWork;
        lock.unlock();
        readPart(reader, *part);
        lock.lock();
        part->state = Part::State::done;
        m_changed.notify_all();
    }
}

Part* PartReaders::firstWaiting() {
    for (const std::unique_ptr<Part>& part : m_parts)
        if (part->state == Part::State::waiting) return part.get();
    return nullptr;
}

} // namespace KP_SDAI
