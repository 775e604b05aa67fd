#include "facts/Diagnostics.h"

#include <algorithm>

namespace kpifcgen::facts {

std::string format(std::string_view file, Diagnostics diagnostics) {
    std::ranges::stable_sort(diagnostics, {}, &Diagnostic::at);
    std::string text;
    for (const auto& [at, message] : diagnostics) {
        text.append(file).append(":").append(std::to_string(at.line));
        text.append(":").append(std::to_string(at.column)).append(": ").append(message).append("\n");
    }
    return text;
}

} // namespace kpifcgen::facts
