#include "Progress.h"

#include "Interrupt.h"
#include "Output.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

using namespace KP_SDAI;

namespace kpifc {

namespace {

constexpr std::string_view kClear = "\r\x1b[K";

/// Whether a line that comes and goes disturbs nobody.
bool canShow() {
    static const bool isTerminal = isatty(STDERR_FILENO) == 1;
    static const char* const terminal = std::getenv("TERM");
    if (!isTerminal || !terminal || std::string_view(terminal) == "dumb") {
        return false;
    }
    static const bool isSharedWithResults = isatty(STDOUT_FILENO) == 1;
    return tcgetpgrp(STDERR_FILENO) == getpgrp() && !(isSharedWithResults && Output::hasWritten());
}

std::size_t columnsOfTerminal() {
    winsize size = {};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col ? size.ws_col : 80;
}

void show(std::string_view text) {
    [[maybe_unused]] const auto ignored = ::write(STDERR_FILENO, text.data(), text.size());
}

} // namespace

Progress::~Progress() {
    if (m_isShown) {
        show(kClear);
    }
}

bool Progress::look(const KpIfcProgress& progress) {
    if (isInterrupted()) {
        return false;
    }
    const Clock::time_point now = Clock::now();
    if (progress.stage != m_stage) {
        m_stage = progress.stage;
        m_stageStart = now;
    }
    if (now < m_next) {
        return true;
    }
    m_next = now + std::chrono::milliseconds(100);
    if (canShow()) {
        const std::chrono::duration<double> seconds = now - m_stageStart;
        // The last column stays free: some terminals go to the next line there.
        show(std::string(kClear) + progressLine(progress, seconds.count(), columnsOfTerminal() - 1));
        m_isShown = true;
    }
    return true;
}

std::string progressLine(const KpIfcProgress& progress, double seconds, std::size_t columns) {
    constexpr std::size_t kLongestBar = 40;
    constexpr std::size_t kShortestBar = 8;
    constexpr double kMega = 1e6;
    const auto done = static_cast<double>(progress.done);
    std::string line = stageName(progress.stage);
    if (progress.total > 1) {
        line += fmt::format(" {:3.0f} %", 100 * std::min(1.0, done / static_cast<double>(progress.total)));
    } else if (progress.isInBytes) {
        line += fmt::format(" {:.0f} MB", done / kMega);
    }
    std::string rate;
    if (progress.isInBytes && seconds > 0) {
        rate = fmt::format(" {:4.0f} MB/s", done / kMega / seconds);
    }
    const std::size_t taken = line.size() + rate.size() + 3; // with the frame of the bar
    if (progress.total > 1 && taken + kShortestBar <= columns) {
        const std::size_t length = std::min(kLongestBar, columns - taken);
        const auto full =
            static_cast<std::size_t>(static_cast<double>(length) * done / static_cast<double>(progress.total));
        line += fmt::format(" [{:<{}}]", std::string(std::min(full, length), '#'), length);
    }
    if (line.size() + rate.size() <= columns) {
        line += rate;
    }
    line.resize(std::min(line.size(), columns));
    return line;
}

} // namespace kpifc
