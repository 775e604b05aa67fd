#include <KpIfcCore/KpIfcSelectType.h>

#include <algorithm>

namespace KP_SDAI {

KpIfcSelectType::KpIfcSelectType(KpTypeCode* code) {
    type(code);
}

KpIfcSelectType::~KpIfcSelectType() = default;

namespace {

/// `selects` are those that were opened already, so that selects that name each other come to an end.
void flatten(const KpIfcSelectType& type, std::vector<const KpIfcSelectType*>& selects,
             std::vector<const KpIfcNameType*>& flattened) {
    if (std::find(selects.begin(), selects.end(), &type) != selects.end()) return;
    selects.push_back(&type);
    for (const KpIfcNameType* member : type.members()) {
        const auto* named = member->as<KpIfcDefinedType>();
        if (const KpIfcSelectType* nested = named ? named->select() : nullptr)
            flatten(*nested, selects, flattened);
        else if (std::find(flattened.begin(), flattened.end(), member) == flattened.end())
            flattened.push_back(member);
    }
}

} // namespace

std::vector<const KpIfcNameType*> KpIfcSelectType::flattenedMembers() const {
    std::vector<const KpIfcSelectType*> selects;
    std::vector<const KpIfcNameType*> flattened;
    flatten(*this, selects, flattened);
    return flattened;
}

} // namespace KP_SDAI
