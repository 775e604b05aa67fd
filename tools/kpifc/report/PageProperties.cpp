#include "report/PageProperties.h"

#include "JsonText.h"
#include "PropertyText.h"
#include "report/PageText.h"

#include <utility>

using namespace KP_SDAI;

namespace kpifc::page {

std::uint32_t PageProperties::Pool::add(std::string item) {
    const auto index = static_cast<std::uint32_t>(indexes.size());
    const auto [found, isNew] = indexes.try_emplace(std::move(item), index);
    if (isNew) {
        json += (index ? "," : "") + found->first;
    }
    return found->second;
}

std::uint32_t PageProperties::keyOf(const std::string& text) {
    std::string item;
    json::appendText(item, text);
    return m_keys.add(std::move(item));
}

std::uint32_t PageProperties::propertyOf(const KpIfcPropertyValue& value) {
    std::string item = '[' + std::to_string(keyOf(value.name)) + ',';
    const KpDbObjectId* handle = value.value.getIf<KpDbObjectId>();
    if (handle && !handle->isNull()) {
        item += '[';
        appendName(item, handle->instanceName());
        item += ']';
    } else {
        json::appendText(item, valueText(value));
    }
    const std::uint32_t unit = keyOf(value.measure.symbol);
    const std::uint32_t measure = keyOf(value.measure.type);
    if (unit || measure) {
        item += ',' + std::to_string(unit);
    }
    if (measure) {
        item += ',' + std::to_string(measure);
    }
    return m_properties.add(item + ']');
}

std::vector<std::int64_t> PageProperties::of(const KpIfcEntityBase& object) {
    const std::vector<KpIfcPropertyValue> values = m_reader.of(object);
    m_valueCount += values.size();
    std::vector<std::int64_t> sets;
    for (std::size_t i = 0; i < values.size();) {
        const KpIfcPropertyValue& first = values[i];
        std::string item = '[' + std::to_string(keyOf(first.set));
        for (; i < values.size() && values[i].setInstance == first.setInstance && values[i].fromType == first.fromType;
             ++i) {
            item += ',' + std::to_string(propertyOf(values[i]));
        }
        const std::int64_t index = m_sets.add(item + ']');
        sets.push_back(first.fromType ? -1 - index : index);
    }
    return sets;
}

std::string PageProperties::json() const {
    return "{\"keys\":[" + m_keys.json + "],\"props\":[" + m_properties.json + "],\"sets\":[" + m_sets.json + "]}";
}

} // namespace kpifc::page
