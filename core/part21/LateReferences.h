#pragma once

#include <KpIfcCore/KpIfcReport.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include "model/ModelData.h"
#include "part21/ProgressMeter.h"

#include <vector>

namespace KP_SDAI {

/// Looks once more at fields with references whose instances had not come when they were read, now that everything is
/// read: checks types, resolves selects, and replaces references to nothing by null, of which the text is kept.
class LateReferences {
public:
    LateReferences(ModelData& data, KpIfcReport& report) : m_data(data), m_report(report) {}

    void look(const std::vector<KpSpfFilerBase::PendingField>& fields, ProgressMeter& progress);
    /// Looks at one of them.
    void look(const KpSpfFilerBase::PendingField& pending);

private:
    void lookAt(KpIfcEntityBase& instance, std::uint32_t field, std::uint64_t offset);
    void dropDangling(KpIfcEntityBase& instance, std::uint32_t field, std::uint64_t offset);

    ModelData& m_data;
    KpIfcReport& m_report;
};

} // namespace KP_SDAI
