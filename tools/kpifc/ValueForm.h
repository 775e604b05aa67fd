#pragma once

#include "ModelNodes.h"
#include "ValueWalk.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kpifc {

/// Values of fields as bytes that are equal exactly where the values are: texts decoded, members of sets in an order
/// of their own, references by the key of the instance that they lead to. Not for people.
class ValueForm {
public:
    /// `keys`: of every node; equal keys stand for the same instance. Both are referred to.
    ValueForm(const ModelNodes& nodes, const std::vector<std::uint64_t>& keys)
        : m_nodes(nodes), m_keys(keys), m_isUtf8(nodes.model().textIsUtf8()) {}

    /// The form of a field; good until the next call.
    std::string_view field(ModelNodes::Node node, std::size_t field);
    /// The forms of the members of the aggregate that field() last was asked for, in their order, those of sets in
    /// the order of the set; empty for other values.
    const std::vector<std::string_view>& members() const { return m_members; }
    /// The form of no value.
    static constexpr std::string_view kNull = "N";

private:
    friend class ValueWalk<ValueForm>;

    void keptText(std::string_view source);
    void sortMembers();
    void bytes(const void* from, std::size_t count) { m_out.append(static_cast<const char*>(from), count); }
    void key(ModelNodes::Node node);

    void null() { m_out += kNull; }
    void real(double value);
    void integer(int value);
    void truth(KP_SDAI::KpIfcLogical value);
    void text(std::string_view value);
    void literal(const char* value);
    void reference(const KP_SDAI::KpDbObjectId& value) { key(m_nodes.find(value)); }
    void beginTyped(const char* name);
    void endTyped() { m_out += ')'; }
    void beginList() {
        m_out += '(';
        ++m_depth;
    }
    void nextItem() {
        if (m_depth == 1) {
            m_starts.push_back(m_out.size());
        }
    }
    void endList();

    const ModelNodes& m_nodes;
    const std::vector<std::uint64_t>& m_keys;
    bool m_isUtf8;
    int m_depth = 0;
    std::string m_out;
    std::string m_sorted;
    std::vector<std::size_t> m_starts; ///< of the members of the outermost aggregate, and its end
    std::vector<std::string_view> m_members;
};

/// A hash of bytes, in 64 bits on every platform.
std::uint64_t hashOf(std::string_view bytes, std::uint64_t seed = 0);
/// Spreads the bits of a number.
std::uint64_t mixed(std::uint64_t number);

} // namespace kpifc
