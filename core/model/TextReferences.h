#pragma once

#include "model/HeldReferences.h"

#include <unordered_map>
#include <vector>

namespace KP_SDAI {

/// The references of a model that only source texts have: records kept as text, and texts kept of fields. They are in
/// no index, for most models have none.
class TextReferences {
public:
    explicit TextReferences(ModelData& data) {
        data.visitKeptTexts([this](const KpDbObjectId& from) {
            visitTextReferences(from, [&](const KpIfcAttributeFacts*, const KpDbObjectId& to) {
                std::vector<KpDbObjectId>& referrers = m_referrers[to.slot()];
                if (referrers.empty() || referrers.back() != from) referrers.push_back(from);
            });
        });
    }
    const std::vector<KpDbObjectId>& to(const KpDbObjectId& target) const {
        static const std::vector<KpDbObjectId> none;
        const auto found = m_referrers.find(target.slot());
        return found == m_referrers.end() ? none : found->second;
    }

private:
    std::unordered_map<const KpIfcSlot*, std::vector<KpDbObjectId>> m_referrers;
};

} // namespace KP_SDAI
