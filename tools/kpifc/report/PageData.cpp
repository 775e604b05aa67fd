#include "report/PageData.h"

#include "HeldAttributes.h"
#include "Interrupt.h"
#include "JsonText.h"
#include "Labels.h"
#include "report/PageText.h"
#include "report/PageValues.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>

#include <algorithm>
#include <optional>
#include <unordered_set>

using namespace KP_SDAI;

namespace kpifc::page {

namespace {

constexpr std::size_t kChunk = 256;

/// A JSON array that grows element by element.
class Column {
public:
    std::string& next() { return m_json += m_json.empty() ? "[" : ","; }
    void text(const std::optional<std::string>& value) {
        next();
        value ? json::appendText(m_json, *value) : void(m_json += '0');
    }
    template <class T>
    void number(T value) {
        json::appendNumber(next(), value);
    }
    std::string json() const { return m_json.empty() ? "[]" : m_json + ']'; }

private:
    std::string m_json;
};

class DataWriter {
public:
    DataWriter(std::string& out, const KpIfcModel& model, const BuildingTree& tree, const PageNodes& nodes,
               PageProperties& properties)
        : m_out(out), m_model(model), m_tree(tree), m_nodes(nodes), m_properties(properties), m_links(model, nodes),
          m_labels(model), m_values(m_chunk, nodes, m_types, model.textIsUtf8()) {}

    void append(const std::function<void()>& step) {
        for (std::uint32_t place = 0; place < m_nodes.handles().size(); ++place) {
            step();
            m_chunk += place % kChunk ? "," : "[";
            add(place);
            if (place % kChunk == kChunk - 1 || place + 1 == m_nodes.handles().size()) {
                appendJsonScript(m_out, "data-" + std::to_string(place / kChunk), m_chunk + ']');
                m_chunk.clear();
            }
        }
        appendJsonScript(m_out, "data-props", m_properties.json());
        appendJsonScript(m_out, "data-index", index());
    }

private:
    void add(std::uint32_t place) {
        const KpDbObjectId& handle = m_nodes.handles()[place];
        appendName(m_ids.next(), handle.instanceName());
        const KpIfcEntityBase* instance = handle.openObject();
        if (!instance) {
            m_typeOf.number(-1);
            m_names.text(std::nullopt);
            m_globalIds.text(std::nullopt);
            m_sets.number(0);
            json::appendText(m_chunk, m_model.keptRecord(handle));
            return;
        }
        m_typeOf.number(m_types.of(*instance->getInstanceType()));
        m_used.insert(instance->getInstanceType());
        const std::optional<std::string> name = m_labels.name(*instance);
        const std::optional<std::string> globalId = m_labels.globalId(*instance);
        m_names.text(name ? name : otherName(*instance));
        m_globalIds.text(globalId);
        if (const std::optional<std::string> longName = m_labels.longName(*instance)) {
            m_longNames += (m_longNames.empty() ? "\"" : ",\"") + std::to_string(place) + "\":";
            json::appendText(m_longNames, *longName);
        }
        addSets(*instance);
        addValues(*instance, name.has_value(), globalId.has_value());
        addLinks(place);
    }

    /// What stands for a name where the entity has no attribute Name.
    std::optional<std::string> otherName(const KpIfcEntityBase& instance) const {
        for (const char* attribute : {"LayerSetName", "FamilyName", "ApplicationFullName"}) {
            if (const std::optional<std::string> text = m_labels.text(instance, attribute)) {
                return text;
            }
        }
        return std::nullopt;
    }

    void addSets(const KpIfcEntityBase& instance) {
        Column sets;
        bool isEmpty = true;
        if (m_nodes.isObject(instance)) {
            for (const std::int64_t set : m_properties.of(instance)) {
                sets.number(set);
                isEmpty = false;
            }
        }
        m_sets.next() += isEmpty ? "0" : sets.json();
    }

    void addValues(const KpIfcEntityBase& instance, bool hasName, bool hasGlobalId) {
        m_chunk += "[[";
        const char* separator = "";
        for (const HeldAttribute& attribute : attributesOf(*instance.getInstanceType())) {
            m_chunk += separator;
            separator = ",";
            const std::string_view name = attribute.name.view();
            KpIfcVariant value;
            if (!(hasName && name == "Name") && !(hasGlobalId && name == "GlobalId")) {
                peekAttribute(instance, name, value);
            }
            m_values.append(value);
        }
        m_chunk += "],";
    }

