#pragma once

#include <atomic>
#include <memory>
#include <mutex>

namespace KP_SDAI {

class KpIfcModel;

/// An index over a model that is built when first asked for. Many threads may ask at once; changing it is for one that
/// has the model for itself.
template <class Index>
class OnDemand {
public:
    const Index& get(const KpIfcModel& model) {
        if (const Index* built = m_built.load(std::memory_order_acquire)) return *built;
        const std::lock_guard lock(m_building);
        if (!m_index) m_index = std::make_unique<Index>(model);
        m_built.store(m_index.get(), std::memory_order_release);
        return *m_index;
    }

    /// Lets `update(Index&)` follow changes, where there is an index; drops it where that answers false or throws.
    template <class Update>
    void follow(Update update) {
        try {
            if (!m_index || update(*m_index)) return;
        } catch (...) {
            drop();
            throw;
        }
        drop();
    }

private:
    void drop() {
        m_built = nullptr;
        m_index.reset();
    }

    std::mutex m_building;
    std::unique_ptr<Index> m_index;
    std::atomic<const Index*> m_built = nullptr; ///< the same, once it is built
};

} // namespace KP_SDAI
