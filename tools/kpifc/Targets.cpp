#include "Targets.h"

#include "Failure.h"
#include "Files.h"
#include "SchemaNames.h"
#include "Utf8.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcGUID.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>
#include <set>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

std::string Target::text() const {
    return fmt::format("#{}.{} of {}", instance->instanceName(), attribute->displayName(),
                       instance->getInstanceType()->displayName());
}

bool Target::isDerived() const {
    return attribute->kind() == KpIfcAttributeKind::derivedAttribute ||
           instance->getInstanceType()->redeclarationOf(*attribute);
}

void Targets::fail(const std::string& what) const {
    throw Failure(m_prefix + what);
}

Target Targets::find(std::string_view name) {
    const std::size_t point = name.find('.');
    Target target{instance(trimmed(name.substr(0, point))), nullptr};
    if (point == std::string_view::npos) {
        return target;
    }
    const std::string_view attribute = trimmed(name.substr(point + 1));
    const KpIfcEntityType& entity = *target.instance->getInstanceType();
    target.attribute = entity.findAttribute(attribute);
    if (!target.attribute) {
        std::vector<std::string> known;
        for (const KpIfcAttributeDefinition* each : entity.allAttributes()) {
            known.emplace_back(each->displayName());
        }
        fail(fmt::format("#{} is an {}, which has no attribute \"{}\"{}", target.instance->instanceName(),
                         entity.displayName(), printable(attribute), didYouMean(suggestions(known, attribute))));
    }
    return target;
}

KpIfcEntityBase* Targets::instance(std::string_view name) {
    const KpDbObjectId found = handle(name);
    KpIfcEntityBase* instance = found.openObject();
    if (!instance) {
        fail(
            fmt::format("#{} could not be understood and is kept as text; kpifc info tells why", found.instanceName()));
    }
    return instance;
}

KpDbObjectId Targets::handle(std::string_view name) {
    std::uint64_t number = 0;
    if (name.starts_with('#')) {
        const char* const end = name.data() + name.size();
        const auto [behind, error] = std::from_chars(name.data() + 1, end, number);
        if (error != std::errc() || behind != end) {
            fail(fmt::format("\"{}\" is no instance name, such as #15", printable(name)));
        }
    } else if (name.size() == KpIfcGUID::kLength) {
        return handleOfGlobalId(name);
    } else {
        fail(fmt::format("\"{}\" is neither an instance name, such as #15, nor a GlobalId of {} characters",
                         printable(name), KpIfcGUID::kLength));
    }
    const KpDbObjectId handle = m_model.find(number);
    if (!handle.isDefined()) {
        fail(fmt::format("there is no instance #{}; {}", number, nearest(number)));
    }
    return handle;
}

std::string Targets::nearest(std::uint64_t number) const {
    const KpIfcEntityBase* before = nullptr;
    const KpIfcEntityBase* behind = nullptr;
    for (const KpIfcEntityBase* instance : m_model.instances()) {
        (instance->instanceName() < number ? before : behind) = instance;
        if (behind) {
            break;
        }
    }
    const auto text = [](const KpIfcEntityBase* instance) {
        return fmt::format("#{} {}", instance->instanceName(), instance->getInstanceType()->displayName());
    };
    if (before && behind) {
        return fmt::format("the nearest are {} and {}", text(before), text(behind));
    }
    return before   ? "the last one is " + text(before)
           : behind ? "the first one is " + text(behind)
                    : "the file has no instances";
}

KpDbObjectId Targets::handleOfGlobalId(std::string_view globalId) const {
    const KpIfcArray<KpDbObjectId> found = m_model.findAllByGlobalId(globalId);
    if (found.empty()) {
        std::set<std::string> known;
        KpIfcVariant value;
        for (const KpIfcEntityBase* rooted : m_model.instances("IfcRoot")) {
            peekAttribute(*rooted, "GlobalId", value);
            if (const KpIfcGUID* own = value.getIf<KpIfcGUID>()) {
                known.insert(own->constStr());
            }
        }
        const std::string near = didYouMean(suggestions({known.begin(), known.end()}, globalId));
        fail(fmt::format("no instance has the GlobalId {}{}", printable(globalId),
                         near.empty() ? "; the file has " + counted(known.size(), "other") : printable(near)));
    }
    if (found.size() > 1) {
        std::vector<std::uint64_t> names;
        for (const KpDbObjectId& handle : found) {
            names.push_back(handle.instanceName());
        }
        fail(fmt::format("the GlobalId {} is that of several instances: #{}", printable(globalId),
                         fmt::join(names, ", #")));
    }
    return found[0];
}

} // namespace kpifc
