#include "QueryValues.h"

#include "JsonText.h"
#include "ValueWalk.h"

#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpStepText.h>
#include <KpIfcCore/KpTextCase.h>
#include <KpRx/KcString.h>

using namespace KP_SDAI;

namespace kpifc::query {

namespace {

constexpr const char* kTruths[] = {"false", "true", "unknown"};

/// Gathers the members of aggregates, however nested.
struct Collector {
    Values& values;
    bool isUtf8;

    void null() {}
    void real(double value) { values.push_back({.kind = Value::Kind::real, .number = value}); }
    void integer(int value) { values.push_back({.kind = Value::Kind::integer, .number = static_cast<double>(value)}); }
    void truth(KpIfcLogical value) { values.push_back({.kind = Value::Kind::truth, .truth = value}); }
    void text(std::string_view value) {
        values.push_back({.kind = Value::Kind::text, .text = isUtf8 ? std::string(value) : KpStepText::decode(value)});
    }
    void literal(const char* value) { values.push_back({.kind = Value::Kind::literal, .text = value}); }
    void reference(const KpDbObjectId& value) { values.push_back({.kind = Value::Kind::reference, .instance = value}); }
    void beginTyped(const char*) {}
    void endTyped() {}
    void beginList() {}
    void nextItem() {}
    void endList() {}
};

bool isNamed(const std::string& name, const std::string& asked) {
    return equalNoCase(name.data(), name.size(), asked.c_str());
}

} // namespace

std::string textOf(const Value& value) {
    std::string text;
    switch (value.kind) {
    case Value::Kind::integer: json::appendNumber(text, static_cast<std::int64_t>(value.number)); break;
    case Value::Kind::real: {
        char digits[32];
        text.assign(digits, std::to_chars(digits, digits + sizeof digits, value.number).ptr);
        break;
    }
    case Value::Kind::truth: text = kTruths[value.truth.code()]; break;
    case Value::Kind::text:
    case Value::Kind::literal: text = value.text; break;
    case Value::Kind::reference: text = '#' + std::to_string(value.instance.instanceName()); break;
    }
    return text;
}

void appendJson(std::string& out, const Value& value) {
    switch (value.kind) {
    case Value::Kind::integer: json::appendNumber(out, static_cast<std::int64_t>(value.number)); break;
    case Value::Kind::real: json::appendNumber(out, value.number); break;
    case Value::Kind::truth:
        out += value.truth.code() == KpIfcLogical::Unknown ? "\"UNKNOWN\"" : kTruths[value.truth.code()];
        break;
    case Value::Kind::text:
    case Value::Kind::literal: json::appendText(out, value.text); break;
    case Value::Kind::reference:
        out += "{\"ref\":";
        json::appendNumber(out, value.instance.instanceName());
        out += '}';
        break;
    }
}

void ValueReader::read(const KpIfcEntityBase& instance, const Step& step, Values& values) {
    switch (step.kind) {
    case Step::Kind::attribute: return attribute(instance, step, values);
    case Step::Kind::property: return property(instance, step, values);
    case Step::Kind::referrers:
        for (const KpDbObjectId& referrer : m_model.referrers(instance.objectId())) {
            const KpIfcEntityBase* opened = referrer.openObject();
            if (opened && step.referrer.holds(opened->getInstanceType())) {
                values.push_back({.kind = Value::Kind::reference, .instance = referrer});
            }
        }
        return;
    case Step::Kind::id: values.push_back({.kind = Value::Kind::reference, .instance = instance.objectId()}); return;
    case Step::Kind::type:
        values.push_back({.kind = Value::Kind::literal, .text = instance.getInstanceType()->displayName()});
        return;
    }
}

void ValueReader::attribute(const KpIfcEntityBase& instance, const Step& step, Values& values) {
    const auto [row, isNew] = m_rows.try_emplace({&step, instance.getInstanceType()}, nullptr);
    if (isNew) {
        row->second = findAttributeFacts(instance, step.name);
    }
    if (row->second) {
        KpIfcVariant value;
        readAttribute(const_cast<KpIfcEntityBase&>(instance), *row->second, value); // which looks only
        Collector collector{values, m_isUtf8};
        ValueWalk(collector).walk(value, true);
        return;
    }
    KpIfcArray<KpDbObjectId> referrers;
    if (peekInverse(instance, step.name, referrers)) {
        for (const KpDbObjectId& referrer : referrers) {
            values.push_back({.kind = Value::Kind::reference, .instance = referrer});
        }
    }
}

void ValueReader::property(const KpIfcEntityBase& instance, const Step& step, Values& values) {
    if (m_object != &instance) {
        if (!m_sets) {
            m_sets.emplace(m_model);
        }
        m_properties = m_sets->of(instance);
        m_object = &instance;
    }
    constexpr std::size_t kMostKnown = 5000;
    const bool isMissing = !m_found.contains(&step);
    std::set<std::string>* const known = isMissing ? &m_known[&step] : nullptr;
    for (const KpIfcPropertyValue& property : m_properties) {
        if (known && known->size() < kMostKnown) {
            known->insert((step.set == "*" ? step.set : property.set) + '.' + property.name);
        }
        if ((step.set == "*" || isNamed(property.set, step.set)) && isNamed(property.name, step.name)) {
            m_found.insert(&step);
            append(property.value, values);
        }
    }
}

void ValueReader::append(const KpIfcVariant& value, Values& values) const {
    if (const auto* array = value.getIf<KpIfcArray<KpIfcVariant>>()) {
        for (const KpIfcVariant& each : *array) {
            append(each, values);
        }
    } else if (const KcString* text = value.getIf<KcString>()) {
        values.push_back({.kind = Value::Kind::text, .text = std::string(text->view())});
    } else {
        Collector collector{values, m_isUtf8};
        ValueWalk(collector).walk(value, true);
    }
}

std::vector<ValueReader::Missing> ValueReader::missing() const {
    std::vector<Missing> missing;
    for (const auto& [step, known] : m_known) {
        if (!m_found.contains(step)) {
            missing.push_back({step, known});
        }
    }
    return missing;
}

} // namespace kpifc::query
