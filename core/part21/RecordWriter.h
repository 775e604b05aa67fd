#pragma once

#include <KpIfcCore/KpIfcHeader.h>
#include <KpIfcCore/KpIfcReport.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include "model/ModelData.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace KP_SDAI {

/// What a file has around its header records and instances.
struct FileFrame {
    std::string beforeData;  ///< sections between HEADER and DATA, as text
    std::string dataOpening; ///< "DATA;" or with parameters
    std::string behindData;  ///< sections behind the first DATA that are no DATA, as text
    std::string behindEnd;   ///< signature sections
};

/// Writes instances as records.
class RecordWriter {
public:
    explicit RecordWriter(ModelData& data) : m_data(data), m_filer(data) {}

    /// Writes a whole file in pieces of some hundred kilobytes to `sink`, which returns false to stop.
    bool writeFile(const KpIfcHeader& header, const FileFrame& frame, KpIfcReport& report,
                   const std::function<bool(std::string_view)>& sink);
    /// The parameters of an instance as they would be written without regard to kept texts.
    std::string parameters(KpIfcEntityBase& instance);
    /// The record of an instance, with its semicolon.
    std::string record(KpIfcEntityBase& instance);

private:
    void put(KpIfcEntityBase& instance);
    void putParameters(KpIfcEntityBase& instance, const std::vector<KeptField>& kept);
    bool flush(const std::function<bool(std::string_view)>& sink, std::size_t atLeast);

    ModelData& m_data;
    KpSpfFilerBase m_filer;
};

/// The parameters of a parameter list, without what separates them.
std::vector<std::string_view> splitParameters(const std::string& parameters);

} // namespace KP_SDAI
