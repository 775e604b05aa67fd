#pragma once

#include "part21/FileStamp.h"
#include "part21/SystemFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace KP_SDAI {

class ProgressMeter;

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
    /// True where readAt() can be used: the bytes lie open, in memory or in a file.
    virtual bool isDirect() const { return false; }
    /// Reads up to `size` bytes from a place on, whatever read() does; fewer only at the end, or on an error, of which
    /// `reason` then tells.
    virtual std::size_t readAt(std::uint64_t, char*, std::size_t, std::string& /*reason*/) { return 0; }
    /// Why reading failed, without the file's name; empty where it did not.
    virtual std::string error() const { return {}; }
    /// Bytes in all, as far as that is known beforehand: 0 for a pipe, an estimate for compressed ones.
    virtual std::uint64_t size() const = 0;
    /// True where the file holds something else besides these bytes, which is lost when they replace it.
    virtual bool isOneOfSeveral() const { return false; }

    // The file behind a source, which is compressed or not; without one it is as if the bytes were the file.

    /// Bytes of the file that have been read since its beginning.
    virtual std::uint64_t place() const = 0;
    /// Of the file; 0 where it is not known.
    virtual std::uint64_t fileSize() const = 0;
    /// Of the file when it was opened.
    virtual FileStamp stamp() const { return {}; }
    /// True where another program has written to the file since it was opened. What becomes of its name does not
    /// matter: the file is open.
    virtual bool hasChanged() const { return false; }
};

/// A source that tells how far it is read, and can be stopped there.
class WatchedSource : public ByteSource {
public:
    /// `progress` must outlive this.
    WatchedSource(std::unique_ptr<ByteSource> source, ProgressMeter& progress)
        : m_source(std::move(source)), m_progress(progress) {}
    std::size_t read(char* to, std::size_t size) override;
    bool rewind() override { return m_source->rewind(); }
    bool isDirect() const override { return m_source->isDirect(); }
    /// Tells nothing.
    std::size_t readAt(std::uint64_t place, char* to, std::size_t size, std::string& reason) override {
        return m_source->readAt(place, to, size, reason);
    }
    std::string error() const override { return m_source->error(); }
    std::uint64_t size() const override { return m_source->size(); }
    bool isOneOfSeveral() const override { return m_source->isOneOfSeveral(); }
    std::uint64_t place() const override { return m_source->place(); }
    std::uint64_t fileSize() const override { return m_source->fileSize(); }
    FileStamp stamp() const override { return m_source->stamp(); }
    bool hasChanged() const override { return m_source->hasChanged(); }

private:
    std::unique_ptr<ByteSource> m_source;
    ProgressMeter& m_progress;
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
    bool isDirect() const override { return true; }
    std::size_t readAt(std::uint64_t place, char* to, std::size_t size, std::string& reason) override;
    std::uint64_t size() const override { return m_data.size(); }
    std::uint64_t place() const override { return m_next; }
    std::uint64_t fileSize() const override { return m_data.size(); }

private:
    std::string m_data;
    std::size_t m_next = 0;
};

class FileSource : public ByteSource {
public:
    /// Null with a text in `error` where the file cannot be opened. `progress`, which must outlive this, is told when a
    /// signal interrupts waiting.
    static std::unique_ptr<FileSource> open(const std::string& path, ProgressMeter& progress, std::string& error);
    explicit FileSource(ProgressMeter& progress) : m_file(progress) {}
    std::size_t read(char* to, std::size_t size) override;
    bool rewind() override;
    /// False for what is no regular file, such as a pipe.
    bool isDirect() const override { return m_stamp != FileStamp(); }
    std::size_t readAt(std::uint64_t place, char* to, std::size_t size, std::string& reason) override;
    std::string error() const override { return m_error; }
    std::uint64_t size() const override { return m_stamp.size; }
    std::uint64_t place() const override { return m_place; }
    std::uint64_t fileSize() const override { return m_stamp.size; }
    FileStamp stamp() const override { return m_stamp; }
    bool hasChanged() const override { return m_file.stamp().tellsApart(m_stamp); }

private:
    SystemFile m_file;
    FileStamp m_stamp;
    std::uint64_t m_place = 0;
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
    std::uint64_t place() const override { return m_next; }
    std::uint64_t fileSize() const override { return m_isWhole ? m_kept.size() : m_source->fileSize(); }

private:
    std::unique_ptr<ByteSource> m_source;
    std::string m_kept;
    std::size_t m_next = 0;
    bool m_isWhole = false;
};

} // namespace KP_SDAI
