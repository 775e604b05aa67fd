#pragma once

#include "Labels.h"

#include <KpIfcCore/KpIfcVariant.h>

#include <cstddef>
#include <optional>
#include <string>

namespace kpifc {

/// Attribute values of a model for people, printable, appended to a text: "-" stands for no value, references come
/// with type and name, the first elements of a long aggregate with the number of all.
class ValueText {
public:
    /// `isUtf8`: whether texts of the model are UTF-8. `mostElements`: how many of an aggregate are shown; all where
    /// there is none.
    ValueText(std::string& out, const Labels& labels, bool isUtf8, std::optional<std::size_t> mostElements)
        : m_out(out), m_labels(labels), m_isUtf8(isUtf8), m_most(mostElements) {}

    /// A value that KpIfcEntityBase::getAttr() gave.
    void attribute(const KP_SDAI::KpIfcVariant& value);

private:
    std::string& m_out;
    const Labels& m_labels;
    bool m_isUtf8;
    std::optional<std::size_t> m_most;
};

} // namespace kpifc
