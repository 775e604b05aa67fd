#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace KP_SDAI {

/// Bytes that are read from front to back.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    /// Reads up to `size` bytes; fewer only at the end or on an error.
    virtual std::size_t read(char* to, std::size_t size) = 0;
    /// Back to the first byte.
    virtual bool rewind() = 0;
    /// Why reading failed; empty where it did not.
    virtual std::string error() const { return {}; }
    /// Bytes in all, as far as that is known beforehand.
    virtual std::uint64_t size() const = 0;
};

class MemorySource : public ByteSource {
public:
    MemorySource(const void* data, std::size_t size) : m_data(static_cast<const char*>(data)), m_size(size) {}
    std::size_t read(char* to, std::size_t size) override;
    bool rewind() override {
        m_next = 0;
        return true;
    }
    std::uint64_t size() const override { return m_size; }

private:
    const char* m_data;
    std::size_t m_size;
    std::size_t m_next = 0;
};

class FileSource : public ByteSource {
public:
    /// Null with a text in `error` where the file cannot be opened.
    static std::unique_ptr<FileSource> open(const std::string& path, std::string& error);
    ~FileSource() override;
    std::size_t read(char* to, std::size_t size) override;
    bool rewind() override;
    std::string error() const override { return m_error; }
    std::uint64_t size() const override { return m_size; }

private:
    std::FILE* m_file = nullptr;
    std::uint64_t m_size = 0;
    std::string m_error;
};

/// The part of a source that is in memory: a buffer that moves along, with zeros behind its end.
class Window {
public:
    explicit Window(ByteSource& source) : m_source(source) {}

    const char* end() const { return m_buffer.data() + m_length; }
    const char* begin() const { return m_buffer.data(); }
    /// Offset in the source of a place in the window.
    std::uint64_t offsetOf(const char* place) const {
        return m_offset + static_cast<std::uint64_t>(place - m_buffer.data());
    }
    /// Drops what stands before `place` and reads on behind the end; `place` moves along, all other places are gone.
    /// False where the source has ended.
    bool refill(const char*& place);
    /// True once a refill has found the end of the source: all that is left stands in the window.
    bool hasEnded() const { return m_ended; }
    /// So many bytes behind any place, at least, can be had by a refill.
    static constexpr std::ptrdiff_t kReach = 256 * 1024;

private:
    static constexpr std::size_t kSize = 2 * kReach;
    static constexpr std::size_t kZeros = 8;
    ByteSource& m_source;
    std::vector<char> m_buffer = std::vector<char>(kZeros);
    std::size_t m_length = 0;
    std::uint64_t m_offset = 0;
    bool m_ended = false;
};

} // namespace KP_SDAI
