#include "report/PageValues.h"

#include "JsonScalars.h"
#include "ShortenedLists.h"
#include "ValueWalk.h"
#include "report/PageText.h"

using namespace KP_SDAI;

namespace kpifc::page {

namespace {

constexpr std::size_t kMostElements = 100;

struct Writer : JsonScalars {
    const PageNodes& nodes;
    PageTypes& types;
    ShortenedLists lists{out, kMostElements, ","};

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
        lists.begin();
    }
    void nextItem() { lists.next(); }
    void endList() {
        if (const std::size_t count = lists.end()) {
            out += ",{\"more\":" + std::to_string(count) + '}';
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
    Writer writer{{m_out, m_isUtf8}, m_nodes, m_types};
    ValueWalk(writer).walk(value, true);
}

} // namespace kpifc::page