    void addLinks(std::uint32_t place) {
        Column links;
        for (const PageLinks::Link& link : m_links.of(place)) {
            links.number(link.label);
            Column places;
            for (const std::uint32_t other : link.places) {
                places.number(other);
            }
            links.next() += places.json();
        }
        m_chunk += links.json() + ']';
    }

    const std::vector<HeldAttribute>& attributesOf(const KpIfcEntityType& type) {
        const auto [found, isNew] = m_attributes.try_emplace(&type);
        if (isNew) {
            found->second = heldAttributes(type);
        }
        return found->second;
    }

    std::string index() {
        return "{\"chunk\":" + std::to_string(kChunk) + ",\"ids\":" + m_ids.json() + ",\"types\":" + m_typeOf.json() +
               ",\"names\":" + m_names.json() + ",\"globalIds\":" + m_globalIds.json() + ",\"longNames\":{" +
               m_longNames + "},\"sets\":" + m_sets.json() + ",\"entities\":" + entities() + ",\"labels\":" + labels() +
               ",\"tree\":" + tree() + '}';
    }

    std::string entities() {
        Column entities;
        for (const KpIfcEntityType* type : m_types.all()) {
            Column entity;
            entity.text(type->displayName());
            if (m_used.count(type)) {
                Column supertypes;
                for (const KpIfcEntityType* above = type->superType(); above; above = above->superType()) {
                    supertypes.text(above->displayName());
                }
                Column attributes;
                std::string units;
                std::size_t index = 0;
                for (const HeldAttribute& attribute : attributesOf(*type)) {
                    attributes.text(std::string(attribute.name.view()));
                    if (const std::string unit = m_properties.unitOf(*attribute.definition); !unit.empty()) {
                        units += (units.empty() ? "\"" : ",\"") + std::to_string(index) + "\":";
                        json::appendText(units, unit);
                    }
                    ++index;
                }
                entity.next() += supertypes.json();
                entity.next() += attributes.json();
                entity.next() += '{' + units + '}';
            }
            entities.next() += entity.json();
        }
        return entities.json();
    }

    std::string labels() const {
        Column labels;
        for (const PageLinks::Label& label : m_links.labels()) {
            Column parts;
            parts.text(label.inverse);
            parts.text(label.entity);
            parts.text(label.attribute);
            parts.number(label.isRelation ? 1 : 0);
            labels.next() += parts.json();
        }
        return labels.json();
    }

    std::string tree() const {
        Column nodes;
        Column sizes;
        Column flags;
        std::unordered_set<const KpIfcEntityBase*> placed;
        for (std::size_t i = 0; i < m_tree.nodes.size(); ++i) {
            const BuildingTree::Node& node = m_tree.nodes[i];
            nodes.number(m_nodes.placeOf(node.instance->objectId()));
            sizes.number(node.end - i);
            flags.number((node.isContained ? 1 : 0) + (node.isElement ? 2 : 0) + (node.isRepeated ? 4 : 0));
            placed.insert(node.instance);
        }
        Column roots;
        Column others;
        std::for_each(m_tree.projects.begin(), m_tree.projects.end(), [&](std::size_t root) { roots.number(root); });
        std::for_each(m_tree.others.begin(), m_tree.others.end(), [&](std::size_t root) { others.number(root); });
        Column loose;
        for (const KpIfcEntityBase* element : m_model.instances("IfcElement")) {
            if (!placed.count(element) && !element->isKindOf("IfcFeatureElement")) {
                loose.number(m_nodes.placeOf(element->objectId()));
            }
        }
        return "{\"nodes\":" + nodes.json() + ",\"sizes\":" + sizes.json() + ",\"flags\":" + flags.json() +
               ",\"roots\":" + roots.json() + ",\"others\":" + others.json() + ",\"loose\":" + loose.json() + '}';
    }

    std::string& m_out;
    const KpIfcModel& m_model;
    const BuildingTree& m_tree;
    const PageNodes& m_nodes;
    PageProperties& m_properties;
    const PageLinks m_links;
    const Labels m_labels;
    PageTypes m_types;
    std::string m_chunk;
    PageValues m_values;
    Column m_ids, m_typeOf, m_names, m_globalIds, m_sets;
    std::string m_longNames;
    std::unordered_set<const KpIfcEntityType*> m_used; ///< of which there are instances on the page
    std::unordered_map<const KpIfcEntityType*, std::vector<HeldAttribute>> m_attributes;
};

} // namespace

void appendData(std::string& out, const KpIfcModel& model, const BuildingTree& tree, const PageNodes& nodes,
                PageProperties& properties, const std::function<void()>& step) {
    DataWriter(out, model, tree, nodes, properties).append(step);
}

} // namespace kpifc::page
