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
    m_filer.m_written = 0;
    instance.outFields(&m_filer);
    std::string text(m_filer.m_buffer.data(), m_filer.m_written);
    m_filer.m_written = 0;
    return text;
}

std::string RecordWriter::record(KpIfcEntityBase& instance) {
    m_filer.m_written = 0;
    put(instance);
    std::string text(m_filer.m_buffer.data(), m_filer.m_written);
    m_filer.m_written = 0;
    return text;
}

void RecordWriter::put(KpIfcEntityBase& instance) {
    m_filer.putName(instance.instanceName());
    m_filer.put('=');
    m_filer.put(instance.getInstanceType()->name());
    m_filer.put('(');
    if (const std::vector<KeptField>* kept = m_data.keptFields(instance))
        putParameters(instance, *kept);
    else
        instance.outFields(&m_filer);
    m_filer.put(");");
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

bool RecordWriter::flush(const std::function<bool(std::string_view)>& sink, std::size_t atLeast) {
    if (m_filer.m_written < atLeast) return true;
    const bool ok = sink({m_filer.m_buffer.data(), m_filer.m_written});
    m_filer.m_written = 0;
    return ok;
}

bool RecordWriter::writeFile(const KpIfcHeader& header, const FileFrame& frame, KpIfcReport& report,
                             const std::function<bool(std::string_view)>& sink) {
    constexpr std::size_t kPiece = 256 * 1024;
    m_filer.m_written = 0;
    m_filer.put("ISO-10303-21;\nHEADER;\n");
    for (std::size_t i = 0; i < header.records().size(); ++i) {
        m_filer.put(header.source(i));
        m_filer.put(";\n");
    }
    m_filer.put("ENDSEC;\n");
    m_filer.put(frame.beforeData);
    m_filer.put(frame.dataOpening.empty() ? "DATA;" : frame.dataOpening);
    m_filer.put('\n');
    bool ok = true;
    m_data.visitInFileOrder(
        [&](KpIfcEntityBase* instance) {
            if (!ok) return;
            m_filer.m_notFinite = false;
            put(*instance);
            m_filer.put('\n');
            if (m_filer.m_notFinite) {
                KpIfcReportEntry entry;
                entry.severity = KpIfcSeverity::warning;
                entry.finding = KpIfcFinding::notFinite;
                entry.instanceName = instance->instanceName();
                entry.entity = instance->getInstanceType()->name();
                entry.message = "a number that is not finite, written as unset";
                report.add(std::move(entry));
            }
            ok = flush(sink, kPiece);
        },
        [&](const KeptRecord& record) {
            if (!ok) return;
            m_filer.put(record.text);
            m_filer.put('\n');
            ok = flush(sink, kPiece);
        });
    m_filer.put("ENDSEC;\n");
    m_filer.put(frame.behindData);
    m_filer.put("END-ISO-10303-21;\n");
    m_filer.put(frame.behindEnd);
    return ok && flush(sink, 0);
}

} // namespace KP_SDAI
