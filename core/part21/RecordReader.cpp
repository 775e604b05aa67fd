#include "part21/RecordReader.h"

#include "part21/FieldIssue.h"
#include "part21/LateReferences.h"
#include "part21/Lexer.h"
#include "part21/RecordWriter.h"
#include "part21/ReferenceText.h"
#include "part21/Spelling.h"

#include <KpIfcCore/KpIfcEntityType.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace KP_SDAI {

namespace {

/// The start of a line in [p, end) that looks like the next record or the end of the section; null where there is none.
/// There a record without end is cut.
const char* nextRecordLine(const char* p, const char* end) {
    while (p < end) {
        p = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
        if (!p) return nullptr;
        ++p;
        if (lexer::beginsRecord(p, end)) return p;
        const char* q = p;
        while (*q == ' ' || *q == '\t') ++q;
        if (end - q >= 7 && std::memcmp(q, "ENDSEC;", 7) == 0) return p;
    }
    return nullptr;
}

/// Where a record that could not be bound ends: behind its ';', or before a line that looks like the next record, so
/// that a missing semicolon or apostrophe does not take the records behind it along. Null where neither comes before
/// `end`. Looks as far as it must, so that many damaged records cost no more than their length.
const char* damagedRecordEnd(const char* begin, const char* end) {
    for (std::ptrdiff_t reach = 256;; reach *= 4) {
        const char* const limit = end - begin > reach ? begin + reach : end;
        const char* const semicolon = lexer::recordEnd(begin, limit);
        const char* const line = nextRecordLine(begin + 1, semicolon ? semicolon : limit);
        if (line) return line;
        if (semicolon || limit == end) return semicolon;
    }
}

/// The comment that begins in [p, end) and does not end there; null where there is none.
const char* openComment(const char* p, const char* end) {
    while (p && p < end) {
        if (*p == '\'') {
            p = KpStepText::stringEnd(p + 1, end);
        } else if (lexer::isComment(p)) {
            const char* const behind = lexer::commentEnd(p, end);
            if (!behind) return p;
            p = behind;
        } else {
            ++p;
        }
    }
    return nullptr;
}

bool isStatement(const char* begin, const char* end, std::string_view name) {
    return end - begin >= static_cast<std::ptrdiff_t>(name.size()) &&
           equalNoCase(begin, name.size(), std::string(name).c_str()) && !lexer::isKeywordPart(begin[name.size()]);
}

} // namespace

namespace {

/// Destroys an instance of which nobody has taken care, where that is needed.
struct UnboundInstance {
    KpIfcEntityBase& instance;
    const bool& ownsHeap;
    ~UnboundInstance() {
        if (ownsHeap) instance.~KpIfcEntityBase();
    }
};

} // namespace

RecordReader::RecordReader(ModelData& data, Window& window, KpIfcReport& report)
    : m_data(data), m_window(window), m_report(report), m_names(data.schema()), m_filer(data) {}

