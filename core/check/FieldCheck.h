#pragma once

#include "check/CheckedEntity.h"
#include "check/Findings.h"

#include <string_view>

namespace KP_SDAI {

class KpIfcSchema;

/// Checks the values of single fields.
class FieldCheck {
public:
    FieldCheck(const KpIfcSchema& schema, Findings& findings) : m_schema(schema), m_findings(findings) {}

    void check(KpIfcEntityBase& instance, const CheckedField& field);
    /// The same of a field whose source text is kept. What is wrong with its value, reading has reported, but for
    /// aggregates that the text leaves out, leaves empty, or in which it repeats members of a set.
    void checkKept(KpIfcEntityBase& instance, const CheckedField& field, std::string_view source);

private:
    struct Faults;

    void checkReference(KpIfcEntityBase& instance, const CheckedField& field);
    void checkSelect(KpIfcEntityBase& instance, const CheckedField& field);
    void checkAggregate(KpIfcEntityBase& instance, const CheckedField& field);
    void checkValues(KpIfcEntityBase& instance, const CheckedField& field, const Faults& unset);
    void checkElementReferences(KpIfcEntityBase& instance, const CheckedField& field);
    void checkRepetition(KpIfcEntityBase& instance, const CheckedField& field);
    void checkWidths(KpIfcEntityBase& instance, const CheckedField& field);
    void checkSize(KpIfcEntityBase& instance, const CheckedField& field, std::size_t count);
    void missing(KpIfcEntityBase& instance, const CheckedField& field);
    void repeated(KpIfcEntityBase& instance, const CheckedField& field, std::size_t first, std::size_t second);

    const KpIfcSchema& m_schema;
    Findings& m_findings;
};

} // namespace KP_SDAI
