#pragma once

#include <KpIfcCore/KpIfcFacts.h>

#include <string>
#include <string_view>

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

    /// The value of an attribute, of any kind but derived.
    void attribute(KP_SDAI::KpIfcEntityBase& instance, const KP_SDAI::KpIfcAttributeFacts& facts);

private:
    void null() { m_out += "null"; }
    void value(double value);
    void value(int value);
    void value(KP_SDAI::KpIfcBoolean value);
    void value(KP_SDAI::KpIfcLogical value);
    void value(const KP_SDAI::KpAnsiString& value);
    void value(const KP_SDAI::KpDbObjectId& value);
    void value(const KP_SDAI::KpIfcSelect& select);
    void text(std::string_view value);
    void literal(const char* value);
    void typedValue(const KP_SDAI::KpIfcSelect& select);
    void aggregate(const KP_SDAI::KpIfcAggr& aggregate, const KP_SDAI::KpIfcAggrFacts& facts);
    template <class T>
    void elements(const KP_SDAI::KpIfcAggr& aggregate);
    void selects(const KP_SDAI::KpIfcAggr& aggregate, const KP_SDAI::KpIfcAggrFacts& facts);

    std::string& m_out;
    bool m_isUtf8;
};

} // namespace kpifc
