#pragma once

#include "HeldAttributes.h"
#include "ValueJson.h"

#include <KpIfcCore/KpIfcEntityBase.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace kpifc {

/// Instances of one model as JSON objects, appended to a text: name, entity and the values of all fields.
class InstanceJson {
public:
    /// `isUtf8`: whether texts of the model are UTF-8.
    InstanceJson(std::string& out, bool isUtf8) : m_out(out), m_values(out, isUtf8) {}

    void append(const KP_SDAI::KpIfcEntityBase& instance);

private:
    /// What the instances of one entity have in common.
    struct Layout {
        struct Field {
            HeldAttribute attribute;
            std::string key; ///< with what separates it from the value before
        };
        std::string type; ///< from behind the instance name to the attributes
        std::vector<Field> fields;
    };

    static Layout layoutOf(const KP_SDAI::KpIfcEntityType& entity);

    std::string& m_out;
    ValueJson m_values;
    std::unordered_map<const KP_SDAI::KpIfcEntityType*, Layout> m_layouts;
};

} // namespace kpifc
