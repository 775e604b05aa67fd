#pragma once

#include <KpIfcCore/KpIfcReport.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include "model/ModelData.h"

#include <string>
#include <string_view>
#include <vector>

namespace KP_SDAI {

/// Writes instances as records, one behind the other, into a text.
class RecordWriter {
public:
    /// What cannot be written as it is goes to `report`, where there is one.
    explicit RecordWriter(ModelData& data, KpIfcReport* report = nullptr)
        : m_data(data), m_report(report), m_filer(data) {}

    void put(char c) { m_filer.put(c); }
    void put(std::string_view text) { m_filer.put(text); }
    /// The record of an instance, with its semicolon.
    void putRecord(KpIfcEntityBase& instance);
    /// What was put since the last clear().
    std::string_view text() const { return {m_filer.m_buffer.data(), m_filer.m_written}; }
    void clear() { m_filer.m_written = 0; }

    // These two clear what was put before.
    std::string record(KpIfcEntityBase& instance);
    /// The parameters of an instance as they would be written without regard to kept texts.
    std::string parameters(KpIfcEntityBase& instance);

    class FieldWriter; ///< of the fields of a record

private:
    void putParameters(KpIfcEntityBase& instance, const std::vector<KeptField>& kept);

    ModelData& m_data;
    KpIfcReport* m_report;
    KpSpfFilerBase m_filer;
};

/// The parameters of a parameter list, without what separates them.
std::vector<std::string_view> splitParameters(const std::string& parameters);

} // namespace KP_SDAI
