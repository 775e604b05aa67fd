#include "Terminal.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include <sys/ioctl.h>
#include <unistd.h>

namespace kpifc {

std::string& colorMode() {
    static std::string mode = "auto";
    return mode;
}

namespace {

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
}

bool showsStyles(int stream) {
    const std::string& mode = colorMode();
    if (mode != "auto") {
        return mode == "always";
    }
    return !isSet("NO_COLOR") && isSet("TERM") && std::string_view(std::getenv("TERM")) != "dumb" &&
           isatty(stream) == 1;
}

std::string styledOn(int stream, Style style, std::string_view text) {
    static constexpr std::array<std::string_view, 6> kCodes{"1", "2", "31", "32", "33", "36"};
    if (text.empty() || !showsStyles(stream)) {
        return std::string(text);
    }
    std::string out = "\x1b[";
    out += kCodes[static_cast<std::size_t>(style)];
    out += 'm';
    out += text;
    return out += "\x1b[0m";
}

} // namespace

std::string styled(Style style, std::string_view text) {
    return styledOn(STDOUT_FILENO, style, text);
}

std::string styledMessage(Style style, std::string_view text) {
    return styledOn(STDERR_FILENO, style, text);
}

std::size_t terminalColumns() {
    winsize size = {};
    if (isatty(STDOUT_FILENO) != 1) {
        return 0;
    }
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col ? size.ws_col : 80;
}

std::size_t textColumns() {
    constexpr std::size_t kFewest = 40;
    constexpr std::size_t kMost = 100;
    const std::size_t columns = terminalColumns();
    return columns ? std::clamp(columns - 1, kFewest, kMost) : 80;
}

} // namespace kpifc
