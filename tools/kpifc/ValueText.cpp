#include "ValueText.h"

#include "Files.h"

#include <KpIfcCore/KpStepText.h>

#include <fmt/format.h>

using namespace KP_SDAI;

namespace kpifc {

void ValueText::real(double value) {
    m_out += fmt::format("{}", value);
}

void ValueText::truth(KpIfcLogical value) {
    constexpr const char* texts[] = {"false", "true", "unknown"};
    m_out += texts[value.code()];
}

void ValueText::text(std::string_view value) {
    m_out += quotedName(m_isUtf8 ? value : KpStepText::decode(value));
}

void ValueText::reference(const KpDbObjectId& value) {
    if (m_lists.empty() || !m_most || m_lists.back().count <= *m_most) { // what is cut off needs no label
        m_out += m_labels.reference(value);
    }
}

void ValueText::beginList() {
    m_out += '[';
    m_lists.emplace_back();
}

void ValueText::nextItem() {
    List& list = m_lists.back();
    if (m_most && list.count == *m_most) {
        list.cut = m_out.size();
    }
    m_out += list.count++ ? ", " : "";
}

void ValueText::endList() {
    const List list = m_lists.back();
    m_lists.pop_back();
    if (list.cut) {
        m_out.resize(list.cut);
        m_out += ", ... " + grouped(list.count) + " in all";
    }
    m_out += ']';
}

} // namespace kpifc
