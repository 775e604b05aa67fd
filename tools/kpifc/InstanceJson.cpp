#include "InstanceJson.h"

#include "JsonText.h"

#include <utility>

using namespace KP_SDAI;

namespace kpifc {

InstanceJson::Layout InstanceJson::layoutOf(const KpIfcEntityType& entity) const {
    const auto append = [](std::vector<Layout::Field>& fields, HeldAttribute attribute) {
        std::string key = fields.empty() ? "" : ",";
        json::appendText(key, attribute.name.view());
        fields.push_back({std::move(attribute), key + ':'});
    };
    Layout layout;
    layout.type = ",\"type\":";
    json::appendText(layout.type, entity.displayName());
    layout.type += ",\"attributes\":{";
    for (HeldAttribute& attribute : heldAttributes(entity)) {
        append(layout.fields, std::move(attribute));
    }
    for (const KpIfcAttributeDefinition* attribute : inverseAttributes(entity)) {
        if (m_withInverses) {
            append(layout.inverses, HeldAttribute(*attribute));
        }
    }
    return layout;
}

void InstanceJson::appendValues(const KpIfcEntityBase& instance, const std::vector<Layout::Field>& fields) {
    KpIfcVariant value;
    for (const Layout::Field& field : fields) {
        m_out += field.key;
        value.clear();
        instance.getAttr(field.attribute.name, value);
        m_values.attribute(value, field.attribute.isNamedAggregation);
    }
    m_out += '}';
}

void InstanceJson::appendOpen(const KpIfcEntityBase& instance) {
    const KpIfcEntityType* entity = instance.getInstanceType();
    auto found = m_layouts.find(entity);
    if (found == m_layouts.end()) {
        found = m_layouts.emplace(entity, layoutOf(*entity)).first;
    }
    m_out += m_opening;
    json::appendNumber(m_out, instance.instanceName());
    m_out += found->second.type;
    appendValues(instance, found->second.fields);
    if (m_withInverses) {
        m_out += ",\"inverse\":{";
        appendValues(instance, found->second.inverses);
    }
}

} // namespace kpifc
