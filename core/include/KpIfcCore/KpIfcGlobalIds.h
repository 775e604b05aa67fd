#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcGUID.h>

namespace KP_SDAI {

/// A fresh GlobalId: 128 random bits of the system's source, as 22 digits to the base 64 ("0-9A-Za-z_$"), of which the
/// first is one of "0-3". Any thread. Throws where the system has no random source.
KPIFCCORE_EXPORT KpIfcGUID newGlobalId();

} // namespace KP_SDAI
