#include "InstanceJson.h"

#include "JsonText.h"

#include <utility>

using namespace KP_SDAI;

namespace kpifc {

InstanceJson::Layout InstanceJson::layoutOf(const KpIfcEntityType& entity) {
    Layout layout;
    layout.type = ",\"type\":";
    json::appendText(layout.type, entity.displayName());
    layout.type += ",\"attributes\":{";
    for (HeldAttribute& attribute : heldAttributes(entity)) {
        std::string key = layout.fields.empty() ? "" : ",";
        json::appendText(key, attribute.name.view());
        layout.fields.push_back({std::move(attribute), key + ':'});
    }
    return layout;
}

void InstanceJson::append(const KpIfcEntityBase& instance) {
    const KpIfcEntityType* entity = instance.getInstanceType();
    auto found = m_layouts.find(entity);
    if (found == m_layouts.end()) {
        found = m_layouts.emplace(entity, layoutOf(*entity)).first;
    }
    m_out += "{\"id\":";
    json::appendNumber(m_out, instance.instanceName());
    m_out += found->second.type;
    KpIfcVariant value;
    for (const Layout::Field& field : found->second.fields) {
        m_out += field.key;
        value.clear();
        instance.getAttr(field.attribute.name, value);
        m_values.attribute(value, field.attribute.isNamedAggregation);
    }
    m_out += "}}";
}

} // namespace kpifc
