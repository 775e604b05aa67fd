#pragma once

#include "check/CheckedEntity.h"
#include "check/Findings.h"
#include "model/ModelData.h"

#include <cstdint>
#include <optional>
#include <unordered_set>

namespace KP_SDAI {

/// Counts the referrers of inverse attributes. Nothing is uncommitted.
class InverseCheck {
public:
    InverseCheck(ModelData& data, Findings& findings) : m_data(data), m_findings(findings) {}

    void check(KpIfcEntityBase& instance, const CheckedInverse& inverse);

private:
    /// True where text that is kept names the instance: who refers there, nobody knows.
    bool isNamedByText(const KpIfcEntityBase& instance);

    ModelData& m_data;
    Findings& m_findings;
    std::optional<std::unordered_set<std::uint64_t>> m_namedByText;
};

} // namespace KP_SDAI
