#pragma once

#include <string>

namespace kpifcgen::emit {

struct File {
    std::string path; ///< relative to the output folder, with '/'
    std::string text;
};

} // namespace kpifcgen::emit
