#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

#include <cstdint>
#include <functional>

namespace KP_SDAI {

/// What is being done. Opening goes through the first four, saving through the last two; checking has one.
enum class KpIfcStage : std::uint8_t {
    reading,  ///< bytes of the file
    linking,  ///< fields that refer to instances that come later
    inverses, ///< instances that are entered in inverse attributes
    locating, ///< bytes, read again for the lines of findings; left out where there are none
    checking, ///< instances
    writing,  ///< bytes of the source that is copied, or instances where all is written anew
    flushing  ///< 0 of 1 while the disk gets what it has not yet; 1 of 1 before the target is replaced
};

/// What `reading` and the like are called in messages: "reading", "inverse attributes".
KPIFCCORE_EXPORT const char* stageName(KpIfcStage stage);

/// How far one stage has come.
struct KpIfcProgress {
    KpIfcStage stage = KpIfcStage::reading;
    bool isInBytes = true;   ///< as the file has them: of compressed ones compressed bytes, of zip archives about so
    std::uint64_t done = 0;  ///< never decreases within a stage
    std::uint64_t total = 0; ///< 0 where that is not known, as of pipes
};

/// Is told how far long work has come, and lets it go on by returning true.
///
///     file.progress([&](const KpIfcProgress& progress) {
///         bar.show(stageName(progress.stage), progress.done, progress.total);
///         return !cancelButton.isPressed();
///     });
///
/// It is called on the thread that called the operation, when each stage begins and then about fifty times a second,
/// whatever the size of the file; a system call that takes longer, such as reading from a pipe to which nobody writes,
/// delays it until a signal interrupts that call. The operation is under way, so it must not touch the file, its model
/// or its reports.
///
/// Where it returns false, the operation ends with eCancelled and has not happened, as far as its own description goes.
/// So it does where it throws: the exception passes through to the caller of the operation.
using KpIfcProgressFunction = std::function<bool(const KpIfcProgress&)>;

} // namespace KP_SDAI
