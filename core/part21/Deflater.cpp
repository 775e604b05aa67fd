#include "part21/Deflater.h"

#include <zlib.h>

#include <algorithm>
#include <new>
#include <utility>

namespace KP_SDAI {

struct Deflater::Stream {
    static constexpr uInt kOutput = 256 * 1024;

    explicit Stream(Container container) : output(new Bytef[kOutput]) {
        constexpr int kMemoryLevel = 9;
        const int window = container == Container::gzip ? MAX_WBITS + 16 : -MAX_WBITS; // zlib's way to say so
        if (deflateInit2(&z, Z_DEFAULT_COMPRESSION, Z_DEFLATED, window, kMemoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
            throw std::bad_alloc();
        z.next_out = output.get();
        z.avail_out = kOutput;
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() { deflateEnd(&z); }

    z_stream z{};
    std::unique_ptr<Bytef[]> output;
};

Deflater::Deflater(Container container, Compressor::Sink sink)
    : m_container(container), m_sink(std::move(sink)), m_stream(std::make_unique<Stream>(container)) {}

Deflater::~Deflater() = default;

/// Compresses the input that was set; passes on full buffers, and all at the end.
bool Deflater::run(int flush) {
    z_stream& z = m_stream->z;
    for (;;) {
        const bool isEnded = deflate(&z, flush) == Z_STREAM_END;
        if (z.avail_out && !isEnded) return true; // all input is taken
        const std::size_t length = Stream::kOutput - z.avail_out;
        m_given += length;
        if (!m_sink({reinterpret_cast<const char*>(m_stream->output.get()), length})) return false;
        z.next_out = m_stream->output.get();
        z.avail_out = Stream::kOutput;
        if (isEnded) return true;
    }
}

bool Deflater::write(std::string_view piece) {
    constexpr std::size_t kMost = std::size_t{1} << 30; // zlib counts in 32 bits
    while (!piece.empty()) {
        const std::size_t length = std::min(piece.size(), kMost);
        const Bytef* const bytes = reinterpret_cast<const Bytef*>(piece.data());
        if (m_container == Container::none)
            m_crc = static_cast<std::uint32_t>(crc32(m_crc, bytes, static_cast<uInt>(length)));
        m_stream->z.next_in = const_cast<Bytef*>(bytes); // zlib does not write there
        m_stream->z.avail_in = static_cast<uInt>(length);
        if (!run(Z_NO_FLUSH)) return false;
        m_taken += length;
        piece.remove_prefix(length);
    }
    return true;
}

bool Deflater::finish() {
    m_stream->z.avail_in = 0;
    return run(Z_FINISH);
}

} // namespace KP_SDAI
