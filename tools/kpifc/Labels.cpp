#include "Labels.h"

#include "Utf8.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpStepText.h>

#include <fmt/format.h>

using namespace KP_SDAI;

namespace kpifc {

std::optional<std::string> Labels::text(const KpIfcEntityBase& instance, std::string_view attribute) const {
    KpIfcVariant value;
    peekAttribute(instance, attribute, value);
    const char* const* chars = value.getIf<const char*>();
    const std::string_view text = chars ? KpAnsiString::viewOf(*chars) : std::string_view();
    if (!chars || text == std::string_view(Consts::KpStringUnset, Consts::KpStringUnsetLength)) {
        return std::nullopt;
    }
    return m_isUtf8 ? std::string(text) : KpStepText::decode(text);
}

std::optional<std::string> Labels::globalId(const KpIfcEntityBase& instance) const {
    KpIfcVariant value;
    peekAttribute(instance, "GlobalId", value);
    const KpIfcGUID* id = value.getIf<KpIfcGUID>();
    return id && !id->isUnset() ? std::optional<std::string>(id->constStr()) : std::nullopt;
}

std::optional<double> Labels::real(const KpIfcEntityBase& instance, std::string_view attribute) const {
    KpIfcVariant value;
    peekAttribute(instance, attribute, value);
    const double* real = value.getIf<double>();
    return real && *real != Consts::KpRealUnset ? std::optional<double>(*real) : std::nullopt;
}

std::string Labels::reference(const KpDbObjectId& handle) const {
    const KpIfcEntityBase* instance = handle.openObject();
    if (!instance) {
        return fmt::format("#{} ({})", handle.instanceName(), handle.isDefined() ? "kept as text" : "missing");
    }
    std::string label = fmt::format("#{} {}", handle.instanceName(), instance->getInstanceType()->displayName());
    if (const std::optional<std::string> own = name(*instance)) {
        label += ' ' + quotedName(*own);
    }
    return label;
}

std::string quotedName(std::string_view name) {
    return '"' + printable(name) + '"';
}

} // namespace kpifc
