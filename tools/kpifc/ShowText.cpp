#include "Files.h"
#include "HeldAttributes.h"
#include "Labels.h"
#include "Referrers.h"
#include "Show.h"
#include "Utf8.h"
#include "ValueText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <optional>
#include <string_view>

using namespace KP_SDAI;

namespace kpifc {

namespace {

constexpr std::size_t kMostElements = 10;

class Sheet {
public:
    Sheet(const KpIfcModel& model, const KpDbObjectId& handle, bool isWhole)
        : m_model(model), m_handle(handle), m_most(isWhole ? std::nullopt : std::optional(kMostElements)),
          m_labels(model), m_values(m_out, m_labels, model.textIsUtf8(), m_most),
          m_referrers(referrersOf(model, handle)) {}

    std::string text(const std::string& path) {
        m_out += m_labels.reference(m_handle) + '\n';
        if (const KpIfcEntityBase* instance = m_handle.openObject()) {
            entity(*instance->getInstanceType());
            attributes(*instance);
            inverses(*instance);
        } else {
            keptRecord();
        }
        referrers();
        furtherCommands(path);
        return std::move(m_out);
    }

private:
    void entity(const KpIfcEntityType& entity) {
        const std::vector<std::string> supertypes = supertypesOf(entity);
        if (!supertypes.empty()) {
            m_out += fmt::format("is an {}\n", fmt::join(supertypes, ", "));
        }
    }

    void attributes(const KpIfcEntityBase& instance) {
        const std::vector<HeldAttribute> held = heldAttributes(*instance.getInstanceType());
        std::vector<std::string_view> names;
        for (const HeldAttribute& attribute : held) {
            names.push_back(attribute.name.view());
        }
        heading("Attributes");
        for (const std::string_view name : names) {
            value(instance, name, widthOf(names));
        }
    }

    void inverses(const KpIfcEntityBase& instance) {
        std::vector<std::string_view> filled;
        std::vector<std::string_view> empty;
        for (const KpIfcAttributeDefinition* attribute : inverseAttributes(*instance.getInstanceType())) {
            const KpIfcVariant value = valueOf(instance, attribute->name());
            const KpIfcAggr* aggregate = value.type()->aggregate(value.data());
            (aggregate->empty() ? empty : filled).push_back(attribute->name());
        }
        if (filled.empty() && empty.empty()) {
            return;
        }
        heading("Inverse attributes");
        for (const std::string_view name : filled) {
            value(instance, name, widthOf(filled));
        }
        if (!empty.empty()) {
            m_out += fmt::format("  without any: {}\n", fmt::join(empty, ", "));
        }
    }

    static KpIfcVariant valueOf(const KpIfcEntityBase& instance, std::string_view name) {
        KpIfcVariant value;
        instance.getAttr(KpAnsiString(std::string(name).c_str()), value);
        return value;
    }

    void value(const KpIfcEntityBase& instance, std::string_view name, std::size_t width) {
        label(name, width);
        m_values.attribute(valueOf(instance, name));
        m_out += '\n';
    }

    void keptRecord() {
        std::string_view text = m_model.keptRecord(m_handle);
        m_out += "could not be understood; kpifc info tells why\n\n";
        while (!text.empty()) {
            const std::string_view line = text.substr(0, text.find('\n'));
            m_out += "  " + printable(line.substr(0, line.find('\r'))) + '\n';
            text.remove_prefix(std::min(line.size() + 1, text.size()));
        }
    }

    void referrers() {
        if (m_referrers.empty()) {
            heading("Nothing refers to it");
            return;
        }
        heading("Referred to by");
        std::vector<std::string_view> names;
        for (const auto& [attribute, handles] : m_referrers) {
            names.push_back(attribute);
        }
        for (const auto& [attribute, handles] : m_referrers) {
            label(attribute, widthOf(names));
            const std::size_t shown = std::min(handles.size(), m_most.value_or(handles.size()));
            for (std::size_t i = 0; i < shown; ++i) {
                m_out += fmt::format("{}#{}", i ? ", " : "", handles[i].instanceName());
            }
            m_out += shown < handles.size() ? fmt::format(", ... {} in all\n", grouped(handles.size())) : "\n";
        }
    }

    void furtherCommands(const std::string& path) {
        heading("Go on with");
        const std::string file = shellWord(path);
        const std::uint64_t number = m_handle.instanceName();
        if (!m_referrers.empty()) {
            m_out += fmt::format("  kpifc show {} '#{}'\n", file, m_referrers.begin()->second.front().instanceName());
        }
        if (const KpIfcEntityBase* instance = m_handle.openObject()) {
            m_out += fmt::format("  kpifc get {} '#{}'\n  kpifc schema {}\n", file, number,
                                 instance->getInstanceType()->displayName());
        } else {
            m_out += fmt::format("  kpifc info {}\n", file);
        }
    }

    static std::string shellWord(const std::string& path) {
        const auto isSafe = [](char c) {
            return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                   std::string_view("/._-+,:@").find(c) != std::string_view::npos;
        };
        if (std::all_of(path.begin(), path.end(), isSafe)) {
            return path;
        }
        std::string word = "'";
        for (const char c : printable(path)) {
            word += c == '\'' ? "'\\''" : std::string(1, c);
        }
        return word + '\'';
    }

    void heading(std::string_view text) { m_out += fmt::format("\n{}\n", text); }
    void label(std::string_view name, std::size_t width) { m_out += fmt::format("  {:<{}}  ", name, width); }
    static std::size_t widthOf(const std::vector<std::string_view>& names) {
        std::size_t width = 0;
        for (const std::string_view name : names) {
            width = std::max(width, name.size());
        }
        return width;
    }

    const KpIfcModel& m_model;
    const KpDbObjectId m_handle;
    const std::optional<std::size_t> m_most;
    const Labels m_labels;
    std::string m_out;
    ValueText m_values;
    const Referrers m_referrers;
};

} // namespace

std::string textOf(const KpIfcModel& model, const KpDbObjectId& handle, bool isWhole, const std::string& path) {
    return Sheet(model, handle, isWhole).text(path);
}

} // namespace kpifc
