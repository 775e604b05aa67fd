#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

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

} // namespace KP_SDAI
