#pragma once

#include "Labels.h"
#include "ValueWalk.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kpifc {

/// Attribute values of a model for people, printable, appended to a text: "-" stands for no value, references come
/// with type and name, the first elements of a long aggregate with the number of all.
class ValueText : private ValueWalk<ValueText> {
public:
    /// `isUtf8`: whether texts of the model are UTF-8. `mostElements`: how many of an aggregate are shown; all where
    /// there is none.
    ValueText(std::string& out, const Labels& labels, bool isUtf8, std::optional<std::size_t> mostElements)
        : m_out(out), m_labels(labels), m_isUtf8(isUtf8), m_most(mostElements) {}

    void attribute(const KP_SDAI::KpIfcVariant& value) { walk(value, true); }

private:
    friend class ValueWalk<ValueText>;

    struct List {
        std::size_t count = 0;
        std::size_t cut = 0; ///< where in the text what is not shown begins
    };

    void null() { m_out += '-'; }
    void real(double value);
    void integer(int value) { m_out += std::to_string(value); }
    void truth(KP_SDAI::KpIfcLogical value);
    void text(std::string_view value);
    void literal(const char* value) { m_out += value; }
    void reference(const KP_SDAI::KpDbObjectId& value);
    void beginTyped(const char* name) {
        m_out += name;
        m_out += ' ';
    }
    void endTyped() {}
    void beginList();
    void nextItem();
    void endList();

    std::string& m_out;
    const Labels& m_labels;
    bool m_isUtf8;
    std::optional<std::size_t> m_most;
    std::vector<List> m_lists; ///< that are being written, the outermost first
};

} // namespace kpifc
