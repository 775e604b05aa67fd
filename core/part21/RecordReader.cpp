#include "part21/RecordReader.h"

#include "model/SlotWord.h"
#include "part21/FieldIssue.h"
#include "part21/Lexer.h"
#include "part21/RecordEnds.h"
#include "part21/RecordWriter.h"
#include "part21/Scan.h"
#include "part21/Spelling.h"

#include <KpIfcCore/KpIfcEntityType.h>

#include <charconv>

namespace KP_SDAI {

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

bool RecordReader::read(const char*& place, const char* end, Failure& failure) {
    m_end = end;
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
    if (const char* const behind = scan::name(p, name)) {
        p = behind;
    } else {
        for (name = 0; lexer::isDigit(*p); ++p) name = name * 10 + static_cast<unsigned>(*p - '0');
    }
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
    p = scan::keywordEnd(p);
    if (p == keyword) return fail(p, "the name of an entity");
    const std::string_view entity(keyword, static_cast<std::size_t>(p - keyword));
    const std::size_t index = m_names.indexOf(entity);
    const KpIfcEntityType* type = m_names.at(index);
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
    m_filer.m_recordBegin = place;
    m_filer.m_recordOffset = offsetOf(place);
    const char* behind = p + 1;
    if (!readFields(*type, m_data.table.slot(name, m_memory.ownSlots), behind, failure)) {
        failure.entity = type->name();
        return false;
    }
    m_into->layout.noteName(name);
    m_memory.types.note(name, index, m_isMisspelled ? nullptr : type);
    place = behind;
    return true;
}

bool RecordReader::readFields(const KpIfcEntityType& type, KpIfcSlot* slot, const char*& place, Failure& failure) {
    const KpIfcEntityFacts& facts = *type.facts();
    KpIfcEntityBase* instance = facts.construct(m_memory.arena.allocate(facts.size));
    const std::size_t pending = m_into->pending.size();
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
        if (ends || *p == '#' || isStatement(p, m_sight, "ENDSEC")) {
            bind(type, slot, instance, {begin, static_cast<std::size_t>(close - begin)});
            if (!ends) {
                m_into->report.add(findingOn(*instance, KeptField::kWholeRecord, KpIfcFinding::unreadableRecord,
                                             KpIfcSeverity::warning, offsetOf(close) + 1,
                                             {"no semicolon", "';' behind the record", "read as if it stood there"}));
                m_into->layout.noteIrregularEnd(m_filer.m_recordOffset, offsetOf(close) + 1);
            }
            place = ends ? p + 1 : p;
            return true;
        }
        m_filer.m_cur = p;
        m_filer.broken("';' behind the record");
    }
    failure.place = m_filer.m_cur;
    failure.expected = m_filer.m_brokenExpected;
    m_into->pending.erase(m_into->pending.begin() + static_cast<std::ptrdiff_t>(pending), m_into->pending.end());
    return false;
}

void RecordReader::bind(const KpIfcEntityType& type, KpIfcSlot* slot, KpIfcEntityBase* instance,
                        std::string_view parameters) {
    if (m_filer.m_ownsHeap) {
        m_into->instances.toDestroy.push_back(instance);
        ModelData::markHeap(*instance);
    }
    m_filer.m_ownsHeap = false; // of this one the model takes care now
    const std::uint64_t name = KpDbObjectId(slot).instanceName();
    const auto report = [&](KpIfcFinding finding, Said said) {
        KpIfcReportEntry entry = findingAt(finding, KpIfcSeverity::warning, m_filer.m_recordOffset, std::move(said));
        entry.instanceName = name;
        entry.entity = type.name();
        m_into->report.add(std::move(entry));
    };
    ModelData::assign(*instance, slot);
    if (!fill(*slot, reinterpret_cast<std::uintptr_t>(instance))) {
        report(KpIfcFinding::duplicateName,
               {"an instance name that stands before", "another one", "this record counts, the other is kept as text"});
        m_into->layout.noteCounting(name, m_filer.m_recordOffset);
        m_data.take(m_into->instances);
        if (KpIfcEntityBase* former = KpDbObjectId(slot).openObject())
            m_data.demote(slot, RecordWriter(m_data).record(*former));
        slot->word = reinterpret_cast<std::uintptr_t>(instance);
    }
    m_into->instances.noteInstance(slot, name);
    if (!type.counterparts().empty()) m_into->referring.push_back(instance);
    GlobalIdCheck::note(type, *instance, m_filer.m_recordOffset, m_into->globalIds);
    if (m_isMisspelled) report(KpIfcFinding::spelling, {"the name of an entity", "it in upper case", kReadAllTheSame});
    if (type.isAbstract())
        report(KpIfcFinding::abstractEntity,
               {"an instance of an abstract entity", "one of its subtypes", kReadAllTheSame});
    if (!m_filer.m_issues.empty() || m_filer.m_missing || m_tooManyParameters) takeIssues(type, *instance, parameters);
}

