#include "check/HeaderCheck.h"

#include <KpIfcCore/KpTextCase.h>

#include "check/HeaderForms.h"
#include "part21/Findings.h"

#include <algorithm>
#include <span>
#include <string>
#include <unordered_set>

namespace KP_SDAI {

namespace {

using Kind = KpStepValue::Kind;

struct Field {
    const char* name;
    bool isList;
    std::size_t longest = 256; ///< characters
};
constexpr Field kDescription[] = {{"description", true}, {"implementation_level", false}};
constexpr Field kName[] = {{"name", false},         {"time_stamp", false},           {"author", true},
                           {"organization", true},  {"preprocessor_version", false}, {"originating_system", false},
                           {"authorization", false}};
constexpr Field kSchema[] = {{"schema_identifiers", true, 1024}};

struct Record {
    const char* keyword;
    std::span<const Field> fields;
};
constexpr Record kRecords[] = {{"FILE_DESCRIPTION", kDescription}, {"FILE_NAME", kName}, {"FILE_SCHEMA", kSchema}};

/// True for records that may follow the standard's three: those of later editions, and user-defined ones.
bool isFurtherRecord(std::string_view keyword) {
    constexpr std::string_view kFurther[] = {"FILE_POPULATION", "SCHEMA_POPULATION", "SECTION_LANGUAGE",
                                             "SECTION_CONTEXT"};
    return keyword.starts_with('!') ||
           std::find(std::begin(kFurther), std::end(kFurther), keyword) != std::end(kFurther);
}

class Check {
public:
    Check(const KpIfcHeader& header, KpIfcReport& report, std::span<const std::uint64_t> offsets)
        : m_header(header), m_report(report), m_offsets(offsets) {}

    void run(std::string_view schemaName);

private:
    void add(std::string_view field, std::string found, std::string expected,
             KpIfcSeverity severity = KpIfcSeverity::warning);
    /// Turns to a record; null where there is none.
    const KpIfcHeaderRecord* turnTo(const char* keyword);
    bool isRecord(std::size_t index) const;
    void records();
    void fields(const Record& record, const std::vector<KpStepValue>& parameters);
    void field(const Field& field, const KpStepValue& value);
    void text(const Field& field, const KpStepValue& value, const char* expected);
    void forms(std::string_view schemaName);
    void identifiers(std::string_view schemaName);

