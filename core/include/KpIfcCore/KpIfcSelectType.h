#pragma once

#include <KpIfcCore/KpIfcTypes.h>

#include <vector>

namespace KP_SDAI {

/// What a select's name stands for: the types of which a value is one.
class KPIFCCORE_EXPORT KpIfcSelectType : public DictionaryInstance {
public:
    /// Takes over the type code, whose parameter is the select's name.
    explicit KpIfcSelectType(KpTypeCode* code);
    ~KpIfcSelectType() override;

    /// The members as declared: entities and named types, nested selects among them, in schema order.
    const std::vector<const KpIfcNameType*>& members() const { return m_members; }
    void members(std::vector<const KpIfcNameType*> members) { m_members = std::move(members); }
    /// What a value can be: nested selects replaced by their members, each type once, in the order of first mention.
    std::vector<const KpIfcNameType*> flattenedMembers() const;

private:
    std::vector<const KpIfcNameType*> m_members;
};

} // namespace KP_SDAI
