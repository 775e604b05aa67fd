#include <KpIfcCore/KpIfcException.h>

namespace KP_SDAI {

KpIfcException::~KpIfcException() = default;

} // namespace KP_SDAI