    const KpIfcHeader& m_header;
    KpIfcReport& m_report;
    std::span<const std::uint64_t> m_offsets;
    std::string m_keyword;   ///< of the record that is looked at
    std::size_t m_place = 0; ///< its number; beyond the last where there is none
};

const KpIfcHeaderRecord* Check::turnTo(const char* keyword) {
    const KpIfcHeaderRecord* const record = m_header.find(keyword);
    m_keyword = keyword;
    m_place = record ? static_cast<std::size_t>(record - m_header.records().data()) : m_header.records().size();
    return record;
}

void Check::add(std::string_view field, std::string found, std::string expected, KpIfcSeverity severity) {
    KpIfcReportEntry entry;
    entry.severity = severity;
    if (!m_offsets.empty()) {
        entry.offset = m_offsets[std::min(m_place, m_offsets.size() - 1)];
        entry.line = 1; // counted when everything is read
    }
    entry.finding = KpIfcFinding::header;
    entry.entity = m_keyword;
    entry.attribute = field;
    entry.found = std::move(found);
    entry.expected = std::move(expected);
    m_report.add(std::move(entry));
}

/// A value for messages, not all of a long one.
std::string excerptOf(const KpStepValue& value) {
    constexpr std::size_t kLongest = 60;
    std::string text = value.kind == Kind::string ? '\'' + value.text + '\'' : value.spelled();
    if (text.size() <= kLongest) return text;
    std::size_t end = kLongest;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end; // not within a character
    return text.substr(0, end) + "...";
}

std::size_t charactersOf(std::string_view utf8) {
    return static_cast<std::size_t>(
        std::count_if(utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

void Check::run(std::string_view schemaName) {
    records();
    for (const Record& record : kRecords) {
        const KpIfcHeaderRecord* const found = turnTo(record.keyword);
        if (found && isRecord(m_place)) fields(record, found->parameters);
    }
    forms(schemaName);
}

/// False for text that is no record.
bool Check::isRecord(std::size_t index) const {
    if (!m_header.records()[index].parameters.empty()) return true;
    KpStepValue value;
    return KpStepValue::read(m_header.source(index), value) && value.kind == Kind::typed;
}

void Check::records() {
    std::size_t last = 0;
    bool isBehindOthers = false;
    for (std::size_t i = 0; i < m_header.records().size(); ++i) {
        const KpIfcHeaderRecord& record = m_header.records()[i];
        m_keyword = record.keyword;
        m_place = i;
        const bool isOne = isRecord(i);
        if (!isOne) add("", '\'' + m_header.source(i).substr(0, 60) + '\'', "a header record");
        const auto* const standard = std::find_if(std::begin(kRecords), std::end(kRecords),
                                                  [&](const Record& one) { return record.keyword == one.keyword; });
        if (standard == std::end(kRecords)) {
            if (isOne && !isFurtherRecord(record.keyword)) add("", "this record", "one that the standard knows");
            isBehindOthers |= isOne;
            continue;
        }
        const auto place = static_cast<std::size_t>(standard - kRecords);
        if (&record != m_header.find(record.keyword))
            add("", "a second record of the name", "one");
        else if (isBehindOthers)
            add("", "it behind records that come last", "it before those");
        else if (place < last)
            add("", std::string("it behind ") + kRecords[last].keyword, "it before that");
        last = std::max(last, place);
    }
    for (const Record& record : kRecords) {
        if (!turnTo(record.keyword)) add("", "no such record", "one");
    }
}

void Check::fields(const Record& record, const std::vector<KpStepValue>& parameters) {
    if (parameters.size() != record.fields.size())
        add("", countOf(parameters.size(), "parameter"), std::to_string(record.fields.size()));
    for (std::size_t i = 0; i < std::min(parameters.size(), record.fields.size()); ++i)
        field(record.fields[i], parameters[i]);
}

void Check::field(const Field& field, const KpStepValue& value) {
    if (!field.isList) return text(field, value, "a text");
    if (value.kind != Kind::list || value.items.empty())
        return add(field.name, excerptOf(value), "a list of texts, at least one");
    for (const KpStepValue& item : value.items) text(field, item, "a list of texts");
}

void Check::text(const Field& field, const KpStepValue& value, const char* expected) {
    if (value.kind != Kind::string) return add(field.name, excerptOf(value), expected);
    if (const std::size_t count = charactersOf(value.text); count > field.longest)
        add(field.name, countOf(count, "character") + ": " + excerptOf(value),
            "at most " + std::to_string(field.longest), KpIfcSeverity::note);
}

void Check::forms(std::string_view schemaName) {
    const auto textAt = [this](const char* keyword, std::size_t index) -> const KpStepValue* {
        const KpIfcHeaderRecord* const record = turnTo(keyword);
        const bool isText =
            record && index < record->parameters.size() && record->parameters[index].kind == Kind::string;
        return isText ? &record->parameters[index] : nullptr;
    };
    if (const KpStepValue* level = textAt("FILE_DESCRIPTION", 1); level && !isImplementationLevel(level->text))
        add("implementation_level", excerptOf(*level), "edition and conformance class of the file format, as in '2;1'",
            KpIfcSeverity::note);
    if (const KpStepValue* time = textAt("FILE_NAME", 1);
        time && !time->text.empty() && !isTimeStamp(time->text)) // empty: nothing to say
        add("time_stamp", excerptOf(*time), "date and time (ISO 8601), as in '2026-01-02T03:04:05'");
    identifiers(schemaName);
}

void Check::identifiers(std::string_view schemaName) {
    turnTo("FILE_SCHEMA");
    const std::vector<std::string> schemas = m_header.schemaIdentifiers();
    if (schemas.size() > 1) add("schema_identifiers", countOf(schemas.size(), "schema"), "one");
    std::unordered_set<std::string> known;
    for (const std::string& schema : schemas) {
        const std::string found = excerptOf(KpStepValue::string(schema));
        if (!isSchemaIdentifier(schema)) add("schema_identifiers", found, "the name of a schema in upper case");
        if (!known.insert(schema).second) add("schema_identifiers", found + " twice", "different schemas");
    }
    const bool isName = !schemas.empty() && isSchemaIdentifier(schemas.front());
    if (isName && schemaNameOf(schemas.front()) != schemaName)
        add("schema_identifiers", excerptOf(KpStepValue::string(schemas.front())),
            '\'' + std::string(schemaName) + '\'', KpIfcSeverity::note);
}

} // namespace

void checkHeader(const KpIfcHeader& header, std::string_view schemaName, KpIfcReport& report,
                 std::span<const std::uint64_t> offsets) {
    Check(header, report, offsets).run(schemaName);
}

} // namespace KP_SDAI
