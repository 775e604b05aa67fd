#include <KpIfcCore/KpIfcException.h>

#include <algorithm>
#include <cstring>

namespace KP_SDAI {

KpIfcException::KpIfcException(unsigned code, const char* message, const char* where)
    : m_code(code), m_message(message), m_where{} {
    if (where) std::memcpy(m_where, where, std::min(std::strlen(where), sizeof m_where - 1));
}

KpIfcException::~KpIfcException() = default;

} // namespace KP_SDAI
