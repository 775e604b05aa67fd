#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace KP_SDAI {

/// Compresses what is written to it. The same content gives the same bytes: no times are stored.
class Compressor {
public:
    /// Takes compressed bytes; false stops.
    using Sink = std::function<bool(std::string_view)>;

    virtual ~Compressor() = default;
    /// False where the sink stopped, as with finish().
    virtual bool write(std::string_view piece) = 0;
    /// Writes what is left; the last call.
    virtual bool finish() = 0;

    /// One gzip member (RFC 1952).
    static std::unique_ptr<Compressor> gzip(Sink sink);
    /// A zip archive with one member of this name, in UTF-8. Written from front to back, so that it may go to a pipe;
    /// of any size.
    static std::unique_ptr<Compressor> zip(std::string memberName, Sink sink);
};

} // namespace KP_SDAI
