#include <KpIfcCore/KpIfcEnumerationType.h>

#include <iterator>

namespace KP_SDAI {

KpIfcEnumerationType::KpIfcEnumerationType(KpTypeCode* code, const std::list<KpAnsiString>& literals)
    : m_literals(literals.begin(), literals.end()) {
    type(code);
}

KpIfcEnumerationType::KpIfcEnumerationType(KpTypeCode* code, std::list<KpAnsiString>&& literals)
    : m_literals(std::make_move_iterator(literals.begin()), std::make_move_iterator(literals.end())) {
    type(code);
}

KpIfcEnumerationType::~KpIfcEnumerationType() = default;

} // namespace KP_SDAI