bool RecordReader::readSection(const char*& place) {
    Failure failure;
    for (;;) {
        place = lexer::skipBlanks(place, m_window.end());
        if (place == m_window.end() || lexer::isComment(place)) {
            if (m_window.refill(place)) continue;
            return false;
        }
        if (*place == '#' && readRecordWithin(place, failure)) continue;
        if (m_window.end() - place < Window::kReach && !m_window.hasEnded()) {
            m_window.refill(place); // what fails close to the end of the window may be whole behind it
            continue;
        }

        const char* const begin = place;
        const bool isFrame = *begin == ';' || isStatement(begin, m_window.end(), "ENDSEC") ||
                             isStatement(begin, m_window.end(), "END-ISO-10303-21");
        const char* const end =
            isFrame ? lexer::recordEnd(begin, m_window.end()) : damagedRecordEnd(begin, m_window.end());
        if (!end && m_window.refill(place)) continue;
        if (!end) return false;
        if (!isFrame && m_window.offsetOf(begin) >= m_openComment) {
            if (const char* const comment = openComment(begin, end)) {
                const char* const behind = lexer::commentEnd(comment, m_window.end());
                if (!behind && !m_window.hasEnded()) {
                    m_window.refill(place); // however far behind a comment ends, it may be whole
                    continue;
                }
                m_openComment = m_window.offsetOf(behind ? behind : m_window.end());
            }
        }
        if (isFrame && hasLowerCase({begin, static_cast<std::size_t>(lexer::keywordEnd(begin) - begin)}))
            m_report.add(findingAt(KpIfcFinding::spelling, KpIfcSeverity::warning, m_window.offsetOf(begin),
                                   {"the end of a section", "ENDSEC; in upper case", kReadAllTheSame}));
        if (*begin == '#') {
            keepRecord(begin, end, failure);
        } else if (isStatement(begin, end, "ENDSEC")) {
            m_sectionEnd = m_window.offsetOf(begin);
            place = end;
            return true;
        } else if (isStatement(begin, end, "END-ISO-10303-21")) {
            m_sectionEnd = m_window.offsetOf(begin);
            m_report.add(findingAt(KpIfcFinding::sectionStructure, KpIfcSeverity::warning, m_window.offsetOf(begin),
                                   {"END-ISO-10303-21", "ENDSEC; before it", "read as if it stood there"}));
            return true;
        } else if (*begin == ';') {
            m_report.add(findingAt(KpIfcFinding::unreadableRecord, KpIfcSeverity::warning, m_window.offsetOf(begin),
                                   {"a semicolon without a record", "a record", "left out"}));
        } else {
            failure = Failure{};
            failure.place = begin;
            failure.expected = "'#' and an instance name";
            keepRecord(begin, end, failure);
        }
        place = end;
    }
}

/// Reads one record, looking for the ends of its texts and comments within the window. Where a record was cut because
/// its comment goes on over what looks like the next ones, comments before the end of that one are looked for within
/// their own record only, so that many of them cost no more than their length.
bool RecordReader::readRecordWithin(const char*& place, Failure& failure) {
    m_end = m_window.end();
    if (m_window.offsetOf(place) < m_openComment)
        if (const char* line = nextRecordLine(place + 1, m_end)) {
            while (*line == ' ' || *line == '\t') ++line;
            m_end = line;
        }
    return readRecord(place, failure);
}

bool RecordReader::readOne(const char* place, std::uint64_t name) {
    const char* digit = place + 1;
    std::uint64_t found = 0;
    while (lexer::isDigit(*digit)) found = found * 10 + static_cast<unsigned>(*digit++ - '0');
    if (*place != '#' || found != name) return false;
    m_end = m_window.end();
    Failure failure;
    const bool isBound = readRecord(place, failure);
    m_referring.clear();
    m_globalIds = {};
    return isBound;
}

void RecordReader::lookAtReferences() {
    LateReferences references(m_data, m_report);
    for (std::size_t next = 0; next < m_filer.m_pending.size(); ++next) {
        const KpSpfFilerBase::PendingField pending = m_filer.m_pending[next]; // looking may append
        references.look(pending);
    }
    m_filer.m_pending.clear();
}

