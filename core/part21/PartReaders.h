#pragma once

#include "model/ModelData.h"
#include "part21/EntityNames.h"
#include "part21/Part.h"
#include "part21/PartSource.h"
#include "part21/RecordReader.h"
#include "part21/Threading.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace KP_SDAI {

/// Threads that read parts of a source into a model. The source itself is read by the thread that calls next(), which
/// reads parts, too, while it would wait.
class PartReaders {
public:
    PartReaders(ModelData& data, PartSource& source, const EntityNames& names, const Threading& threading,
                std::size_t listedPerKind)
        : m_data(data), m_source(source), m_names(names), m_threadCount(threading.threads),
          m_smallest(threading.smallest), m_listedPerKind(listedPerKind) {}
    PartReaders(const PartReaders&) = delete;
    PartReaders& operator=(const PartReaders&) = delete;
    /// Waits until no thread is left.
    ~PartReaders();

    /// The next part in file order, read; null where there is none. It lasts until the next call. Throws what reading
    /// it has thrown. `reader` is the caller's own.
    Part* next(RecordReader& reader);

private:
    static constexpr std::size_t kParts = 2; ///< that are out besides those that are being read

    void giveOut();
    void startThread();
    void work(RecordReader& reader);
    Part* firstWaiting();

    ModelData& m_data;
    PartSource& m_source;
    const EntityNames& m_names;
    unsigned m_threadCount;
    const std::uint64_t m_smallest; ///< no thread is started before so much is read
    const std::size_t m_listedPerKind;
    std::unique_ptr<Part> m_current; ///< the one that next() gave
    std::vector<std::unique_ptr<Part>> m_spare;
    std::vector<std::unique_ptr<RecordReader>> m_readers;
    std::vector<std::thread> m_threads;

    std::mutex m_mutex; ///< of what follows and of the states of the parts
    std::condition_variable m_changed;
    std::deque<std::unique_ptr<Part>> m_parts; ///< that are out, in file order
    bool m_isStopped = false;
};

} // namespace KP_SDAI
