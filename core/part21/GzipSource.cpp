#include "part21/GzipSource.h"

#include <zlib.h>

#include <algorithm>
#include <new>

namespace KP_SDAI {

struct GzipSource::Stream {
    static constexpr std::size_t kInput = 256 * 1024;

    Stream() : input(new Bytef[kInput]) {
        constexpr int kGzip = 16; // in zlib's terms: no other container
        if (inflateInit2(&z, MAX_WBITS + kGzip) != Z_OK) throw std::bad_alloc();
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() { inflateEnd(&z); }

    z_stream z{};
    std::unique_ptr<Bytef[]> input;
};

GzipSource::GzipSource(std::unique_ptr<ByteSource> compressed)
    : m_compressed(std::move(compressed)), m_stream(std::make_unique<Stream>()) {}

GzipSource::~GzipSource() = default;

/// Sees to it that there is input; false at its end.
bool GzipSource::fill() {
    z_stream& z = m_stream->z;
    if (z.avail_in) return true;
    z.next_in = m_stream->input.get();
    z.avail_in = static_cast<uInt>(m_compressed->read(reinterpret_cast<char*>(z.next_in), Stream::kInput));
    if (!z.avail_in) m_error = m_compressed->error();
    return z.avail_in != 0;
}

/// False where there is no further member.
bool GzipSource::beginMember() {
    z_stream& z = m_stream->z;
    while (fill()) {
        while (m_hadMember && z.avail_in && *z.next_in == 0) {
            ++z.next_in;
            --z.avail_in;
        }
        if (!z.avail_in) continue;
        inflateReset(&z);
        m_isInMember = true;
        return true;
    }
    return false;
}

void GzipSource::inflateSome() {
    z_stream& z = m_stream->z;
    if (!fill()) {
        if (m_error.empty()) m_error = "compressed data is cut off";
        return;
    }
    switch (inflate(&z, Z_NO_FLUSH)) {
    case Z_OK:
    case Z_BUF_ERROR: // needs more input
        break;
    case Z_STREAM_END:
        m_isInMember = false;
        m_hadMember = true;
        break;
    case Z_MEM_ERROR: throw std::bad_alloc();
    default:
        m_error = "compressed data is damaged";
        if (z.msg) m_error += std::string(": ") + z.msg;
    }
}

std::size_t GzipSource::read(char* to, std::size_t size) {
    constexpr std::size_t kMost = std::size_t{1} << 30; // zlib counts in 32 bits
    z_stream& z = m_stream->z;
    std::size_t got = 0;
    while (got < size && m_error.empty() && (m_isInMember || beginMember())) {
        const std::size_t room = std::min(size - got, kMost);
        z.next_out = reinterpret_cast<Bytef*>(to + got);
        z.avail_out = static_cast<uInt>(room);
        inflateSome();
        got += room - z.avail_out;
    }
    return got;
}

bool GzipSource::rewind() {
    m_error.clear();
    if (!m_compressed->rewind()) {
        m_error = m_compressed->error();
        return false;
    }
    m_stream->z.avail_in = 0;
    m_isInMember = m_hadMember = false;
    return true;
}

std::uint64_t GzipSource::size() const {
    return m_compressed->size() * 6; // what STEP files are mostly compressed to
}

} // namespace KP_SDAI
