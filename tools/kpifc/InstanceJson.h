#pragma once

#include "HeldAttributes.h"
#include "ValueJson.h"

#include <KpIfcCore/KpIfcEntityBase.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace kpifc {

/// Instances of one model as JSON objects, appended to a text: name, entity and the values of all fields; on demand
/// those of all inverse attributes too, which are arrays of references.
class InstanceJson {
public:
    /// `isUtf8`: whether texts of the model are UTF-8. `opening`: what objects begin with (FileLabels).
    InstanceJson(std::string& out, bool isUtf8, bool withInverses = false, const std::string& opening = "{")
        : m_out(out), m_values(out, isUtf8), m_withInverses(withInverses), m_opening(opening + "\"id\":") {}

    void append(const KP_SDAI::KpIfcEntityBase& instance) {
        appendOpen(instance);
        m_out += '}';
    }
    /// Without the last brace, so that more members can follow.
    void appendOpen(const KP_SDAI::KpIfcEntityBase& instance);

private:
    /// What the instances of one entity have in common.
    struct Layout {
        struct Field {
            HeldAttribute attribute;
            std::string key; ///< with what separates it from the value before
        };
        std::string type; ///< from behind the instance name to the attributes
        std::vector<Field> fields;
        std::vector<Field> inverses; ///< empty where they are not asked for
    };

    Layout layoutOf(const KP_SDAI::KpIfcEntityType& entity) const;
    void appendValues(const KP_SDAI::KpIfcEntityBase& instance, const std::vector<Layout::Field>& fields);

    std::string& m_out;
    ValueJson m_values;
    bool m_withInverses;
    std::string m_opening; ///< as far as the instance name
    std::unordered_map<const KP_SDAI::KpIfcEntityType*, Layout> m_layouts;
};

} // namespace kpifc
