#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kpifcgen::facts {

/// A place in a schema file; line and column count from 1, columns in bytes.
struct Position {
    int line = 0;
    int column = 0;
};

struct Diagnostic {
    Position at;
    std::string message;
};

using Diagnostics = std::vector<Diagnostic>;

/// One line per diagnostic, "file:line:column: message", in the order of the file.
std::string format(std::string_view file, Diagnostics diagnostics);

} // namespace kpifcgen::facts
