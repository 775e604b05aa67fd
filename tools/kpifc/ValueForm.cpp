#include "ValueForm.h"

#include "Interrupt.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpStepText.h>

#include <algorithm>
#include <cstring>

using namespace KP_SDAI;

namespace kpifc {

std::string_view ValueForm::field(ModelNodes::Node node, std::size_t field) {
    stopIfInterrupted();
    m_out.clear();
    m_starts.clear();
    m_members.clear();
    m_depth = 0;
    if (const std::string_view source = m_nodes.keptText(node, field); !source.empty()) {
        keptText(source);
        return m_out;
    }
    const KpIfcAttributeFacts* row = m_nodes.row(node, field);
    KpIfcVariant value;
    readAttribute(*m_nodes.instance(node), *row, value);
    ValueWalk(*this).walk(value, true);
    if (!m_starts.empty()) {
        for (std::size_t i = 0; i + 1 < m_starts.size(); ++i) {
            m_members.push_back(std::string_view(m_out).substr(m_starts[i], m_starts[i + 1] - m_starts[i]));
        }
        if (row->kind == KpIfcFieldKind::aggregate && row->aggregate->isSet) {
            sortMembers();
            return m_sorted;
        }
    }
    return m_out;
}

void ValueForm::sortMembers() {
    std::vector<std::string_view> sorted = m_members;
    std::sort(sorted.begin(), sorted.end());
    m_sorted.assign(1, '{');
    for (const std::string_view member : sorted) {
        m_sorted += member;
    }
    m_sorted += '}';
}

/// Marked as text, so that no text is equal to a value.
void ValueForm::keptText(std::string_view source) {
    m_out += '?';
    m_nodes.partText(
        source,
        [this](std::string_view piece) {
            m_out += piece;
            m_out += ' ';
        },
        [this](ModelNodes::Node target, std::string_view piece) {
            if (target == ModelNodes::kNone) { // there is nothing but the name to go by
                m_out += piece;
            } else {
                key(target);
            }
        });
}

void ValueForm::key(ModelNodes::Node node) {
    const std::uint64_t key = node == ModelNodes::kNone ? 0 : m_keys[node];
    m_out += '#';
    bytes(&key, sizeof key);
}

void ValueForm::real(double value) {
    value += 0.; // one zero
    m_out += 'R';
    bytes(&value, sizeof value);
}

void ValueForm::integer(int value) {
    m_out += 'I';
    bytes(&value, sizeof value);
}

void ValueForm::truth(KpIfcLogical value) {
    m_out += 'L';
    m_out += static_cast<char>('0' + value.code());
}

void ValueForm::text(std::string_view value) {
    const std::string decoded = m_isUtf8 ? std::string(value) : KpStepText::decode(value);
    const std::uint64_t size = decoded.size();
    m_out += 'T';
    bytes(&size, sizeof size);
    m_out += decoded;
}

void ValueForm::literal(const char* value) {
    m_out += 'E';
    bytes(value, std::strlen(value) + 1);
}

void ValueForm::beginTyped(const char* name) {
    m_out += 'S';
    bytes(name, std::strlen(name) + 1);
}

void ValueForm::endList() {
    if (m_depth == 1) {
        m_starts.push_back(m_out.size());
    }
    --m_depth;
    m_out += ')';
}

std::uint64_t mixed(std::uint64_t number) {
    number ^= number >> 32;
    number *= 0xD6E8FEB86659FD93u;
    number ^= number >> 32;
    number *= 0xD6E8FEB86659FD93u;
    return number ^ (number >> 32);
}

std::uint64_t hashOf(std::string_view bytes, std::uint64_t seed) {
    std::uint64_t hash = mixed(seed ^ bytes.size());
    while (!bytes.empty()) {
        std::uint64_t word = 0;
        const std::size_t count = std::min(bytes.size(), sizeof word);
        std::memcpy(&word, bytes.data(), count);
        hash = mixed(hash ^ word) + 0x9E3779B97F4A7C15u;
        bytes.remove_prefix(count);
    }
    return hash;
}

} // namespace kpifc
