#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

#include <cstddef>

namespace KP_SDAI {

/// For tests: while one lives, files that its thread opens are read by several threads however small they are, each
/// taking so many bytes at a time; 0 for what is usual. They do not nest.
class KPIFCCORE_EXPORT SmallParts {
public:
    explicit SmallParts(std::size_t size);
    SmallParts(const SmallParts&) = delete;
    SmallParts& operator=(const SmallParts&) = delete;
    ~SmallParts();

    /// Of the one that lives in this thread, 0 where there is none.
    static std::size_t size();
};

} // namespace KP_SDAI