bool RecordReader::fill(KpIfcSlot& slot, std::uintptr_t word) {
    if (m_isAlone) {
        if (slot.word != 0 && !(slot.word & KpIfcSlot::kUnread)) return false;
        slot.word = word;
        return true;
    }
    if (!fillWhileReading(slot, word)) throw ReadAgain();
    return true;
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
            m_into->instances.keptFields.emplace_back(&instance, KeptField{field, std::string(source), normal});
        else if (field < parts.size())
            m_into->instances.keptFields.emplace_back(&instance,
                                                      KeptField{field, std::string(source), std::string(parts[field])});
    };
    for (const KpSpfFilerBase::FieldIssue& issue : m_filer.m_issues) {
        if (m_into->report.lists(issue.finding))
            m_into->report.add(entryOf(issue, instance));
        else
            m_into->report.addUnlisted(issue.finding, issue.severity, 1);
        if (issue.keep) {
            const char* const end = lexer::parameterEnd(issue.begin, m_filer.m_end);
            keep(issue.field, {issue.begin, static_cast<std::size_t>((end ? end : issue.end) - issue.begin)});
        }
    }
    if (m_filer.m_missing || m_tooManyParameters) {
        m_into->report.add(findingOn(instance, KeptField::kWholeRecord, KpIfcFinding::attributeCount,
                                     KpIfcSeverity::warning, m_filer.m_recordOffset,
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
    return findingOn(instance, issue.field, issue.finding, issue.severity, offsetOf(issue.begin), std::move(said));
}

void RecordReader::passOver(const char* begin, const char* end, Failure& failure) {
    if (*begin == ';') {
        report(begin, KpIfcFinding::unreadableRecord, {"a semicolon without a record", "a record", "left out"});
        return;
    }
    if (*begin != '#') {
        failure = Failure{};
        failure.place = begin;
        failure.expected = "'#' and an instance name";
    }
    keep(begin, end, failure);
}

void RecordReader::keep(const char* begin, const char* end, Failure& failure) {
    if (failure.found.empty()) // parsing may have gone on into what is taken for the next record
        failure.found = failure.place < end ? quoted({failure.place, static_cast<std::size_t>(end - failure.place)})
                                            : std::string("the end of the record");
    KpIfcReportEntry entry = findingAt(failure.finding, failure.severity, offsetOf(failure.place),
                                       {failure.found, failure.expected, "the record is kept as text"});
    entry.instanceName = failure.name;
    entry.isAllowed = failure.isAllowed;
    entry.entity = excerpt(failure.entity);
    m_into->report.add(std::move(entry));
    std::string text(begin, end);
    while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') text.pop_back();
    // More than once where a text ends in "\\S\\", which makes a letter of the first apostrophe.
    for (const char* missing = ";"; *missing; text += missing)
        missing = lexer::missingEnd(text.data(), text.data() + text.size());
    ReadInstances& instances = m_into->instances;
    KeptRecord& record = instances.keep(std::move(text), failure.name);
    ++instances.keptCount; // also where it has no name
    KpIfcSlot* const slot = failure.name ? m_data.table.slot(failure.name, m_memory.slots) : nullptr;
    const bool isFirst = slot && fill(*slot, reinterpret_cast<std::uintptr_t>(&record) | KpIfcSlot::kKeptRecord);
    m_into->layout.noteOpaque(offsetOf(begin), offsetOf(end), failure.name);
    if (!isFirst) m_into->layout.noteSurplus(offsetOf(begin));
    if (slot && !isFirst) {
        entry = findingAt(KpIfcFinding::duplicateName, KpIfcSeverity::warning, offsetOf(begin),
                          {"an instance name that stands before", "another one", "the other record counts"});
        entry.instanceName = failure.name;
        m_into->report.add(std::move(entry));
    }
}

void RecordReader::report(const char* place, KpIfcFinding finding, Said said) {
    m_into->report.add(findingAt(finding, KpIfcSeverity::warning, offsetOf(place), std::move(said)));
}

} // namespace KP_SDAI
