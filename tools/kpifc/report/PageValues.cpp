#include "report/PageValues.h"

#include "JsonText.h"
#include "ValueWalk.h"
#include "report/PageText.h"

#include <KpIfcCore/KpStepText.h>

using namespace KP_SDAI;

namespace kpifc::page {

namespace {

constexpr std::size_t kMostElements = 100;

struct List {
    std::size_t count = 0;
    std::size_t cut = 0; ///< where in the text what is not told begins
};

struct Writer {
    std::string& out;
    const PageNodes& nodes;
    PageTypes& types;
    bool isUtf8;
    std::vector<List> lists = {}; ///< that are being written, the outermost first

    void null() { out += "null"; }
    void real(double value) { json::appendNumber(out, value); }
    void integer(int value) { json::appendNumber(out, value); }
    void truth(KpIfcLogical value) {
        constexpr const char* texts[] = {"false", "true", "\"UNKNOWN\""};
        out += texts[value.code()];
    }
    void text(std::string_view value) { json::appendText(out, isUtf8 ? value : KpStepText::decode(value)); }
    void literal(const char* value) { json::appendText(out, value); }
    void reference(const KpDbObjectId& value) {
        if (nodes.contains(value)) {
            out += "{\"p\":" + std::to_string(nodes.placeOf(value));
        } else {
            out += "{\"i\":";
            appendName(out, value.instanceName());
            if (const KpIfcEntityBase* instance = value.openObject()) {
                out += ",\"t\":" + std::to_string(types.of(*instance->getInstanceType()));
            }
        }
        out += '}';
    }
    void beginTyped(const char* name) {
        out += "{\"t\":";
        json::appendText(out, name);
        out += ",\"v\":";
    }
    void endTyped() { out += '}'; }
    void beginList() {
        out += '[';
        lists.emplace_back();
    }
    void nextItem() {
        List& list = lists.back();
        if (list.count == kMostElements) {
            list.cut = out.size();
        }
        out += list.count++ ? "," : "";
    }
    void endList() {
        const List list = lists.back();
        lists.pop_back();
        if (list.cut) {
            out.resize(list.cut);
            out += ",{\"more\":" + std::to_string(list.count) + '}';
        }
        out += ']';
    }
};

} // namespace

std::uint32_t PageTypes::of(const KpIfcEntityType& type) {
    const auto [found, isNew] = m_indexes.try_emplace(&type, static_cast<std::uint32_t>(m_types.size()));
    if (isNew) {
        m_types.push_back(&type);
    }
    return found->second;
}

void PageValues::append(const KpIfcVariant& value) {
    Writer writer{m_out, m_nodes, m_types, m_isUtf8};
    ValueWalk(writer).walk(value, true);
}

} // namespace kpifc::page
