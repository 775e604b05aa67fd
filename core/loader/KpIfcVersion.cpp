#include <KpIfcCore/KpIfcVersion.h>

namespace KP_SDAI {

const char* runtimeVersion() {
    return KPIFC_VERSION;
}

} // namespace KP_SDAI
