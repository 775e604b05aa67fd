#pragma once

#include <KpIfcCore/KpIfcVariant.h>

#include <string>

namespace kpifc {

/// Attribute values of a model as JSON, appended to a text:
///
///     string, GlobalId, binary   a string
///     real                       a number with a point or an exponent
///     integer                    a number without
///     boolean, logical           true, false, "UNKNOWN"
///     enumeration                its literal
///     reference                  {"ref":15}
///     select of a defined type   {"type":"IfcLabel","value":"Oak"}; of an entity, a reference
///     aggregate                  an array, empty where the attribute is unset
///
/// null stands for no value, also of a defined type that is an aggregate, and for references to no instance.
class ValueJson {
public:
    /// `isUtf8`: whether texts of the model are UTF-8, else they are encoded as in files.
    ValueJson(std::string& out, bool isUtf8) : m_out(out), m_isUtf8(isUtf8) {}

    /// A value that KpIfcEntityBase::getAttr() gave. `isNamedAggregation`: whether the attribute is declared by the
    /// name of a defined type that is an aggregation.
    void attribute(const KP_SDAI::KpIfcVariant& value, bool isNamedAggregation);

private:
    std::string& m_out;
    bool m_isUtf8;
};

} // namespace kpifc
