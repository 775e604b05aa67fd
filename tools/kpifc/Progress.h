#pragma once

#include <KpIfcCore/KpIfcProgress.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace kpifc {

/// Watches one operation on a file: lets it go on until a signal asks to stop, and shows how far it has come on
/// standard error once it has taken a second. Nothing is shown where that is no terminal, or one of another job, or
/// where results stand on the same terminal already.
///
/// What is shown is gone when this is. Whoever ran the operation calls stopIfInterrupted() when it was cancelled.
class Progress {
public:
    Progress() = default;
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    /// To be handed to the operation.
    KP_SDAI::KpIfcProgressFunction function() {
        return [this](const KP_SDAI::KpIfcProgress& progress) { return look(progress); };
    }

private:
    using Clock = std::chrono::steady_clock;

    bool look(const KP_SDAI::KpIfcProgress& progress);

    Clock::time_point m_next = Clock::now() + std::chrono::seconds(1); ///< when to show anything
    Clock::time_point m_stageStart = Clock::now();
    KP_SDAI::KpIfcStage m_stage = KP_SDAI::KpIfcStage::reading;
    bool m_isShown = false;
};

/// One line of so many columns at most: "reading   42 % [######        ]  312 MB/s". Where the total is not known it
/// tells how many bytes were read: "reading  134 MB  12 MB/s".
std::string progressLine(const KP_SDAI::KpIfcProgress& progress, double seconds, std::size_t columns);

} // namespace kpifc
