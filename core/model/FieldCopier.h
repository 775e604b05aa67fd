#pragma once

#include <KpIfcCore/KpIfcElementCopier.h>
#include <KpIfcCore/KpIfcEntityType.h>

#include "model/CopyMap.h"
#include "model/ModelData.h"

#include <string>
#include <string_view>
#include <vector>

namespace KP_SDAI {

/// Fills copies of instances, once all that they may refer to have their slots. One object for as long as the source
/// does not change.
class FieldCopier final : public KpIfcElementCopier {
public:
    FieldCopier(CopyMap& map, std::size_t instances);

    /// Makes `to`, which is new, hold what `from` holds, source texts of fields included.
    void copy(KpIfcEntityBase& from, KpIfcEntityBase& to);

    KpArena& arena() override { return m_target.arena; }
    bool adapt(KpDbObjectId& reference) override;
    bool adapt(KpIfcSelect& select) override;
    bool adapt(KpAnsiString& text) override;

private:
    struct Shared {
        const char* original = nullptr;
        const char* copy = nullptr;
    };

    void copyField(KpIfcEntityBase& from, KpIfcEntityBase& to, const KpIfcAttributeFacts& row);
    void copyText(const KpAnsiString& from, KpAnsiString& to);
    void copyKeptTexts(KpIfcEntityBase& from, KpIfcEntityBase& to);
    std::string_view converted(std::string_view text);

    CopyMap& m_map;
    ModelData& m_target;
    bool m_sourceIsUtf8;
    bool m_converts;
    KpDbObjectId m_from;                          ///< the instance that is being copied ...
    const KpIfcAttributeFacts* m_field = nullptr; ///< ... and the attribute
    std::string m_converted;
    std::vector<Shared> m_shared; ///< texts of the source that many instances share, by their address
};

} // namespace KP_SDAI
