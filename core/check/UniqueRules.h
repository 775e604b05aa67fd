#pragma once

#include "check/CheckedEntity.h"
#include "check/Findings.h"
#include "model/ModelData.h"
#include "part21/RecordWriter.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace KP_SDAI {

/// Finds instances that have the same values where a rule of uniqueness wants different ones. Values are the same where
/// they are written the same; where one is unset, a rule says nothing.
class UniqueRules {
public:
    UniqueRules(ModelData& data, Findings& findings) : m_writer(data), m_findings(findings) {}

    /// Takes the next instance, ascending. `kept` are the source texts in force: a rule about a field that has one says
    /// nothing either.
    void look(KpIfcEntityBase& instance, const std::vector<CheckedRule>& rules,
              const std::vector<const KeptField*>& kept);

private:
    /// What the fields of a rule are written as, "'5.1',#7"; empty where one is unset.
    std::string valuesOf(KpIfcEntityBase& instance, const CheckedRule& rule);

    RecordWriter m_writer;
    Findings& m_findings;
    /// The first instance that has the values of a rule.
    std::unordered_map<const KpIfcUniqueFacts*, std::unordered_map<std::string, KpDbObjectId>> m_first;
};

} // namespace KP_SDAI
