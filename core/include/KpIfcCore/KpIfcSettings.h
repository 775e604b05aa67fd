#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

#include <atomic>

namespace KP_SDAI {

/// Choices of the program that hold for everything opened afterwards.
class KPIFCCORE_EXPORT KpIfcSettings {
public:
    /// True (the default): texts of models are UTF-8. False: they stay encoded as the file has them. A model remembers
    /// the form in which it was read.
    bool get_useUTF8() const { return m_useUTF8.load(std::memory_order_relaxed); }
    void set_useUTF8(bool use) { m_useUTF8.store(use, std::memory_order_relaxed); }

private:
    std::atomic<bool> m_useUTF8{true};
};

/// The settings of this process.
KPIFCCORE_EXPORT KpIfcSettings& settings();

} // namespace KP_SDAI