/// Reads one record. False, with the reason, where it is not bound; `place` then has not moved.
bool RecordReader::readRecord(const char*& place, Failure& failure) {
    const char* const end = m_end;
    const auto fail = [&](const char* at, std::string expected) {
        failure.place = at;
        failure.expected = std::move(expected);
        return false;
    };
    failure.finding = KpIfcFinding::unreadableRecord;
    failure.severity = KpIfcSeverity::error;
    failure.name = 0;
    failure.entity.clear();
    failure.found.clear();
    failure.isAllowed = false;

    const char* p = place + 1;
    const char* const digits = p;
    std::uint64_t name = 0;
    while (lexer::isDigit(*p)) name = name * 10 + static_cast<unsigned>(*p++ - '0');
    if (p == digits) return fail(p, "the digits of an instance name");
    if (p - digits > 18 && std::from_chars(digits, p, name).ec != std::errc()) {
        failure.finding = KpIfcFinding::instanceName;
        return fail(digits, "an instance name below 2^64");
    }
    failure.name = name;
    p = lexer::skipBlanks(p, end);
    if (*p != '=') return fail(p, "'=' behind the instance name");
    p = lexer::skipBlanks(p + 1, end);
    if (name == 0) {
        failure.finding = KpIfcFinding::instanceName;
        failure.severity = KpIfcSeverity::warning;
        return fail(digits, "an instance name above 0");
    }
    const char* const keyword = p;
    if (*p == '(') {
        failure.finding = KpIfcFinding::complexRecord;
        failure.severity = KpIfcSeverity::warning;
        failure.found = "an instance of several entities";
        return fail(p, "one of one entity, for schema " + std::string(m_data.schema().name()) + " combines none");
    }
    p = lexer::keywordEnd(p);
    if (p == keyword) return fail(p, "the name of an entity");
    const std::string_view entity(keyword, static_cast<std::size_t>(p - keyword));
    const KpIfcEntityType* type = m_names.find(entity);
    m_isMisspelled = !type && hasLowerCase(entity);
    if (m_isMisspelled) type = m_data.schema().findEntity(entity);
    if (!type) {
        failure.entity = entity;
        failure.finding = KpIfcFinding::unknownEntity;
        failure.severity = KpIfcSeverity::warning;
        failure.found = excerpt(entity);
        if (entity.starts_with('!')) { // clause 11: by agreement between sender and receiver
            failure.severity = KpIfcSeverity::note;
            failure.isAllowed = true;
            failure.found += ", a user-defined entity";
            return fail(keyword, "");
        }
        return fail(keyword, "an entity of schema " + std::string(m_data.schema().name()));
    }
    p = lexer::skipBlanks(p, end);
    if (*p != '(') {
        failure.entity = entity;
        return fail(p, "'(' behind the name of the entity");
    }
    m_filer.m_recordOffset = m_window.offsetOf(place);
    const char* behind = p + 1;
    if (!readFields(*type, m_data.table.slot(name), behind, failure)) {
        failure.entity = type->name();
        return false;
    }
    m_window.layout().noteName(name);
    place = behind;
    return true;
}

bool RecordReader::readFields(const KpIfcEntityType& type, KpIfcSlot* slot, const char*& place, Failure& failure) {
    KpIfcEntityBase* instance = m_data.construct(*type.facts());
    const std::size_t pending = m_filer.m_pending.size();
    m_filer.m_issues.clear();
    m_filer.m_instance = instance;
    m_filer.m_cur = m_filer.m_fieldStart = place;
    m_filer.m_end = m_end;
    m_filer.m_field = 0;
    m_filer.m_broken = m_filer.m_missing = m_filer.m_ownsHeap = false;
    const UnboundInstance unbound{*instance, m_filer.m_ownsHeap};
    instance->inFields(&m_filer);

    const char* const begin = place;
    m_tooManyParameters = false;
    if (!m_filer.m_broken) {
        m_filer.skipBlanks();
        if (*m_filer.m_cur != ')') {
            // More parameters than attributes: the record is bound, its text is kept.
            const char* p = m_filer.m_cur;
            if (type.recordFields().empty() || *p == ',') {
                m_tooManyParameters = true;
                for (p = *p == ',' ? p + 1 : p; p; ++p) {
                    p = lexer::parameterEnd(p, m_filer.m_end);
                    if (!p || *p == ')') break;
                }
            }
            if (m_tooManyParameters && p)
                m_filer.m_cur = p;
            else
                m_filer.broken("')' behind the last parameter");
        }
    }
    if (!m_filer.m_broken) {
        const char* const close = m_filer.m_cur;
        const char* p = lexer::skipBlanks(close + 1, m_filer.m_end);
        const bool ends = *p == ';';
        if (ends || *p == '#' || isStatement(p, m_window.end(), "ENDSEC")) {
            bind(type, slot, instance, {begin, static_cast<std::size_t>(close - begin)});
            if (!ends) {
                m_report.add(findingOn(*instance, KeptField::kWholeRecord, KpIfcFinding::unreadableRecord,
                                       KpIfcSeverity::warning, m_window.offsetOf(close) + 1,
                                       {"no semicolon", "';' behind the record", "read as if it stood there"}));
                m_window.layout().noteIrregularEnd(m_filer.m_recordOffset, m_window.offsetOf(close) + 1);
            }
            place = ends ? p + 1 : p;
            return true;
        }
        m_filer.m_cur = p;
        m_filer.broken("';' behind the record");
    }
    failure.place = m_filer.m_cur;
    failure.expected = m_filer.m_brokenExpected;
    m_filer.m_pending.resize(pending);
    return false;
}

