#include "part21/SystemFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace KP_SDAI {

namespace {

constexpr std::size_t kMost = std::size_t{1} << 30; // systems limit what one call takes

std::error_code reasonUnless(bool done) {
    return done ? std::error_code() : std::error_code(errno, std::generic_category());
}

/// What a call gives that is made again whenever a signal interrupts it.
template <class Call>
auto retried(ProgressMeter& progress, Call call) {
    for (;;) {
        const auto result = call();
        if (result >= 0 || errno != EINTR) return result;
        progress.interrupted();
    }
}

/// Some file systems and whatever is no file on a disk have nothing to wait for.
bool synced(int handle, ProgressMeter& progress) {
    return retried(progress, [=] { return ::fsync(handle); }) == 0 || errno == EINVAL || errno == ENOSYS ||
           errno == ENOTSUP;
}

} // namespace

SystemFile::~SystemFile() {
    if (isOpen()) ::close(m_handle);
}

std::error_code SystemFile::create(const std::string& path, bool isPrivate) {
    m_handle = retried(m_progress, [&] {
        return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, isPrivate ? 0600 : 0666);
    });
    return reasonUnless(isOpen());
}

std::error_code SystemFile::open(const std::string& path) {
    m_handle = retried(m_progress, [&] {
        return isStandardOutput(path) ? ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)
                                      : ::open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    });
    return reasonUnless(isOpen());
}

std::error_code SystemFile::openToRead(const std::string& path) {
    m_handle = retried(m_progress, [&] { return ::open(path.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC); });
    return reasonUnless(isOpen());
}

template <class Read>
std::error_code SystemFile::readAll(char* to, std::size_t size, std::size_t& got, Read read) {
    got = 0;
    while (got < size) {
        const ssize_t more = retried(m_progress, [&] { return read(to + got, std::min(size - got, kMost)); });
        if (more < 0) return reasonUnless(false);
        if (more == 0) break;
        got += static_cast<std::size_t>(more);
    }
    return {};
}

std::error_code SystemFile::read(char* to, std::size_t size, std::size_t& got) {
    return readAll(to, size, got, [this](char* piece, std::size_t most) { return ::read(m_handle, piece, most); });
}

std::error_code SystemFile::readAt(std::uint64_t place, char* to, std::size_t size, std::size_t& got) {
    return readAll(to, size, got, [&](char* piece, std::size_t most) {
        return ::pread(m_handle, piece, most, static_cast<off_t>(place + static_cast<std::uint64_t>(piece - to)));
    });
}

std::error_code SystemFile::rewind() {
    return reasonUnless(::lseek(m_handle, 0, SEEK_SET) == 0);
}

std::error_code SystemFile::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written =
            retried(m_progress, [&] { return ::write(m_handle, bytes.data(), std::min(bytes.size(), kMost)); });
        if (written < 0) return reasonUnless(false);
        if (written == 0) return std::make_error_code(std::errc::io_error);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

std::error_code SystemFile::takePermissions(const std::string& other) {
    struct stat from = {};
    struct stat own = {};
    if (::stat(other.c_str(), &from) != 0 || ::fstat(m_handle, &own) != 0) return reasonUnless(false);
    mode_t mode = from.st_mode & 07777;
    const bool isOwnersAlike = from.st_uid == own.st_uid && from.st_gid == own.st_gid;
    if (!isOwnersAlike && ::fchown(m_handle, from.st_uid, from.st_gid) != 0) {
        // Who may not give files away may still choose among own groups. Else others must not gain what a group had.
        mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
        if (from.st_gid != own.st_gid && ::fchown(m_handle, static_cast<uid_t>(-1), from.st_gid) != 0)
            mode &= ~static_cast<mode_t>(S_IRWXG) | ((mode & S_IRWXO) << 3);
    }
    return reasonUnless((own.st_mode & 07777) == mode || ::fchmod(m_handle, mode) == 0);
}

std::error_code SystemFile::sync() {
    return reasonUnless(synced(m_handle, m_progress));
}

std::error_code SystemFile::close() {
    // Interrupted or not, the handle is gone; nothing is lost, for what was written is on the disk or was sent.
    return reasonUnless(::close(std::exchange(m_handle, -1)) == 0 || errno == EINTR);
}

std::error_code SystemFile::rename(const std::string& from, const std::string& to) {
    return reasonUnless(std::rename(from.c_str(), to.c_str()) == 0);
}

void SystemFile::syncFolder(const std::string& path) {
    ProgressMeter nobody; // it is too late to stop
    const int handle = retried(nobody, [&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC); });
    if (handle < 0) return;
    synced(handle, nobody);
    ::close(handle);
}

} // namespace KP_SDAI
