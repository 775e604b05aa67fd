#include "part21/FileReader.h"

#include "part21/FindingLines.h"
#include "part21/Lexer.h"
#include "part21/SectionReader.h"
#include "part21/StepValueText.h"
#include "part21/TextIssues.h"

#include <algorithm>
#include <cstring>

namespace KP_SDAI {

namespace {

/// The keyword at the start of a statement, in upper case.
std::string keywordOf(const char* begin) {
    std::string keyword(begin, lexer::keywordEnd(begin));
    std::transform(keyword.begin(), keyword.end(), keyword.begin(), upperAscii);
    return keyword;
}

} // namespace

void FileReader::report(KpIfcFinding finding, KpIfcSeverity severity, Said said) {
    m_report.add(findingAt(finding, severity, offset(), std::move(said)));
}

std::string FileReader::quotedHere(const char* end) const {
    return quoted({m_place, static_cast<std::size_t>(end - m_place)});
}

void FileReader::checkCase(const std::string& keyword) {
    if (std::memcmp(m_place, keyword.data(), keyword.size()) != 0)
        report(KpIfcFinding::spelling, KpIfcSeverity::warning,
               {std::string(m_place, keyword.size()), keyword, kReadAllTheSame});
}

void FileReader::checkAlone(const char* end) {
    const std::string keyword = keywordOf(m_place);
    checkCase(keyword);
    const char* const behind = lexer::skipBlanks(m_place + keyword.size(), end);
    if (behind != end - 1)
        report(KpIfcFinding::sectionStructure, KpIfcSeverity::warning,
               {quoted({behind, static_cast<std::size_t>(end - behind)}), "';' behind " + keyword, "left out"});
}

bool FileReader::skipBlanks() {
    for (;;) {
        m_place = lexer::skipBlanks(m_place, m_window.end());
        const bool cut = m_place == m_window.end() || lexer::isComment(m_place);
        // A comment or a print control directive may begin with the last bytes of the window.
        const bool mayBeCut = m_window.end() - m_place < 3 && (*m_place == '/' || *m_place == '\\');
        if (!cut && !mayBeCut) return true;
        if (!m_window.refill(m_place)) return !cut;
    }
}

bool FileReader::nextStatement(const char*& end) {
    if (!skipBlanks()) return false;
    while (!(end = lexer::recordEnd(m_place, m_window.end())))
        if (!m_window.refill(m_place)) return false;
    return true;
}

std::string FileReader::statement(const char* end) const {
    return std::string(m_place, end);
}

bool FileReader::readHeader(std::string& schema) {
    m_place = m_window.begin();
    if (!m_window.refill(m_place)) {
        m_error = m_source.error().empty() ? "is empty" : m_source.error();
        return false;
    }
    if (m_window.end() - m_place >= 3 && std::memcmp(m_place, "\xEF\xBB\xBF", 3) == 0) {
        report(KpIfcFinding::sectionStructure, KpIfcSeverity::warning,
               {"a byte order mark", "ISO-10303-21; at the start of the file", "read over"});
        m_place += 3;
    }
    const char* end = nullptr;
    if (!skipBlanks() || keywordOf(m_place) != "ISO-10303-21") {
        m_error = "is no STEP file: found " + quotedHere(m_window.end()) + ", expected ISO-10303-21; at its start";
        return false;
    }
    if (!nextStatement(end)) {
        m_error = "ends before its header section";
        return false;
    }
    checkAlone(end);
    m_place = end;
    m_layout.headerEnd = offset();
    bool inHeader = false;
    while (nextStatement(end)) {
        const std::string keyword = keywordOf(m_place);
        if (keyword == "DATA" || keyword == "END-ISO-10303-21" || *m_place == '#') {
            report(KpIfcFinding::sectionStructure, KpIfcSeverity::warning,
                   {quotedHere(end), "ENDSEC; of the header section", "read as if it stood there"});
            m_layout.headerEnd = offset();
            break;
        }
        if (keyword == "ENDSEC") {
            checkAlone(end);
            m_layout.headerEnd = offset();
            m_place = end;
            break;
        }
        if (keyword == "HEADER" && !inHeader) {
            inHeader = true;
            checkAlone(end);
        } else if (m_layout.header.push_back(offset()); !readHeaderRecord(end)) {
            m_header.append({keyword, {}}, std::string(m_place, end - 1));
        }
        m_place = end;
        m_layout.headerEnd = offset();
    }
    m_layout.headerRecords = m_header.records();
    m_dataSections = DataSections(m_header);
    schema = m_header.text("FILE_SCHEMA", 0);
    if (schema.empty()) {
        m_error = "names no schema: expected FILE_SCHEMA(('IFC2X3')) in its header section";
        return false;
    }
    return true;
}

bool FileReader::readHeaderRecord(const char* end) {
    const char* p = lexer::keywordEnd(m_place);
    KpIfcHeaderRecord record{keywordOf(m_place), {}};
    p = lexer::skipBlanks(p, end);
    if (record.keyword.empty() || *p != '(') return false;
    unsigned issues = 0;
    p = readStepValues(p + 1, end, record.parameters, issues);
    if (!p) return false;
    if (*lexer::skipBlanks(p, end) != ';') return false;
    checkCase(record.keyword);
    if (issues) reportTexts(record.keyword, issues);
    m_header.append(std::move(record), std::string(m_place, p));
    return true;
}

/// Reports what decoding the texts of a header record met (KpStepText::Issue).
void FileReader::reportTexts(const std::string& keyword, unsigned issues) {
    for (const TextIssue& kind : kTextIssues) {
        if (!(issues & kind.flag)) continue;
        KpIfcReportEntry entry =
            findingAt(KpIfcFinding::textEncoding, kind.severity, offset(), {kind.found, kind.expected, kind.done});
        entry.entity = keyword;
        m_report.add(std::move(entry));
    }
}

std::uint64_t FileReader::readData(ModelData& data, ProgressMeter& progress) {
    SectionReader records(data, m_parts, m_window, m_layout, m_report, m_threading);
    const char* end = nullptr;
    bool ended = false;
    std::uint64_t opaqueFrom = 0; // all that follows is no statement of the file
    while (!ended) {
        if (!nextStatement(end)) {
            report(KpIfcFinding::truncated, KpIfcSeverity::error,
                   {"the end of the file", "END-ISO-10303-21;", "what stands before is read"});
            if (!m_layout.hasDataSection) m_layout.dataEnd = offset();
            opaqueFrom = offset();
            break;
        }
        const std::string keyword = keywordOf(m_place);
        if (keyword == "DATA" || *m_place == '#') {
            std::string opening = *m_place == '#' ? std::string() : statement(end);
            const char* const behindKeyword = lexer::keywordEnd(m_place);
            const char next = *lexer::skipBlanks(behindKeyword, end);
            if (opening.empty()) {
                report(KpIfcFinding::sectionStructure, KpIfcSeverity::warning,
                       {"an instance", "DATA; before it", "read as if it stood there"});
            } else if (next == ';' || next == '(') {
                checkCase(keyword);
                if (const std::string wrong = m_dataSections.next(opening); !wrong.empty())
                    report(KpIfcFinding::sectionStructure, KpIfcSeverity::warning,
                           {quotedHere(end), wrong, kReadAllTheSame});
                m_place = end;
            } else {
                report(KpIfcFinding::sectionStructure, KpIfcSeverity::warning,
                       {quotedHere(end), "';' behind DATA", "read as if it stood there"});
                opening = "DATA;";
                const std::uint64_t begin = offset();
                m_place = behindKeyword;
                m_layout.noteOpaque(begin, offset());
            }
            m_layout.hasDataSection = true;
            if (m_frame.dataOpening.empty())
                m_frame.dataOpening = opening.empty() ? "DATA;" : std::move(opening);
            else if (!opening.empty())
                records.keep("ENDSEC;\n" + opening);
            const bool isWhole = records.readSection(m_place);
            m_layout.dataEnd = isWhole ? records.sectionEnd() : offset();
            if (!isWhole) {
                opaqueFrom = offset();
                report(KpIfcFinding::truncated, KpIfcSeverity::error,
                       {"the end of the file", "ENDSEC; of the data section", "what stands before is read"});
                std::string tail(m_place, m_window.end());
                while (!tail.empty() && static_cast<unsigned char>(tail.back()) <= ' ') tail.pop_back();
                // What is left of a record has no end of its own: a comment keeps it apart from what is written next.
                for (std::size_t at = 0; (at = tail.find("*/", at)) != std::string::npos;) tail.insert(++at, 1, ' ');
                if (!tail.empty()) records.keep("/* cut off: " + tail + " */");
                break;
            }
        } else if (keyword == "END-ISO-10303-21") {
            if (!m_layout.hasDataSection) m_layout.dataEnd = offset();
            checkAlone(end);
            m_place = end;
            opaqueFrom = offset();
            readTrailing();
            ended = true;
        } else {
            readOtherSection(end);
        }
    }
    const std::uint64_t size = m_window.readToEnd();
    records.finish(progress);
    m_layout.noteOpaque(opaqueFrom, size);
    if (m_window.firstZero() != Window::kNoZero)
        m_report.add(findingAt(KpIfcFinding::textEncoding, KpIfcSeverity::warning, m_window.firstZero(),
                               {"a zero byte, the first in the file", "none: what stood there may be lost"}));
    if (m_source.error().empty()) locateFindings(m_report.located(), m_source, m_layout, progress);
    return size;
}

/// What a section of the third edition holds is kept and means nothing to the model.
void FileReader::reportKept(std::string found) {
    KpIfcReportEntry entry = findingAt(KpIfcFinding::sectionStructure, KpIfcSeverity::note, offset(),
                                       {std::move(found), "", "kept as text, nothing of it resolved or verified"});
    entry.isAllowed = true;
    m_report.add(std::move(entry));
}

/// Keeps the text of a section that is neither HEADER nor DATA (anchors and references of the third edition).
void FileReader::readOtherSection(const char* end) {
    const std::string keyword = keywordOf(m_place);
    const bool known = keyword == "ANCHOR" || keyword == "REFERENCE";
    if (known)
        reportKept("section " + keyword);
    else
        report(KpIfcFinding::sectionStructure, KpIfcSeverity::warning, {quotedHere(end), "a section", "kept as text"});
    if (known) {
        const bool isTwice =
            std::find(m_otherSections.begin(), m_otherSections.end(), keyword) != m_otherSections.end();
        const bool isLate = m_layout.hasDataSection || (keyword == "ANCHOR" && !m_otherSections.empty());
        if (isTwice || isLate)
            report(KpIfcFinding::sectionStructure, KpIfcSeverity::warning,
                   {"section " + keyword + " here", "one in the order ANCHOR, REFERENCE, DATA", kReadAllTheSame});
        if (!isTwice) m_otherSections.push_back(keyword);
        checkAlone(end);
    }
    std::string text = statement(end);
    const std::uint64_t begin = offset();
    m_place = end;
    bool ended = !known;
    SectionItems items(keyword);
    while (!ended && nextStatement(end)) {
        const std::string next = keywordOf(m_place);
        if (next == "DATA" || next == "ANCHOR" || next == "REFERENCE" || next == "END-ISO-10303-21") break;
        ended = next == "ENDSEC";
        if (ended)
            checkAlone(end);
        else if (!items.next({m_place, static_cast<std::size_t>(end - m_place)}))
            report(KpIfcFinding::sectionStructure, KpIfcSeverity::warning,
                   {quotedHere(end), keyword == "ANCHOR" ? "<name>=value;" : "#name=<resource>;", "kept as text"});
        text += '\n' + statement(end);
        m_place = end;
    }
    if (items.isWithin())
        report(KpIfcFinding::sectionStructure, KpIfcSeverity::warning,
               {"the end of section " + keyword, "'>' of a name before it", "kept as text"});
    if (!ended) {
        report(KpIfcFinding::sectionStructure, KpIfcSeverity::warning,
               {"the end of section " + keyword, "ENDSEC; before it", "read as if it stood there"});
        text += "\nENDSEC;";
    }
    m_layout.noteOpaque(begin, offset());
    (m_frame.dataOpening.empty() ? m_frame.beforeData : m_frame.behindData) += text + '\n';
}

/// What follows the end mark: signatures are kept, all else is no part of the file.
void FileReader::readTrailing() {
    const char* end = nullptr;
    while (skipBlanks() && keywordOf(m_place) == "SIGNATURE" && nextStatement(end)) {
        reportKept("a signature");
        const std::uint64_t begin = offset();
        // An early semicolon ends the statement, not the section.
        std::string text = statement(end);
        while (!text.ends_with("ENDSEC;") && (m_place = end, nextStatement(end))) text += '\n' + statement(end);
        if (!isSignature(text))
            m_report.add(findingAt(KpIfcFinding::sectionStructure, KpIfcSeverity::warning, begin,
                                   {quoted(text), "BASE64 up to ENDSEC;", "kept as text"}));
        m_frame.behindEnd += text + '\n';
        m_place = end ? end : m_window.end();
    }
    if (!skipBlanks() && m_place == m_window.end()) return;
    report(KpIfcFinding::trailingText, KpIfcSeverity::warning,
           {quotedHere(m_window.end()) + " behind END-ISO-10303-21;", "the end of the file", "no part of the model"});
    while (m_window.refill(m_place = m_window.end())) {
    }
}

} // namespace KP_SDAI
