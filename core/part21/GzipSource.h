#pragma once

#include "part21/ByteSource.h"

#include <memory>
#include <string>
#include <string_view>

namespace KP_SDAI {

/// What a gzip source (RFC 1952) holds: the contents of its members, one after the other. Checksum and length of every
/// member are checked. Zeros behind the last member are padding; anything else is an error.
class GzipSource : public ByteSource {
public:
    explicit GzipSource(std::unique_ptr<ByteSource> compressed);
    ~GzipSource() override;
    /// Whether bytes with this start are gzip data.
    static bool isGzip(std::string_view start) { return start.starts_with("\x1F\x8B"); }

    std::size_t read(char* to, std::size_t size) override;
    bool rewind() override;
    std::string error() const override { return m_error; }
    std::uint64_t size() const override;
    std::uint64_t place() const override { return m_compressed->place(); }
    std::uint64_t fileSize() const override { return m_compressed->fileSize(); }
    FileStamp stamp() const override { return m_compressed->stamp(); }
    bool hasChanged() const override { return m_compressed->hasChanged(); }

private:
    struct Stream;

    bool fill();
    bool beginMember();
    void inflateSome();

    std::unique_ptr<ByteSource> m_compressed;
    std::unique_ptr<Stream> m_stream;
    std::string m_error;
    bool m_isInMember = false;
    bool m_hadMember = false;
};

} // namespace KP_SDAI
