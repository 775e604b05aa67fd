#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcGUID.h>

#include <string>
#include <string_view>

/// GlobalIds: 128 bits as 22 digits to the base 64, the most significant first. The digits are "0-9A-Za-z_$" in this
/// order; the first one is one of "0-3". Any thread.
namespace KP_SDAI {

/// A fresh one: random bits of the system's source. Throws where the system has none.
KPIFCCORE_EXPORT KpIfcGUID newGlobalId();

/// True for a text of that form.
KPIFCCORE_EXPORT bool isGlobalId(std::string_view text);

/// The same 128 bits in the usual form, 8-4-4-4-12 hexadecimal digits in lower case; "" where the text is no GlobalId.
KPIFCCORE_EXPORT std::string uuidOfGlobalId(std::string_view globalId);

/// The GlobalId of a UUID in that form, in any letter case; unset where it is none.
KPIFCCORE_EXPORT KpIfcGUID globalIdOfUuid(std::string_view uuid);

} // namespace KP_SDAI
