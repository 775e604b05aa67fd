#include "Diff.h"
#include "JsonText.h"
#include "Labels.h"
#include "Output.h"
#include "ValueJson.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>

using namespace KP_SDAI;

namespace kpifc {

namespace {

class DiffJson {
public:
    DiffJson(const FileDifferences& differences, Output& output)
        : m_all(differences), m_output(output), m_out(output.text()),
          m_valuesA(m_out, differences.a.model().textIsUtf8()), m_valuesB(m_out, differences.b.model().textIsUtf8()) {}

    void write() {
        m_out += "{\"removed\":";
        list(m_all.models.removed, [this](ModelNodes::Node node) { instance(m_all.a, node); });
        m_out += ",\"added\":";
        list(m_all.models.added, [this](ModelNodes::Node node) { instance(m_all.b, node); });
        m_out += ",\"changed\":";
        list(m_all.models.changed, [this](const InstanceChange& change) { this->change(change); });
        m_out += ",\"header\":";
        list(m_all.header, [this](const HeaderChange& change) {
            m_out += "{\"name\":";
            json::appendText(m_out, change.name);
            m_out += ",\"a\":";
            texts(change.a);
            m_out += ",\"b\":";
            texts(change.b);
            m_out += '}';
        });
        m_out += "}\n";
    }

private:
    template <class Items, class Write>
    void list(const Items& items, Write write) {
        m_out += '[';
        bool isNext = false;
        for (const auto& item : items) {
            m_out += isNext ? ",\n" : "\n";
            isNext = true;
            write(item);
            m_output.passOn();
        }
        m_out += ']';
    }

    void texts(const std::vector<std::string>& texts) {
        m_out += '[';
        for (std::size_t i = 0; i < texts.size(); ++i) {
            m_out += i ? "," : "";
            json::appendText(m_out, texts[i]);
        }
        m_out += ']';
    }

    void nameOrNull(std::uint64_t name) { name ? json::appendNumber(m_out, name) : void(m_out += "null"); }

    void textOrNull(std::string_view text) { text.empty() ? void(m_out += "null") : json::appendText(m_out, text); }

    void typeAndGlobalId(const ModelNodes& nodes, ModelNodes::Node node) {
        const KpIfcEntityType* type = nodes.type(node);
        m_out += ",\"type\":";
        textOrNull(type ? type->displayName() : "");
        m_out += ",\"globalId\":";
        textOrNull(nodes.globalId(node));
    }

    void instance(const ModelNodes& nodes, ModelNodes::Node node) {
        m_out += "{\"id\":";
        nameOrNull(nodes.name(node));
        typeAndGlobalId(nodes, node);
        m_out += ",\"name\":";
        const KpIfcEntityBase* own = nodes.instance(node);
        const auto name = own ? Labels(nodes.model()).name(*own) : std::nullopt;
        name ? json::appendText(m_out, *name) : void(m_out += "null");
        if (!own) {
            m_out += ",\"keptText\":";
            json::appendText(m_out, nodes.keptText(node, 0));
        }
        m_out += '}';
    }

    void change(const InstanceChange& change) {
        m_out += "{\"a\":";
        nameOrNull(m_all.a.name(change.a));
        m_out += ",\"b\":";
        nameOrNull(m_all.b.name(change.b));
        typeAndGlobalId(m_all.a, change.a);
        if (!areOfOneEntity(m_all.a, m_all.b, change)) {
            const KpIfcEntityType* type = m_all.b.type(change.b);
            m_out += ",\"newType\":";
            textOrNull(type ? type->displayName() : "");
        }
        m_out += ",\"attributes\":";
        list(change.fields, [&](const FieldChange& field) {
            m_out += "{\"name\":";
            json::appendText(m_out, fieldName(m_all, change, field));
            m_out += ",\"a\":";
            value(m_all.a, change.a, field.a, m_valuesA);
            m_out += ",\"b\":";
            value(m_all.b, change.b, field.b, m_valuesB);
            m_out += '}';
        });
        m_out += '}';
    }

    void value(const ModelNodes& nodes, ModelNodes::Node node, std::optional<std::size_t> field, ValueJson& values) {
        if (!field) {
            m_out += "null";
        } else if (const std::string_view text = nodes.keptText(node, *field); !text.empty()) {
            m_out += "{\"keptText\":";
            json::appendText(m_out, text);
            m_out += '}';
        } else {
            const KpIfcAttributeFacts* row = nodes.row(node, *field);
            KpIfcVariant value;
            readAttribute(*nodes.instance(node), *row, value);
            values.attribute(value, (row->flags & KpIfcAttributeFacts::kDefinedType) != 0);
        }
    }

    const FileDifferences& m_all;
    Output& m_output;
    std::string& m_out;
    ValueJson m_valuesA;
    ValueJson m_valuesB;
};

} // namespace

void writeJson(const FileDifferences& differences, Output& output) {
    DiffJson(differences, output).write();
}

} // namespace kpifc
