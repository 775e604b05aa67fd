#include <KpIfcCore/KpIfcAggrAccess.h>

namespace KP_SDAI::detail {

template struct AggrAccess<KpIfcListAggr<double>>;
template struct AggrAccess<KpIfcListAggr<int>>;
template struct AggrAccess<KpIfcListAggr<KpAnsiString>>;
template struct AggrAccess<KpIfcListAggr<KpAnsiString>, true>;
template struct AggrAccess<KpIfcListAggr<KpDbObjectId>>;
template struct AggrAccess<KpIfcSetAggr<KpDbObjectId>>;
template struct AggrAccess<KpIfcArrayAggr<double>>;

} // namespace KP_SDAI::detail
