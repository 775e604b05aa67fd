#pragma once

#include <string>

namespace KP_SDAI {

/// What a file has around its header records and instances.
struct FileFrame {
    std::string beforeData;  ///< sections between HEADER and DATA, as text
    std::string dataOpening; ///< "DATA;" or with parameters
    std::string behindData;  ///< sections behind the first DATA that are no DATA, as text
    std::string behindEnd;   ///< signature sections
};

} // namespace KP_SDAI