void RecordReader::bind(const KpIfcEntityType& type, KpIfcSlot* slot, KpIfcEntityBase* instance,
                        std::string_view parameters) {
    if (m_filer.m_ownsHeap) m_data.noteHeap(*instance);
    m_filer.m_ownsHeap = false; // of this one the model takes care now
    const auto report = [&](KpIfcFinding finding, Said said) {
        KpIfcReportEntry entry = findingAt(finding, KpIfcSeverity::warning, m_filer.m_recordOffset, std::move(said));
        entry.instanceName = KpDbObjectId(slot).instanceName();
        entry.entity = type.name();
        m_report.add(std::move(entry));
    };
    if (slot->word != 0 && !(slot->word & KpIfcSlot::kUnread)) {
        report(KpIfcFinding::duplicateName,
               {"an instance name that stands before", "another one", "this record counts, the other is kept as text"});
        m_window.layout().noteCounting(KpDbObjectId(slot).instanceName(), m_filer.m_recordOffset);
        if (KpIfcEntityBase* former = KpDbObjectId(slot).openObject())
            m_data.demote(slot, RecordWriter(m_data).record(*former));
    }
    m_data.bind(slot, instance);
    if (!type.counterparts().empty()) m_referring.push_back(instance);
    m_globalIds.note(type, *instance, m_filer.m_recordOffset);
    if (m_isMisspelled) report(KpIfcFinding::spelling, {"the name of an entity", "it in upper case", kReadAllTheSame});
    if (type.isAbstract())
        report(KpIfcFinding::abstractEntity,
               {"an instance of an abstract entity", "one of its subtypes", kReadAllTheSame});
    if (!m_filer.m_issues.empty() || m_filer.m_missing || m_tooManyParameters) takeIssues(type, *instance, parameters);
}

/// Reports what the fields of a record gave to say and keeps the texts that their members cannot hold.
void RecordReader::takeIssues(const KpIfcEntityType& type, KpIfcEntityBase& instance, std::string_view parameters) {
    std::string normal;
    std::vector<std::string_view> parts;
    const auto keep = [&](std::uint32_t field, std::string_view source) {
        if (parts.empty()) {
            normal = RecordWriter(m_data).parameters(instance);
            parts = splitParameters(normal);
        }
        if (field == KeptField::kWholeRecord)
            m_data.keepField(instance, {field, std::string(source), normal});
        else if (field < parts.size())
            m_data.keepField(instance, {field, std::string(source), std::string(parts[field])});
    };
    for (const KpSpfFilerBase::FieldIssue& issue : m_filer.m_issues) {
        if (m_report.lists(issue.finding))
            m_report.add(entryOf(issue, instance));
        else
            m_report.addUnlisted(issue.finding, issue.severity, 1);
        if (issue.keep) {
            const char* const end = lexer::parameterEnd(issue.begin, m_filer.m_end);
            keep(issue.field, {issue.begin, static_cast<std::size_t>((end ? end : issue.end) - issue.begin)});
        }
    }
    if (m_filer.m_missing || m_tooManyParameters) {
        m_report.add(findingOn(instance, KeptField::kWholeRecord, KpIfcFinding::attributeCount, KpIfcSeverity::warning,
                               m_filer.m_recordOffset,
                               {countOf(splitParameters(std::string(parameters)).size(), "parameter"),
                                std::to_string(type.recordFields().size()), "the text of the record is kept"}));
        keep(KeptField::kWholeRecord, parameters);
    }
}

