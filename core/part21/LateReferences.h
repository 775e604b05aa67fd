#pragma once

#include <KpIfcCore/KpIfcReport.h>

#include "model/ModelData.h"
#include "part21/PendingField.h"
#include "part21/ProgressMeter.h"
#include "part21/StoredParts.h"
#include "part21/Threading.h"

#include <vector>

namespace KP_SDAI {

/// Looks once more at fields with references that could not be settled when they were read, now that everything is
/// read: checks types, resolves selects, and replaces references to nothing by null, of which the text is kept.
class LateReferences {
public:
    LateReferences(ModelData& data, KpIfcReport& report) : m_data(data), m_report(report) {}

    void look(const StoredParts<PendingField>& fields, const Threading& threading, ProgressMeter& progress);
    /// Looks at one of them. What is unread counts as what it will be (ModelData::entityOf()); only for selects it is
    /// read.
    void look(const PendingField& field);

private:
    /// What is to be said of a field.
    struct Departure {
        PendingField field;
        bool isDangling = false;
        KpDbObjectId wrong; ///< the first to an instance of another entity
    };
    Departure check(const PendingField& field) const;
    void settle(const Departure& departure);
    void dropDangling(const PendingField& field);

    ModelData& m_data;
    KpIfcReport& m_report;
};

} // namespace KP_SDAI
