#include "QueryEvaluation.h"

#include "Interrupt.h"
#include "Targets.h"

#include <KpIfcCore/KpTextCase.h>

#include <algorithm>

using namespace KP_SDAI;

namespace kpifc::query {

namespace {

bool equalWord(const Value& value, const std::string& word) {
    switch (value.kind) {
    case Value::Kind::truth:
    case Value::Kind::literal: {
        const std::string text = textOf(value);
        return equalNoCase(text.data(), text.size(), word.c_str());
    }
    case Value::Kind::text: return value.text == word;
    default: return false;
    }
}

bool equals(const Value& value, const Literal& literal) {
    if (const double* number = std::get_if<double>(&literal)) {
        return (value.kind == Value::Kind::real || value.kind == Value::Kind::integer) && value.number == *number;
    }
    if (const std::string* text = std::get_if<std::string>(&literal)) {
        return value.kind == Value::Kind::text ? value.text == *text
                                               : value.kind == Value::Kind::literal && equalWord(value, *text);
    }
    if (const Word* word = std::get_if<Word>(&literal)) {
        return equalWord(value, word->text);
    }
    const Reference* reference = std::get_if<Reference>(&literal);
    return reference && value.kind == Value::Kind::reference && value.instance.instanceName() == reference->name;
}

/// Of two of a kind: below, equal to or above 0. False where they are of different kinds.
bool compare(const Value& value, const Literal& literal, int& order) {
    if (const double* number = std::get_if<double>(&literal)) {
        order = value.number < *number ? -1 : value.number > *number ? 1 : 0;
        return value.kind == Value::Kind::real || value.kind == Value::Kind::integer;
    }
    const std::string* text = std::get_if<std::string>(&literal);
    order = text ? value.text.compare(*text) : 0;
    return text && value.kind == Value::Kind::text;
}

bool isOrdered(const Value& value, Comparison comparison, const Literal& literal) {
    int order = 0;
    if (!compare(value, literal, order)) {
        return false;
    }
    switch (comparison) {
    case Comparison::less: return order < 0;
    case Comparison::lessEqual: return order <= 0;
    case Comparison::greater: return order > 0;
    default: return order >= 0;
    }
}

} // namespace

bool Evaluation::holds(Instance instance, const Condition& condition) {
    const auto isTrue = [&](const Condition& part) { return holds(instance, part); };
    const std::vector<Condition>& parts = condition.parts;
    switch (condition.kind) {
    case Condition::Kind::any: return std::any_of(parts.begin(), parts.end(), isTrue);
    case Condition::Kind::all: return std::all_of(parts.begin(), parts.end(), isTrue);
    case Condition::Kind::no: return !isTrue(parts.front());
    case Condition::Kind::type: return condition.type.holds(instance->getInstanceType());
    case Condition::Kind::comparison: break;
    }
    return compares(instance, condition);
}

bool Evaluation::compares(Instance instance, const Condition& condition) {
    const Values values = valuesOf(*instance, condition.path);
    const auto any = [&values](auto&& isTrue) { return std::any_of(values.begin(), values.end(), isTrue); };
    const auto anyLiteral = [&](auto&& isTrue) {
        return std::any_of(condition.literals.begin(), condition.literals.end(), isTrue);
    };
    switch (condition.comparison) {
    case Comparison::exists: return condition.path.isCount ? values.front().number != 0 : !values.empty();
    case Comparison::equal:
        return anyLiteral([&](const Literal& literal) {
            return std::holds_alternative<Unset>(literal) ? values.empty()
                                                          : any([&](const Value& v) { return equals(v, literal); });
        });
    case Comparison::matches: return any([&](const Value& v) { return condition.pattern->isIn(textOf(v)); });
    default: return any([&](const Value& v) { return isOrdered(v, condition.comparison, condition.literals.front()); });
    }
}

bool Evaluation::passes(Instance instance, const std::vector<Condition>& filters) {
    return std::all_of(filters.begin(), filters.end(),
                       [&](const Condition& filter) { return holds(instance, filter); });
}

std::vector<Evaluation::Instance> Evaluation::follow(const std::vector<Instance>& from, const Step& step) {
    std::vector<KpDbObjectId> handles;
    Values values;
    for (const Instance instance : from) {
        stopIfInterrupted();
        values.clear();
        m_values.read(*instance, step, values);
        for (const Value& value : values) {
            if (value.kind == Value::Kind::reference) {
                handles.push_back(value.instance);
            }
        }
    }
    std::sort(handles.begin(), handles.end());
    handles.erase(std::unique(handles.begin(), handles.end()), handles.end());
    std::vector<Instance> found;
    for (const KpDbObjectId& handle : handles) {
        const Instance instance = handle.openObject(); // null for records that are kept as text
        if (instance && passes(instance, step.filters)) {
            found.push_back(instance);
        }
    }
    return found;
}

Values Evaluation::valuesOf(const KpIfcEntityBase& instance, const Path& path) {
    Values values;
    std::vector<Instance> at{&instance};
    for (std::size_t i = 0; i + 1 < path.steps.size(); ++i) {
        at = follow(at, path.steps[i]);
    }
    const Step& last = path.steps.back();
    for (const Instance each : at) {
        m_values.read(*each, last, values);
    }
    if (!last.filters.empty()) {
        std::erase_if(values, [&](const Value& value) {
            const Instance target = value.kind == Value::Kind::reference ? value.instance.openObject() : nullptr;
            return !target || !passes(target, last.filters);
        });
    }
    if (path.isCount) {
        return {{.kind = Value::Kind::integer, .number = static_cast<double>(values.size())}};
    }
    return values;
}

std::vector<Evaluation::Instance> Evaluation::startOf(const Selection& selection) {
    std::vector<Instance> start;
    const auto add = [&](Instance instance) {
        if (passes(instance, selection.filters)) {
            start.push_back(instance);
        }
    };
    if (!selection.target.empty()) {
        add(Targets(m_model).find(selection.target).instance);
        return start;
    }
    const KpIfcModel::Range range =
        selection.type.entity ? m_model.instances(selection.type.entity, !selection.type.isExact) : m_model.instances();
    for (const KpIfcEntityBase* instance : range) {
        stopIfInterrupted();
        add(instance);
    }
    return start;
}

std::vector<Evaluation::Instance> Evaluation::found(const Selection& selection) {
    std::vector<Instance> instances = startOf(selection);
    for (const Step& step : selection.steps) {
        instances = follow(instances, step);
    }
    return instances;
}

void Evaluation::run(const Query& query, const std::function<void(const KpIfcEntityBase&)>& take) {
    std::vector<Instance> all;
    for (const Selection& selection : query) {
        const std::vector<Instance> instances = found(selection);
        all.insert(all.end(), instances.begin(), instances.end());
    }
    if (query.size() > 1) {
        std::sort(all.begin(), all.end(), [](Instance a, Instance b) { return a->instanceName() < b->instanceName(); });
        all.erase(std::unique(all.begin(), all.end()), all.end());
    }
    for (const Instance instance : all) {
        take(*instance);
    }
}

} // namespace kpifc::query
