#pragma once

#include "QueryExpression.h"

#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpIfcBoolean.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcPropertySets.h>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace kpifc::query {

/// One value; of an aggregate, one of its members.
struct Value {
    enum class Kind { integer, real, truth, text, literal, reference };
    Kind kind;
    double number = 0;
    KP_SDAI::KpIfcLogical truth = {};
    std::string text = {}; ///< of texts, in UTF-8, and literals
    KP_SDAI::KpDbObjectId instance = {};
};
using Values = std::vector<Value>;

/// "2.5", "true", "#15", or the text itself.
std::string textOf(const Value& value);
/// As kpifc dump prints values.
void appendJson(std::string& out, const Value& value);

/// Reads what instances of one model have. Looks only. One thread's.
class ValueReader {
public:
    explicit ValueReader(const KP_SDAI::KpIfcModel& model) : m_model(model), m_isUtf8(model.textIsUtf8()) {}

    /// Appends what a step leads to; its filters are not looked at.
    void read(const KP_SDAI::KpIfcEntityBase& instance, const Step& step, Values& values);

    /// A property that no instance had, with what those that were asked had instead.
    struct Missing {
        const Step* step;
        std::set<std::string> known;
    };
    std::vector<Missing> missing() const;

private:
    void attribute(const KP_SDAI::KpIfcEntityBase& instance, const Step& step, Values& values);
    void property(const KP_SDAI::KpIfcEntityBase& instance, const Step& step, Values& values);
    void append(const KP_SDAI::KpIfcVariant& value, Values& values) const;

    using Row = const KP_SDAI::KpIfcAttributeFacts*;

    const KP_SDAI::KpIfcModel& m_model;
    bool m_isUtf8;
    std::optional<KP_SDAI::KpIfcPropertySets> m_sets; ///< made when first needed, for it looks for the units
    std::map<std::pair<const Step*, const KP_SDAI::KpIfcEntityType*>, Row> m_rows; ///< null where none is explicit
    const KP_SDAI::KpIfcEntityBase* m_object = nullptr;                            ///< whose properties follow
    std::vector<KP_SDAI::KpIfcPropertyValue> m_properties;
    std::map<const Step*, std::set<std::string>> m_known; ///< of properties that were not found yet
    std::set<const Step*> m_found;
};

} // namespace kpifc::query
