#pragma once

#include "ValueWalk.h"

#include <string>
#include <string_view>

namespace kpifc {

/// Attribute values of a model in the notation of STEP files, as files that are written have them; appended to a text.
class ValueStep : private ValueWalk<ValueStep> {
public:
    /// `isUtf8`: whether texts of the model are UTF-8, else they are encoded as in files.
    ValueStep(std::string& out, bool isUtf8) : m_out(out), m_isUtf8(isUtf8) {}

    /// `isOptional`: whether the attribute may be without a value: "$" rather than "()". `isBinary`: whether its texts
    /// are binaries.
    void attribute(const KP_SDAI::KpIfcVariant& value, bool isOptional, bool isBinary) {
        m_isBinary = isBinary;
        walk(value, isOptional);
    }

private:
    friend class ValueWalk<ValueStep>;

    void null() { m_out += '$'; }
    void real(double value);
    void integer(int value);
    void truth(KP_SDAI::KpIfcLogical value);
    void text(std::string_view value);
    void literal(const char* value);
    void reference(const KP_SDAI::KpDbObjectId& value);
    void beginTyped(const char* name);
    void endTyped();
    void beginList() { m_out += '('; }
    void nextItem() {
        if (m_out.back() != '(') {
            m_out += ',';
        }
    }
    void endList() { m_out += ')'; }

    std::string& m_out;
    bool m_isUtf8;
    bool m_isBinary = false;
    std::size_t m_typedStart = 0; ///< typed values do not nest
    std::size_t m_typedValue = 0;
};

} // namespace kpifc
