#include <KpIfcCore/KpIfcEnumerationType.h>

namespace KP_SDAI {

KpIfcEnumerationType::KpIfcEnumerationType(KpTypeCode* code, const std::list<KpAnsiString>& literals)
    : m_literals(literals.begin(), literals.end()) {
    type(code);
}

KpIfcEnumerationType::~KpIfcEnumerationType() = default;

} // namespace KP_SDAI
