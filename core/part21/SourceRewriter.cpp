#include "part21/SourceRewriter.h"

#include "part21/Lexer.h"
#include "part21/RecordText.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace KP_SDAI {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

} // namespace

SourceRewriter::SourceRewriter(ModelData& data, const KpIfcHeader& header, const SourceLayout& layout,
                               KpIfcReport& report)
    : m_data(data), m_header(header), m_layout(layout), m_records(data, &report) {}

bool SourceRewriter::write(ByteSource& source, const Sink& sink) {
    collectTouched();
    collectHeaderEdits();
    const auto changed = [&] {
        m_error =
            source.error().empty()
                ? "what was read is no longer what it was then: nothing is written; a normalised save needs no source"
                : "what was read cannot be read again: " + source.error();
        return false;
    };
    if (!source.rewind()) return changed();
    std::vector<char> buffer;
    m_offset = 0;
    for (const SourceLayout::Block& block : m_layout.blocks()) {
        buffer.resize(std::max<std::size_t>(buffer.size(), block.size + 1));
        if (source.read(buffer.data(), block.size) != block.size) return changed();
        m_block = {buffer.data(), block.size};
        if (SourceLayout::digest(m_block) != block.digest) return changed();
        if (isTouched(block)) {
            buffer[block.size] = 0;
            rewrite();
            if (!sink(m_out)) return false;
        } else if (!sink(m_block)) {
            return false;
        }
        m_offset += block.size;
        m_lastByte = m_block.back();
    }
    char more;
    if (source.read(&more, 1) != 0 || !source.error().empty()) return changed();
    return true;
}

// -- what has changed
// --------------------------------------------------------------------------------------------------

