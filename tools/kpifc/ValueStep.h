#pragma once

#include <KpIfcCore/KpIfcVariant.h>

#include <string>

namespace kpifc {

/// Attribute values of a model in the notation of STEP files, as files that are written have them; appended to a text.
class ValueStep {
public:
    /// `isUtf8`: whether texts of the model are UTF-8, else they are encoded as in files.
    ValueStep(std::string& out, bool isUtf8) : m_out(out), m_isUtf8(isUtf8) {}

    /// A value that KpIfcEntityBase::getAttr() gave. `isOptional`: whether the attribute may be without a value: "$"
    /// rather than "()". `isBinary`: whether its texts are binaries.
    void attribute(const KP_SDAI::KpIfcVariant& value, bool isOptional, bool isBinary);

private:
    std::string& m_out;
    bool m_isUtf8;
};

} // namespace kpifc
