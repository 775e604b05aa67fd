#pragma once

#include <KpIfcCore/KpErrorStatus.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcProgress.h>

#include <string>
#include <string_view>

namespace KP_SDAI {

/// Writes a file of any kind as KpIfcFile::save() writes STEP files, but never compressed: a target that exists is
/// replaced when all is on the disk and keeps its permissions, a device or pipe is written directly.
///
/// eNotAvailable, with the reason and the path in `error`, where that fails; eCancelled where `progress`, which may be
/// empty, stopped it. The target is then as it was and nothing is left beside it; what is no regular file has got what
/// was written by then. Any thread may call it.
KPIFCCORE_EXPORT KP::ErrorStatus writeFile(const std::string& path, std::string_view content,
                                           const KpIfcProgressFunction& progress, std::string& error);

} // namespace KP_SDAI