void SourceRewriter::collectTouched() {
    m_data.visitChanged([this](const KpIfcEntityBase& instance) {
        m_touched.push_back({instance.instanceName(), false});
    });
    for (const std::uint64_t name : m_data.erasedNames) m_touched.push_back({name, false});
    for (const std::uint64_t name : m_data.newRecords) m_touched.push_back({name, false});
    std::sort(m_touched.begin(), m_touched.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    m_touched.erase(
        std::unique(m_touched.begin(), m_touched.end(), [](const auto& a, const auto& b) { return a.name == b.name; }),
        m_touched.end());
}

void SourceRewriter::collectHeaderEdits() {
    // A record stands where an equal one stood, of several at the same place in the order, else where one of its
    // keyword did, else behind the last.
    const std::vector<KpIfcHeaderRecord>& then = m_layout.headerRecords;
    const std::vector<KpIfcHeaderRecord>& now = m_header.records();
    std::vector<bool> isTaken(then.size());
    std::vector<bool> isPlaced(now.size());
    const auto place = [&](auto isAlike) {
        for (std::size_t i = 0; i < now.size(); ++i) {
            for (std::size_t k = 0; k < then.size() && !isPlaced[i]; ++k) {
                if (isTaken[k] || !isAlike(i, k)) continue;
                isTaken[k] = isPlaced[i] = true;
                if (now[i] != then[k]) m_headerEdits[m_layout.header[k]] = m_header.source(i) + ";";
            }
        }
    };
    place([&](std::size_t i, std::size_t k) { return i == k && now[i] == then[k]; });
    place([&](std::size_t i, std::size_t k) { return now[i] == then[k]; });
    place([&](std::size_t i, std::size_t k) { return now[i].keyword == then[k].keyword; });
    for (std::size_t i = 0; i < now.size(); ++i)
        if (!isPlaced[i]) m_newHeader += m_header.source(i) + ";\n";
    for (std::size_t k = 0; k < then.size(); ++k)
        if (!isTaken[k]) m_headerEdits[m_layout.header[k]].clear();
}

SourceRewriter::Touched* SourceRewriter::findTouched(std::uint64_t name) {
    const auto found = std::lower_bound(m_touched.begin(), m_touched.end(), name,
                                        [](const Touched& touched, std::uint64_t n) { return touched.name < n; });
    return found != m_touched.end() && found->name == name ? &*found : nullptr;
}

bool SourceRewriter::isTouched(const SourceLayout::Block& block) const {
    const auto holds = [&](std::uint64_t place) { return place >= m_offset && place <= m_offset + block.size; };
    for (const auto& [begin, text] : m_headerEdits)
        if (holds(begin)) return true;
    if (!m_newHeader.empty() && holds(m_layout.headerEnd)) return true;
    if (!m_touched.empty() && holds(m_layout.dataEnd)) return true;
    const auto first = std::lower_bound(m_touched.begin(), m_touched.end(), block.lowestName,
                                        [](const Touched& touched, std::uint64_t n) { return touched.name < n; });
    return first != m_touched.end() && first->name <= block.highestName;
}

// -- one block
// ---------------------------------------------------------------------------------------------------------

void SourceRewriter::rewrite() {
    const char* const begin = m_block.data();
    const char* const end = begin + m_block.size();
    if (const void* line = std::memchr(begin, '\n', m_block.size()))
        m_lineEnd = line != begin && static_cast<const char*>(line)[-1] == '\r' ? "\r\n" : "\n";
    m_out.clear();
    m_copied = begin;
    const char* p = m_offset == 0 && m_block.substr(0, 3) == "\xEF\xBB\xBF" ? begin + 3 : begin;
    for (;;) {
        const char* const statement = lexer::skipBlanks(p, end);
        const std::uint64_t offset = offsetOf(statement);
        if (!m_newHeader.empty() && offset >= m_layout.headerEnd)
            insertLines(statement, std::exchange(m_newHeader, {}));
        if (!m_isDataComplete && offset >= m_layout.dataEnd) insertNewRecords(statement);
        if (statement >= end) break;
        p = opaqueEnd(statement, end);
        if (p != statement) continue;
        p = lexer::recordEnd(statement, end);
        if (!p) p = end;
        if (*statement == '#') {
            if (const std::uint64_t known = m_layout.irregularEnd(offset)) p = begin + (known - m_offset);
            std::uint64_t name = 0;
            for (const char* digit = statement + 1; lexer::isDigit(*digit); ++digit)
                name = name * 10 + static_cast<unsigned>(*digit - '0');
            rewriteRecord(statement, p, name);
        } else if (const auto edit = m_headerEdits.find(offset); edit != m_headerEdits.end()) {
            if (edit->second.empty())
                leaveOut(statement, p);
            else
                replace(statement, p, edit->second);
        }
    }
    m_out.append(m_copied, end);
}

/// Behind the opaque stretch that begins at or before `place` and ends behind it; `place` where there is none.
const char* SourceRewriter::opaqueEnd(const char* place, const char* end) {
    const auto& all = m_layout.opaque();
    const std::uint64_t offset = offsetOf(place);
    while (m_nextOpaque < all.size() && all[m_nextOpaque].end <= offset) ++m_nextOpaque;
    if (m_nextOpaque == all.size() || all[m_nextOpaque].begin > offset) return place;
    const SourceLayout::Opaque& stretch = all[m_nextOpaque];
    const auto room = static_cast<std::uint64_t>(end - place);
    const char* const behind = stretch.end - offset > room ? end : place + (stretch.end - offset);
    if (stretch.name && stretch.begin == offset) rewriteRecord(place, behind, stretch.name);
    return behind;
}

void SourceRewriter::rewriteRecord(const char* begin, const char* end, std::uint64_t name) {
    const KpDbObjectId handle = m_data.model.find(name);
    KpIfcEntityBase* const instance = handle.openObject();
    if (instance && !instance->isChanged()) return;
    Touched* const touched = findTouched(name);
    if (!touched) return;
    if (!handle.isDefined()) { // erased, and with it what else bears its name
        touched->isWritten = true;
        return leaveOut(begin, end);
    }
    if (!m_layout.counts(name, offsetOf(begin))) return;
    const auto& added = m_data.newRecords;
    if (!instance && handle.isDefined() && std::find(added.begin(), added.end(), name) == added.end()) return;
    touched->isWritten = true;
    const std::string record = instance ? m_records.record(*instance) : std::string(m_data.model.keptRecord(handle));
    if (!instance || !saysTheSame({begin, static_cast<std::size_t>(end - begin)}, record, *instance->getInstanceType()))
        replace(begin, end, record);
}

void SourceRewriter::replace(const char* begin, const char* end, std::string_view text) {
    m_out.append(m_copied, begin);
    m_out.append(text);
    m_copied = end;
}

/// Leaves a statement out, and with it its line where nothing else stands there.
void SourceRewriter::leaveOut(const char* begin, const char* end) {
    const char* const last = m_block.data() + m_block.size();
    const char* first = begin;
    while (first > m_copied && isBlank(first[-1])) --first;
    m_out.append(m_copied, first);
    m_copied = first;
    const char* behind = end;
    while (behind < last && (isBlank(*behind) || *behind == '\r')) ++behind;
    if (lastByte() == '\n' && behind < last && *behind == '\n')
        m_copied = behind + 1;
    else
        replace(begin, end, {});
}

/// Inserts whole lines before the line of the statement at `place`; behind what stands on the line before it.
void SourceRewriter::insertLines(const char* place, std::string_view lines) {
    const char* line = place;
    while (line > m_copied && isBlank(line[-1])) --line;
    m_out.append(m_copied, line);
    m_copied = line;
    if (lastByte() != '\n') {
        m_out.append(line, place);
        m_out.append(m_lineEnd);
        m_copied = place;
    }
    for (const char c : lines) {
        if (c == '\n')
            m_out.append(m_lineEnd);
        else
            m_out += c;
    }
}

void SourceRewriter::insertNewRecords(const char* place) {
    m_isDataComplete = true;
    std::string lines;
    for (const Touched& touched : m_touched) {
        if (touched.isWritten) continue;
        const KpDbObjectId handle = m_data.model.find(touched.name);
        if (KpIfcEntityBase* const instance = handle.openObject())
            (lines += m_records.record(*instance)) += '\n';
        else if (handle.isDefined())
            (lines += m_data.model.keptRecord(handle)) += '\n';
    }
    if (lines.empty()) return;
    insertLines(place, m_layout.hasDataSection ? lines : "DATA;\n" + lines + "ENDSEC;\n");
}

} // namespace KP_SDAI
