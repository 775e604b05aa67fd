#pragma once

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcModel.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kpifc {

/// The instances of one model and the records that it keeps as text, numbered from 0, for algorithms over all of them:
/// instances first, ascending by name, then texts in file order.
class ModelNodes {
public:
    using Node = std::uint32_t;
    static constexpr Node kNone = UINT32_MAX;

    /// The model must neither change nor go while this lives.
    explicit ModelNodes(const KP_SDAI::KpIfcModel& model);

    const KP_SDAI::KpIfcModel& model() const { return m_model; }
    Node size() const { return static_cast<Node>(m_instances.size() + m_texts.size()); }
    /// Null for records kept as text.
    KP_SDAI::KpIfcEntityBase* instance(Node node) const {
        return node < m_instances.size() ? m_instances[node] : nullptr;
    }
    /// Null for records kept as text.
    const KP_SDAI::KpIfcEntityType* type(Node node) const;
    /// 0 for text that is no record.
    std::uint64_t name(Node node) const;
    /// The node of an instance or kept record; kNone for others.
    Node find(const KP_SDAI::KpDbObjectId& handle) const;
    /// 22 characters; empty where the instance has none.
    std::string_view globalId(Node node) const;

    // The fields of a node: those of its record but derived ones, whose values are not its own. A record that is kept
    // as text, and an instance whose record had a wrong number of parameters, has one field, its text, without a row.

    std::size_t fieldCount(Node node) const { return isText(node) ? 1 : rows(*type(node)).size(); }
    /// The field of a name as the schema spells it; fieldCount() where there is none.
    std::size_t findField(Node node, std::string_view name) const;
    /// Null for a text.
    const KP_SDAI::KpIfcAttributeFacts* row(Node node, std::size_t field) const {
        return isText(node) ? nullptr : rows(*type(node))[field];
    }
    /// True where the field's text is all that there is.
    bool isText(Node node) const { return node >= m_instances.size() || (!m_kept.empty() && hasWholeText(node)); }
    /// The text as the file has it where the attribute could not hold the value, or the whole text; else empty.
    std::string_view keptText(Node node, std::size_t field) const;
    /// Appends what a field refers to, in its order, as often as it does.
    void targets(Node node, std::size_t field, std::vector<Node>& targets) const;

    /// Parts a text of the file: calls `verbatim(std::string_view)` for pieces, blanks and comments outside of strings
    /// left out, and `reference(Node, std::string_view)` for the names of instances. The record's own name is left out.
    template <class Verbatim, class Reference>
    void partText(std::string_view text, Verbatim verbatim, Reference reference) const;

private:
    using Rows = std::vector<const KP_SDAI::KpIfcAttributeFacts*>;
    struct Layout {
        Rows rows;
        std::vector<std::uint32_t> places; ///< of the rows in the record
        const KP_SDAI::KpIfcAttributeFacts* globalId = nullptr;
    };
    const Layout& layout(const KP_SDAI::KpIfcEntityType& type) const { return m_layouts.find(&type)->second; }
    const Rows& rows(const KP_SDAI::KpIfcEntityType& type) const { return layout(type).rows; }
    bool hasWholeText(Node node) const;
    void number(const KP_SDAI::KpDbObjectId& handle, Node node);

    struct Numbers {
        Node nodes[KP_SDAI::KpIfcSlotChunk::kSlots];
    };

    const KP_SDAI::KpIfcModel& m_model;
    std::vector<KP_SDAI::KpIfcEntityBase*> m_instances;
    std::vector<std::string_view> m_texts;
    std::unordered_map<const KP_SDAI::KpIfcEntityType*, Layout> m_layouts;
    std::unordered_map<const KP_SDAI::KpIfcSlotChunk*, Numbers> m_numbers;
    /// By field, UINT32_MAX for the whole record; few instances have any.
    std::unordered_map<Node, std::unordered_map<std::uint32_t, std::string_view>> m_kept;
};

/// The instance name that a record begins with, "#15=..."; 0 where it begins otherwise. Moves `text` behind it.
std::uint64_t takeOwnName(std::string_view& text);

/// The first piece of a text that is a name of an instance (with its sign), a string, blanks, a comment, or one
/// character; `text` is not empty.
std::string_view nextPiece(std::string_view text);

/// The number of "#15"; 0 for other pieces and for names that are too large.
std::uint64_t nameOf(std::string_view piece);

template <class Verbatim, class Reference>
void ModelNodes::partText(std::string_view text, Verbatim verbatim, Reference reference) const {
    takeOwnName(text);
    while (!text.empty()) {
        const std::string_view piece = nextPiece(text);
        text.remove_prefix(piece.size());
        if (const std::uint64_t name = nameOf(piece)) {
            reference(find(m_model.find(name)), piece);
        } else if (static_cast<unsigned char>(piece[0]) > ' ' && !piece.starts_with("/*")) {
            verbatim(piece);
        }
    }
}

} // namespace kpifc
