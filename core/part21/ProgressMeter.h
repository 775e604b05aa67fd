#pragma once

#include <KpIfcCore/KpIfcProgress.h>

#include <chrono>
#include <utility>

namespace KP_SDAI {

/// Between long work, which says often how far it has come, and a function that wants to know sometimes. Every member
/// that tells the function throws Cancelled where that returns false.
class ProgressMeter {
public:
    struct Cancelled {};

    explicit ProgressMeter(KpIfcProgressFunction function = {}) : m_function(std::move(function)) {}
    void function(KpIfcProgressFunction function) { m_function = std::move(function); }
    const KpIfcProgressFunction& function() const { return m_function; }

    /// Before anything is known of the first stage; tells nothing.
    void reset() { m_progress = {}; }
    void beginBytes(KpIfcStage stage, std::uint64_t total) { begin({stage, true, 0, total}); }
    void beginItems(KpIfcStage stage, std::uint64_t total) { begin({stage, false, 0, total}); }

    /// One more item.
    void step() {
        if (++m_progress.done % kStepsPerLook == 0) look();
    }
    /// So many items are done.
    void stepTo(std::uint64_t done) {
        if (done > m_progress.done) m_progress.done = done;
        look();
    }
    /// So many bytes of the source were read; in stages that count something else only a time to look.
    void readTo(std::uint64_t place) {
        // A file may be read twice, and may grow meanwhile.
        if (m_progress.total && place > m_progress.total) place = m_progress.total;
        if (m_progress.isInBytes && place > m_progress.done) m_progress.done = place;
        look();
    }
    /// Time passes without anything to count.
    void look() {
        if (m_function && Clock::now() >= m_next) tell();
    }
    /// A stage without stops between its beginning and its end is through.
    void end() {
        m_progress.done = m_progress.total;
        tell();
    }
    /// A signal has interrupted a system call: who has sent it should be heard before that is made again.
    void interrupted() { tell(); }

private:
    using Clock = std::chrono::steady_clock;
    static constexpr std::uint64_t kStepsPerLook = 256;

    void begin(const KpIfcProgress& progress) {
        m_progress = progress;
        tell();
    }
    void tell();

    KpIfcProgressFunction m_function;
    KpIfcProgress m_progress;
    Clock::time_point m_next; ///< when the function wants to be told again
};

} // namespace KP_SDAI
