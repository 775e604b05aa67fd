#include "facts/Diagnostics.h"

#include <algorithm>
#include <utility>

namespace kpifcgen::facts {

std::string format(std::string_view file, Diagnostics diagnostics) {
    std::ranges::stable_sort(diagnostics, [](const Diagnostic& a, const Diagnostic& b) {
        return std::pair(a.at.line, a.at.column) < std::pair(b.at.line, b.at.column);
    });
    std::string text;
    for (const auto& [at, message] : diagnostics) {
        text.append(file).append(":").append(std::to_string(at.line));
        text.append(":").append(std::to_string(at.column)).append(": ").append(message).append("\n");
    }
    return text;
}

} // namespace kpifcgen::facts
