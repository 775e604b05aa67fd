#pragma once

#include "QueryExpression.h"
#include "QueryValues.h"

#include <KpIfcCore/KpIfcModel.h>

#include <functional>
#include <vector>

namespace kpifc::query {

/// Carries expressions out on one model, which may be read-only. Expressions must outlive it.
class Evaluation {
public:
    explicit Evaluation(const KP_SDAI::KpIfcModel& model) : m_model(model), m_values(model) {}

    /// Calls `take` with every instance that a query finds, each once, ascending. Throws Failure where it begins with
    /// an instance that is not there, Interrupted.
    void run(const Query& query, const std::function<void(const KP_SDAI::KpIfcEntityBase&)>& take);
    /// What a path leads to from an instance, in the order of aggregates; of one that counts, the number.
    Values valuesOf(const KP_SDAI::KpIfcEntityBase& instance, const Path& path);

    /// See ValueReader::missing().
    std::vector<ValueReader::Missing> missingProperties() const { return m_values.missing(); }

private:
    using Instance = const KP_SDAI::KpIfcEntityBase*;

    bool holds(Instance instance, const Condition& condition);
    bool compares(Instance instance, const Condition& condition);
    bool passes(Instance instance, const std::vector<Condition>& filters);
    /// The instances to which a step leads that pass its filters, each once, ascending.
    std::vector<Instance> follow(const std::vector<Instance>& from, const Step& step);
    std::vector<Instance> startOf(const Selection& selection);
    std::vector<Instance> found(const Selection& selection);

    const KP_SDAI::KpIfcModel& m_model;
    ValueReader m_values;
};

} // namespace kpifc::query
