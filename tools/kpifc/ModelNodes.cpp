#include "ModelNodes.h"

#include "Interrupt.h"

#include <KpIfcCore/KpIfcGUID.h>
#include <KpIfcCore/KpIfcKeptText.h>
#include <KpIfcCore/KpIfcReferences.h>
#include <KpIfcCore/KpStepText.h>

#include <algorithm>
#include <charconv>

using namespace KP_SDAI;

namespace kpifc {

ModelNodes::ModelNodes(const KpIfcModel& model) : m_model(model) {
    m_instances.reserve(model.count());
    for (KpIfcEntityBase* instance : model.instances()) {
        stopIfInterrupted();
        const Node node = static_cast<Node>(m_instances.size());
        m_instances.push_back(instance);
        number(instance->objectId(), node);
        const KpIfcEntityType* type = instance->getInstanceType();
        const auto [entry, isNew] = m_layouts.try_emplace(type);
        for (std::uint32_t place = 0; isNew && place < type->recordFields().size(); ++place) {
            const KpIfcAttributeFacts* row = type->recordFields()[place];
            if (row->kind != KpIfcFieldKind::derived) {
                entry->second.rows.push_back(row);
                entry->second.places.push_back(place);
            }
            if (row->kind == KpIfcFieldKind::guid) {
                entry->second.globalId = row;
            }
        }
        for (const KpIfcKeptField& kept : keptFields(*instance)) {
            m_kept[node][kept.field] = kept.source;
        }
    }
    for (const std::string_view text : keptRecords(model)) {
        const Node node = size();
        m_texts.push_back(text);
        const KpDbObjectId handle = model.find(name(node));
        if (handle.isDefined() && model.keptRecord(handle).data() == text.data()) {
            number(handle, node); // of several records of one name the first one has it
        }
    }
}

void ModelNodes::number(const KpDbObjectId& handle, Node node) {
    const KpIfcSlotChunk* chunk = KpIfcSlotChunk::of(handle.slot());
    const auto [numbers, isNew] = m_numbers.try_emplace(chunk);
    if (isNew) {
        std::fill(std::begin(numbers->second.nodes), std::end(numbers->second.nodes), kNone);
    }
    numbers->second.nodes[handle.slot() - chunk->slots] = node;
}

ModelNodes::Node ModelNodes::find(const KpDbObjectId& handle) const {
    if (handle.isNull()) {
        return kNone;
    }
    const KpIfcSlotChunk* chunk = KpIfcSlotChunk::of(handle.slot());
    const auto numbers = m_numbers.find(chunk);
    return numbers == m_numbers.end() ? kNone : numbers->second.nodes[handle.slot() - chunk->slots];
}

const KpIfcEntityType* ModelNodes::type(Node node) const {
    const KpIfcEntityBase* own = instance(node);
    return own ? own->getInstanceType() : nullptr;
}

std::uint64_t ModelNodes::name(Node node) const {
    if (const KpIfcEntityBase* own = instance(node)) {
        return own->instanceName();
    }
    std::string_view text = m_texts[node - m_instances.size()];
    return takeOwnName(text);
}

std::string_view ModelNodes::globalId(Node node) const {
    KpIfcEntityBase* own = instance(node);
    const KpIfcAttributeFacts* row = own ? layout(*own->getInstanceType()).globalId : nullptr;
    if (!row) {
        return {};
    }
    const KpIfcGUID& id = own->*row->member.guid;
    const std::string_view text(id.constStr());
    return text.size() == KpIfcGUID::kLength && !id.isUnset() ? text : std::string_view();
}

std::size_t ModelNodes::findField(Node node, std::string_view name) const {
    std::size_t field = 0;
    while (field < fieldCount(node) && (isText(node) || row(node, field)->name != name)) {
        ++field;
    }
    return field;
}

bool ModelNodes::hasWholeText(Node node) const {
    const auto kept = m_kept.find(node);
    return kept != m_kept.end() && kept->second.count(KpIfcKeptField::kWholeRecord);
}

std::string_view ModelNodes::keptText(Node node, std::size_t field) const {
    if (node >= m_instances.size()) {
        return m_texts[node - m_instances.size()];
    }
    const auto kept = m_kept.empty() ? m_kept.end() : m_kept.find(node);
    if (kept == m_kept.end()) {
        return {};
    }
    const auto text =
        kept->second.find(isText(node) ? KpIfcKeptField::kWholeRecord : layout(*type(node)).places[field]);
    return text == kept->second.end() ? std::string_view() : text->second;
}

void ModelNodes::targets(Node node, std::size_t field, std::vector<Node>& targets) const {
    stopIfInterrupted();
    if (const std::string_view text = keptText(node, field); !text.empty()) {
        partText(
            text, [](std::string_view) {},
            [&targets](Node target, std::string_view) {
                if (target != kNone) {
                    targets.push_back(target);
                }
            });
    } else if (const KpIfcAttributeFacts* facts = row(node, field)) {
        visitReferences(*instance(node), *facts, [this, &targets](const KpDbObjectId& handle) {
            if (const Node target = find(handle); target != kNone) {
                targets.push_back(target);
            }
        });
    }
}

std::uint64_t takeOwnName(std::string_view& text) {
    const std::size_t sign = text.find('=');
    const std::string_view piece = nextPiece(text);
    const std::uint64_t name = nameOf(piece);
    if (name == 0 || sign == std::string_view::npos || text.find_first_not_of(" \t\r\n", piece.size()) != sign) {
        return 0;
    }
    text.remove_prefix(sign + 1);
    return name;
}

std::string_view nextPiece(std::string_view text) {
    constexpr std::string_view digits = "0123456789";
    constexpr std::string_view blanks = " \t\r\n";
    std::size_t length = 1;
    if (text.empty()) {
        length = 0;
    } else if (text[0] == '#') {
        length = std::min(text.find_first_not_of(digits, 1), text.size());
    } else if (text[0] == '\'') {
        const char* const end = text.data() + text.size();
        const char* const behind = KpStepText::stringEnd(text.data() + 1, end);
        length = behind ? static_cast<std::size_t>(behind - text.data()) : text.size();
    } else if (text.starts_with("/*")) {
        const std::size_t end = text.find("*/", 2);
        length = end == std::string_view::npos ? text.size() : end + 2;
    } else if (blanks.find(text[0]) != std::string_view::npos) {
        length = std::min(text.find_first_not_of(blanks), text.size());
    }
    return text.substr(0, length);
}

std::uint64_t nameOf(std::string_view piece) {
    std::uint64_t name = 0;
    if (piece.size() < 2 || piece[0] != '#') {
        return 0;
    }
    const char* const end = piece.data() + piece.size();
    const auto [behind, error] = std::from_chars(piece.data() + 1, end, name);
    return error == std::errc() && behind == end ? name : 0;
}

} // namespace kpifc