KpIfcReportEntry RecordReader::entryOf(const KpSpfFilerBase::FieldIssue& issue, const KpIfcEntityBase& instance) const {
    const std::string source(issue.begin, issue.end);
    Said said{issue.found ? issue.found : excerpt(source), issue.expected,
              issue.done   ? issue.done
              : issue.keep ? kTextKept
                           : kReadAllTheSame};
    if (issue.finding == KpIfcFinding::wrongReference) // the one that was read last
        visitReferenceTexts(source, [&](std::uint64_t name, std::string_view) {
            if (KpIfcSlot* slot = m_data.table.find(name)) said.found = labelOf(KpDbObjectId(slot));
        });
    return findingOn(instance, issue.field, issue.finding, issue.severity, m_window.offsetOf(issue.begin),
                     std::move(said));
}

void RecordReader::keepRecord(const char* begin, const char* end, Failure& failure) {
    if (failure.found.empty()) // parsing may have gone on into what is taken for the next record
        failure.found = failure.place < end ? quoted({failure.place, static_cast<std::size_t>(end - failure.place)})
                                            : std::string("the end of the record");
    KpIfcReportEntry entry = findingAt(failure.finding, failure.severity, m_window.offsetOf(failure.place),
                                       {failure.found, failure.expected, "the record is kept as text"});
    entry.instanceName = failure.name;
    entry.isAllowed = failure.isAllowed;
    entry.entity = excerpt(failure.entity);
    m_report.add(std::move(entry));
    std::string text(begin, end);
    while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') text.pop_back();
    // More than once where a text ends in "\\S\\", which makes a letter of the first apostrophe.
    for (const char* missing = ";"; *missing; text += missing)
        missing = lexer::missingEnd(text.data(), text.data() + text.size());
    KpIfcSlot* slot = failure.name ? m_data.table.slot(failure.name) : nullptr;
    const bool isFirst = slot && slot->word == 0;
    m_window.layout().noteOpaque(m_window.offsetOf(begin), m_window.offsetOf(end), failure.name);
    if (!isFirst) m_window.layout().noteSurplus(m_window.offsetOf(begin));
    if (slot && !isFirst) {
        entry = findingAt(KpIfcFinding::duplicateName, KpIfcSeverity::warning, m_window.offsetOf(begin),
                          {"an instance name that stands before", "another one", "the other record counts"});
        entry.instanceName = failure.name;
        m_report.add(std::move(entry));
    }
    m_data.keep(std::move(text), slot);
    if (!slot) ++m_data.keptCount; // a record all the same, of no name
}

void RecordReader::finish(ProgressMeter& progress) {
    LateReferences(m_data, m_report).look(m_filer.m_pending, progress);
    m_globalIds.look(m_report);
    m_filer.m_pending.clear();
    m_data.table.sortSparse();
    enterInverses(progress);
}

void RecordReader::enterInverses(ProgressMeter& progress) {
    progress.beginItems(KpIfcStage::inverses, m_referring.size());
    // In ascending order, so that every set grows at its end.
    const auto byName = [](const KpIfcEntityBase* a, const KpIfcEntityBase* b) {
        return a->objectId() < b->objectId();
    };
    if (!std::is_sorted(m_referring.begin(), m_referring.end(), byName))
        std::sort(m_referring.begin(), m_referring.end(), byName);
    for (KpIfcEntityBase* instance : m_referring) {
        if (instance->objectId().openObject() == instance) instance->setInverseCounterParts();
        progress.step();
    }
    m_referring.clear();
}

} // namespace KP_SDAI
