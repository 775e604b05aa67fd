#include "part21/ByteSource.h"

#include "part21/ProgressMeter.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace KP_SDAI {

std::size_t MemorySource::read(char* to, std::size_t size) {
    if (size > m_data.size() - m_next) size = m_data.size() - m_next;
    if (size) std::memcpy(to, m_data.data() + m_next, size);
    m_next += size;
    return size;
}

std::size_t MemorySource::readAt(std::uint64_t place, char* to, std::size_t size, std::string&) {
    if (place >= m_data.size()) return 0;
    size = std::min<std::size_t>(size, m_data.size() - static_cast<std::size_t>(place));
    std::memcpy(to, m_data.data() + place, size);
    return size;
}

std::size_t WatchedSource::read(char* to, std::size_t size) {
    constexpr std::size_t kPiece = 256 * 1024;
    std::size_t got = 0;
    while (got < size) {
        const std::size_t piece = std::min(size - got, kPiece);
        const std::size_t more = m_source->read(to + got, piece);
        got += more;
        m_progress.readTo(m_source->place());
        if (more < piece) break;
    }
    return got;
}

std::unique_ptr<FileSource> FileSource::open(const std::string& path, ProgressMeter& progress, std::string& error) {
    std::error_code code;
    if (std::filesystem::is_directory(path, code)) {
        error = path + ": is a folder";
        return nullptr;
    }
    auto source = std::make_unique<FileSource>(progress);
    if (const std::error_code reason = source->m_file.openToRead(path)) {
        error = path + ": " + reason.message();
        return nullptr;
    }
    source->m_stamp = source->m_file.stamp();
    return source;
}

std::size_t FileSource::read(char* to, std::size_t size) {
    if (!m_error.empty()) return 0;
    std::size_t got = 0;
    if (const std::error_code reason = m_file.read(to, size, got)) m_error = reason.message();
    m_place += got;
    return got;
}

std::size_t FileSource::readAt(std::uint64_t place, char* to, std::size_t size, std::string& reason) {
    std::size_t got = 0;
    if (const std::error_code code = m_file.readAt(place, to, size, got)) reason = code.message();
    return got;
}

bool FileSource::rewind() {
    const std::error_code reason = m_file.rewind();
    m_error = reason ? reason.message() : std::string();
    m_place = 0;
    return m_error.empty();
}

std::size_t SpooledSource::read(char* to, std::size_t size) {
    std::size_t got = std::min(size, m_kept.size() - m_next);
    std::memcpy(to, m_kept.data() + m_next, got);
    if (got < size) {
        const std::size_t more = m_source->read(to + got, size - got);
        m_kept.append(to + got, more);
        m_isWhole = got + more < size;
        got += more;
    }
    m_next += got;
    return got;
}

bool SpooledSource::rewind() {
    m_next = 0;
    return m_source->error().empty();
}

} // namespace KP_SDAI
