#pragma once

#include "part21/Compressor.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace KP_SDAI {

/// The method of both containers (RFC 1951), with their checksum.
class Deflater {
public:
    enum class Container { none, gzip };
    Deflater(Container container, Compressor::Sink sink);
    ~Deflater();

    bool write(std::string_view piece);
    bool finish();

    std::uint64_t taken() const { return m_taken; } ///< bytes before
    std::uint64_t given() const { return m_given; } ///< bytes after
    std::uint32_t crc() const { return m_crc; }     ///< of the bytes before; kept without container only

private:
    struct Stream;

    bool run(int flush);

    Container m_container;
    Compressor::Sink m_sink;
    std::unique_ptr<Stream> m_stream;
    std::uint64_t m_taken = 0;
    std::uint64_t m_given = 0;
    std::uint32_t m_crc = 0;
};

} // namespace KP_SDAI
