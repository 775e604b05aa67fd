#pragma once

#include "Differences.h"
#include "ModelNodes.h"

#include <string>
#include <vector>

namespace kpifc {

/// All that two files differ in.
struct FileDifferences {
    FileDifferences(const KP_SDAI::KpIfcModel& modelA, const KP_SDAI::KpIfcModel& modelB)
        : a(modelA), b(modelB), models(a, b) {}

    ModelNodes a;
    ModelNodes b;
    ModelDifferences models;
    std::vector<HeaderChange> header;

    bool areNone() const {
        return models.removed.empty() && models.added.empty() && models.changed.empty() && header.empty();
    }
};

class Output;

/// The attribute that a change is of; "record" where records that are kept as text differ.
std::string fieldName(const FileDifferences& differences, const InstanceChange& change, const FieldChange& field);

/// For people: a line for each difference, then one that counts them.
void writeText(const FileDifferences& differences, Output& output);
/// For programs: one JSON object.
void writeJson(const FileDifferences& differences, Output& output);

} // namespace kpifc
