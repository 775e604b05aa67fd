#include <KpIfcCore/KpIfcAggrIterator.h>

namespace KP_SDAI {

KpIfcAggrConstIterator::~KpIfcAggrConstIterator() = default;
KpIfcAggrIterator::~KpIfcAggrIterator() = default;

} // namespace KP_SDAI
