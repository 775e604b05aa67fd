#include "part21/RecordWriter.h"

#include "part21/Lexer.h"

#include <KpIfcCore/KpIfcEntityType.h>

namespace KP_SDAI {

std::vector<std::string_view> splitParameters(const std::string& parameters) {
    std::vector<std::string_view> parts;
    const char* p = parameters.c_str();
    const char* const end = p + parameters.size();
    while (p <= end) {
        const char* behind = lexer::parameterEnd(p, end);
        if (!behind) behind = end;
        parts.emplace_back(p, static_cast<std::size_t>(behind - p));
        p = behind + 1;
    }
    return parts;
}

std::string RecordWriter::parameters(KpIfcEntityBase& instance) {
    clear();
    instance.outFields(&m_filer);
    std::string parameters(text());
    clear();
    return parameters;
}

std::string RecordWriter::record(KpIfcEntityBase& instance) {
    clear();
    putRecord(instance);
    std::string record(text());
    clear();
    return record;
}

void RecordWriter::putRecord(KpIfcEntityBase& instance) {
    m_filer.m_notFinite = false;
    m_filer.putName(instance.instanceName());
    m_filer.put('=');
    m_filer.put(instance.getInstanceType()->name());
    m_filer.put('(');
    if (const std::vector<KeptField>* kept = m_data.keptFields(instance))
        putParameters(instance, *kept);
    else
        instance.outFields(&m_filer);
    m_filer.put(')');
    m_filer.put(';');
    if (!m_filer.m_notFinite || !m_report) return;
    KpIfcReportEntry entry;
    entry.severity = KpIfcSeverity::warning;
    entry.finding = KpIfcFinding::notFinite;
    entry.instanceName = instance.instanceName();
    entry.entity = instance.getInstanceType()->name();
    entry.found = "a number that is not finite";
    entry.expected = "one that files can express";
    entry.done = "written as unset";
    m_report->add(std::move(entry));
}

/// Writes the parameters, those with kept texts by their texts where they are still what they were.
void RecordWriter::putParameters(KpIfcEntityBase& instance, const std::vector<KeptField>& kept) {
    const std::size_t start = m_filer.m_written;
    instance.outFields(&m_filer);
    const std::string normal(m_filer.m_buffer.data() + start, m_filer.m_written - start);
    m_filer.m_written = start;
    for (const KeptField& field : kept)
        if (field.field == KeptField::kWholeRecord && field.normal == normal) return m_filer.put(field.source);
    const std::vector<std::string_view> parts = splitParameters(normal);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i) m_filer.put(',');
        std::string_view text = parts[i];
        for (const KeptField& field : kept)
            if (field.field == i && field.normal == text) text = field.source;
        m_filer.put(text);
    }
}

} // namespace KP_SDAI
