#pragma once

#include "part21/SystemFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace KP_SDAI {

/// Bytes that are read from front to back.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    /// Reads up to `size` bytes; fewer only at the end or on an error, and none after that. What was read is known to
    /// be whole when a call has given fewer bytes and there is no error: checksums stand behind what they protect.
    virtual std::size_t read(char* to, std::size_t size) = 0;
    /// Back to the first byte, to read all anew: why reading failed before is forgotten. False, with error(), where
    /// that fails.
    virtual bool rewind() = 0;
    /// Why reading failed, without the file's name; empty where it did not.
    virtual std::string error() const { return {}; }
    /// Bytes in all, as far as that is known beforehand: 0 for a pipe, an estimate for compressed ones.
    virtual std::uint64_t size() const = 0;
    /// True where the file holds something else besides these bytes, which is lost when they replace it.
    virtual bool isOneOfSeveral() const { return false; }
};

/// A copy of bytes in memory.
class MemorySource : public ByteSource {
public:
    MemorySource(const void* data, std::size_t size) : m_data(static_cast<const char*>(data), size) {}
    std::size_t read(char* to, std::size_t size) override;
    bool rewind() override {
        m_next = 0;
        return true;
    }
    std::uint64_t size() const override { return m_data.size(); }

private:
    std::string m_data;
    std::size_t m_next = 0;
};

class FileSource : public ByteSource {
public:
    /// Null with a text in `error` where the file cannot be opened.
    static std::unique_ptr<FileSource> open(const std::string& path, std::string& error);
    std::size_t read(char* to, std::size_t size) override;
    bool rewind() override;
    std::string error() const override { return m_error; }
    std::uint64_t size() const override { return m_size; }

private:
    SystemFile m_file;
    std::uint64_t m_size = 0;
    std::string m_error;
};

/// A source that can be read only once, such as a pipe, kept in memory as it is read so that it can be read again.
class SpooledSource : public ByteSource {
public:
    explicit SpooledSource(std::unique_ptr<ByteSource> source) : m_source(std::move(source)) {}
    std::size_t read(char* to, std::size_t size) override;
    bool rewind() override;
    std::string error() const override { return m_source->error(); }
    std::uint64_t size() const override { return m_source->size(); }

private:
    std::unique_ptr<ByteSource> m_source;
    std::string m_kept;
    std::size_t m_next = 0;
};

} // namespace KP_SDAI
