#include <KpIfcCore/KpIfcSettings.h>

namespace KP_SDAI {

KpIfcSettings& settings() {
    static constinit KpIfcSettings instance;
    return instance;
}

} // namespace KP_SDAI
