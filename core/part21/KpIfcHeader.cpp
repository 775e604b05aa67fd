#include <KpIfcCore/KpIfcHeader.h>

#include "part21/StepValueText.h"

#include <algorithm>

namespace KP_SDAI {

namespace {

/// What the fields of the three standard records are while nobody has said anything.
std::vector<KpStepValue> emptyFields(std::string_view keyword) {
    const KpStepValue text = KpStepValue::string("");
    const KpStepValue list = KpStepValue::list({text});
    if (keyword == "FILE_DESCRIPTION") return {list, KpStepValue::string("2;1")};
    if (keyword == "FILE_NAME") return {text, text, list, list, text, text, text};
    return {list};
}

} // namespace

const KpIfcHeaderRecord* KpIfcHeader::find(std::string_view keyword) const {
    for (const KpIfcHeaderRecord& record : m_records)
        if (record.keyword == keyword) return &record;
    return nullptr;
}

/// The first record of a keyword for a change, made where there is none.
KpIfcHeaderRecord& KpIfcHeader::recordFor(std::string_view keyword) {
    std::size_t index = 0;
    while (index < m_records.size() && m_records[index].keyword != keyword) ++index;
    if (index == m_records.size()) {
        m_records.push_back({std::string(keyword), emptyFields(keyword)});
        m_origins.push_back(kNoOrigin);
    }
    return m_records[index];
}

void KpIfcHeader::set(KpIfcHeaderRecord record) {
    KpIfcHeaderRecord& place = recordFor(record.keyword);
    place = std::move(record);
}

bool KpIfcHeader::remove(std::string_view keyword) {
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        if (m_records[i].keyword != keyword) continue;
        m_records.erase(m_records.begin() + static_cast<std::ptrdiff_t>(i));
        m_origins.erase(m_origins.begin() + static_cast<std::ptrdiff_t>(i));
        return true;
    }
    return false;
}

std::string KpIfcHeader::text(std::string_view keyword, std::size_t index) const {
    const std::vector<std::string> found = texts(keyword, index);
    return found.empty() ? std::string() : found.front();
}

std::vector<std::string> KpIfcHeader::texts(std::string_view keyword, std::size_t index) const {
    std::vector<std::string> found;
    const KpIfcHeaderRecord* record = find(keyword);
    if (!record || index >= record->parameters.size()) return found;
    const KpStepValue& value = record->parameters[index];
    if (value.kind == KpStepValue::Kind::string) found.push_back(value.text);
    for (const KpStepValue& item : value.items)
        if (item.kind == KpStepValue::Kind::string) found.push_back(item.text);
    return found;
}

void KpIfcHeader::setText(std::string_view keyword, std::size_t index, std::string text) {
    std::vector<KpStepValue>& fields = recordFor(keyword).parameters;
    if (index >= fields.size()) fields.resize(index + 1, KpStepValue::string(""));
    fields[index] = KpStepValue::string(std::move(text));
}

void KpIfcHeader::setTexts(std::string_view keyword, std::size_t index, std::vector<std::string> texts) {
    std::vector<KpStepValue>& fields = recordFor(keyword).parameters;
    if (index >= fields.size()) fields.resize(index + 1, KpStepValue::string(""));
    KpStepValue list = KpStepValue::list({});
    for (std::string& text : texts) list.items.push_back(KpStepValue::string(std::move(text)));
    fields[index] = std::move(list);
}

KpIfcHeader KpIfcHeader::standard(std::string schemaIdentifier) {
    KpIfcHeader header;
    header.recordFor("FILE_DESCRIPTION");
    header.recordFor("FILE_NAME");
    header.setTexts("FILE_SCHEMA", 0, {std::move(schemaIdentifier)});
    return header;
}

void KpIfcHeader::append(KpIfcHeaderRecord record, std::string source) {
    m_originals.push_back({record, std::move(source)});
    m_records.push_back(std::move(record));
    m_origins.push_back(m_originals.size() - 1);
}

std::string KpIfcHeader::source(std::size_t index) const {
    const std::size_t origin = m_origins[index];
    if (origin != kNoOrigin && m_originals[origin].record == m_records[index]) return m_originals[origin].text;
    std::string text = m_records[index].keyword + '(';
    writeStepValues(m_records[index].parameters, text);
    return text + ')';
}

} // namespace KP_SDAI
