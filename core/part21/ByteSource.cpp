#include "part21/ByteSource.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace KP_SDAI {

std::size_t MemorySource::read(char* to, std::size_t size) {
    if (size > m_size - m_next) size = m_size - m_next;
    if (size) std::memcpy(to, m_data + m_next, size);
    m_next += size;
    return size;
}

std::unique_ptr<FileSource> FileSource::open(const std::string& path, std::string& error) {
    std::error_code code;
    if (std::filesystem::is_directory(path, code)) {
        error = path + ": is a folder";
        return nullptr;
    }
    auto source = std::make_unique<FileSource>();
    source->m_file = std::fopen(path.c_str(), "rb");
    if (!source->m_file) {
        error = path + ": " + std::strerror(errno);
        return nullptr;
    }
    std::setvbuf(source->m_file, nullptr, _IONBF, 0); // the window is the buffer
    const std::uintmax_t size = std::filesystem::file_size(path, code);
    source->m_size = code ? 0 : size;
    return source;
}

FileSource::~FileSource() {
    if (m_file) std::fclose(m_file);
}

std::size_t FileSource::read(char* to, std::size_t size) {
    errno = 0;
    const std::size_t got = std::fread(to, 1, size, m_file);
    if (got < size && std::ferror(m_file)) m_error = std::strerror(errno);
    return got;
}

bool FileSource::rewind() {
    std::clearerr(m_file);
    return std::fseek(m_file, 0, SEEK_SET) == 0;
}

bool Window::refill(const char*& place) {
    if (m_ended) return false;
    const auto dropped = static_cast<std::size_t>(place - m_buffer.data());
    const std::size_t kept = m_length - dropped;
    if (kept) std::memmove(m_buffer.data(), place, kept);
    m_offset += dropped;
    // A record longer than half of the window makes it grow.
    if (m_buffer.size() < kSize || kept > m_buffer.size() / 2)
        m_buffer.resize((m_buffer.size() < kSize ? kSize : m_buffer.size() * 2) + kZeros);
    const std::size_t got = m_source.read(m_buffer.data() + kept, m_buffer.size() - kZeros - kept);
    m_length = kept + got;
    std::memset(m_buffer.data() + m_length, 0, kZeros);
    m_ended = got == 0;
    place = m_buffer.data();
    return got != 0;
}

} // namespace KP_SDAI
