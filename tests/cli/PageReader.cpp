#include "PageReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <utility>

using Json = nlohmann::json;

namespace {

Json scriptData(const std::string& page, const std::string& id) {
    const std::string begin = "<script type=\"application/json\" id=\"" + id + "\">";
    const std::size_t start = page.find(begin);
    if (start == std::string::npos) {
        return {};
    }
    const std::size_t end = page.find("</script>", start);
    return Json::parse(page.substr(start + begin.size(), end - start - begin.size()), nullptr, false);
}

/// Every place that a value leads to.
void findPlaces(const Json& value, std::vector<std::size_t>& places) {
    if (value.is_object() && value.contains("p")) {
        places.push_back(value["p"]);
    }
    if (value.is_structured()) {
        for (const Json& each : value) {
            findPlaces(each, places);
        }
    }
}

} // namespace

PageReader::PageReader(std::string page)
    : m_page(std::move(page)), m_index(scriptData(m_page, "data-index")),
      m_properties(scriptData(m_page, "data-props")), m_details(Json::array()) {
    EXPECT_TRUE(m_index.is_object());
    EXPECT_TRUE(m_properties.is_object());
    for (std::size_t chunk = 0; m_details.size() < count(); ++chunk) {
        const Json details = scriptData(m_page, "data-" + std::to_string(chunk));
        if (!details.is_array() || details.empty()) {
            ADD_FAILURE() << "chunk " << chunk;
            break;
        }
        m_details.insert(m_details.end(), details.begin(), details.end());
    }
}

const Json& PageReader::detail(std::size_t place) const {
    return m_details.at(place);
}

std::size_t PageReader::placeOf(std::uint64_t instanceName) const {
    const Json& ids = m_index["ids"];
    const auto found = std::find(ids.begin(), ids.end(), Json(instanceName));
    EXPECT_NE(found, ids.end()) << instanceName;
    return static_cast<std::size_t>(found - ids.begin());
}

std::string PageReader::faults() const {
    std::string out;
    std::set<std::pair<std::size_t, std::size_t>> related;
    std::set<std::pair<std::size_t, std::size_t>> referring;
    std::vector<std::pair<std::size_t, std::size_t>> references;
    const auto fault = [&](std::size_t place, const std::string& what) {
        out += '#' + m_index["ids"][place].dump() + ' ' + what + '\n';
    };
    for (const char* column : {"types", "names", "globalIds", "sets"}) {
        out += m_index[column].size() == count() ? "" : std::string(column) + " is of another length\n";
    }
    for (std::size_t place = 0; place < count(); ++place) {
        if (detail(place).is_string()) {
            continue;
        }
        std::vector<std::size_t> targets;
        findPlaces(detail(place)[0], targets);
        for (const std::size_t target : targets) {
            references.emplace_back(place, target);
        }
        const Json& links = detail(place)[1];
        for (std::size_t i = 0; i + 1 < links.size(); i += 2) {
            const bool isRelation = m_index["labels"].at(links[i].get<std::size_t>())[3] == 1;
            for (const std::size_t other : links[i + 1]) {
                (isRelation ? related : referring).emplace(place, other);
            }
        }
    }
    for (const auto& [from, to] : related) {
        if (to >= count() || !related.count({to, from})) {
            fault(from, "is related to " + std::to_string(to) + ", which is not to it");
        }
    }
    for (const auto& [from, to] : references) {
        const bool isOwnerHistory =
            to < count() && m_index["entities"][m_index["types"][to].get<std::size_t>()][0] == "IfcOwnerHistory";
        const std::string entity = m_index["entities"][m_index["types"][from].get<std::size_t>()][0];
        if (to >= count() || (!isOwnerHistory && !entity.starts_with("IfcRel") && !referring.count({to, from}))) {
            fault(from, "refers to " + std::to_string(to) + ", which does not tell it");
        }
    }
    const std::size_t sets = m_properties["sets"].size();
    for (const Json& held : m_index["sets"]) {
        for (const Json& set : held.is_array() ? held : Json::array()) {
            const auto index = set.get<std::int64_t>();
            out += static_cast<std::size_t>(index < 0 ? -1 - index : index) < sets ? "" : "a set that is not there\n";
        }
    }
    for (const Json& set : m_properties["sets"]) {
        for (std::size_t i = 1; i < set.size(); ++i) {
            out += set[i].get<std::size_t>() < m_properties["props"].size() ? "" : "a property that is not there\n";
        }
    }
    return out;
}
