#include "check/InverseCheck.h"

#include "model/HeldReferences.h"
#include "part21/ReferenceText.h"

#include <KpIfcCore/KpIfcInverseMembers.h>

#include <algorithm>

namespace KP_SDAI {

namespace {

/// "exactly 1", "at least 1", "at most 2", "1 to 3"
std::string textOf(const CheckedBounds& bounds) {
    if (bounds.least == bounds.most) return "exactly " + std::to_string(bounds.least);
    if (bounds.most == CheckedBounds::kOpen) return "at least " + std::to_string(bounds.least);
    if (bounds.least == 0) return "at most " + std::to_string(bounds.most);
    return std::to_string(bounds.least) + " to " + std::to_string(bounds.most);
}

std::string listOf(const KpIfcSetAggr<KpDbObjectId>& referrers) {
    constexpr std::size_t kListed = 4;
    std::string text;
    for (std::size_t i = 0; i < std::min(referrers.size(), kListed); ++i)
        text += (i ? ", #" : "#") + std::to_string(referrers[i].instanceName());
    return referrers.size() > kListed ? text + ", ..." : text;
}

} // namespace

bool InverseCheck::isNamedByText(const KpIfcEntityBase& instance) {
    if (!m_namedByText) {
        m_namedByText.emplace();
        const auto note = [this](std::uint64_t name, std::string_view) { m_namedByText->insert(name); };
        m_data.visitInFileOrder(
            [&](KpIfcEntityBase* holder) {
                if (!m_data.keptFields(*holder)) return;
                for (const KeptField* kept : keptTextsInForce(m_data, *holder)) visitReferenceTexts(kept->source, note);
            },
            [&](const KeptRecord& record) { visitReferenceTexts(record.text, note); });
    }
    return m_namedByText->count(instance.instanceName()) != 0;
}

void InverseCheck::check(KpIfcEntityBase& instance, const CheckedInverse& inverse) {
    const KpIfcSetAggr<KpDbObjectId>& referrers = inverse.row->members(instance).set(inverse.row->index);
    if (inverse.bounds.allow(referrers.size())) return;
    if (referrers.size() < inverse.bounds.least && isNamedByText(instance)) return;
    m_findings.add(KpIfcFinding::inverseCount, instance, inverse.row->name, [&] {
        const KpIfcExplicitAttributeDefinition* const through = inverse.attribute->invertedAttribute();
        std::string text = countOf(referrers.size(), "referrer");
        if (!referrers.empty()) text += " (" + listOf(referrers) + ')';
        return Said{std::move(text), textOf(inverse.bounds) + ": " + inverse.attribute->target()->displayName() + '.' +
                                         (through ? through->name() : "?")};
    });
}

} // namespace KP_SDAI
