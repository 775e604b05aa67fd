// Loaded before the system's library (LD_PRELOAD), lets one of a process's calls go wrong. What stands in its way is
// told by the environment:
//   KP_FAULT_CALL   of writing: open, write, fsync, close, rename, fchmod; "any" counts them all. Of reading: open,
//   read,
//                   lseek, stat, fstat; and of who uses the system's streams fread, fseeko
//   KP_FAULT_AT     which of these calls, from 1
//   KP_FAULT_ERRNO  what it fails with; 0: write takes, read gives half of the bytes
//   KP_FAULT_KILL   set: the process is killed instead, by write after half of the bytes
//   KP_FAULT_FIRED  a file that is made when it happens
// Only calls from other libraries are seen, not those within the system's own, such as from its streams.

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#define KP_INTERPOSED extern "C" __attribute__((visibility("default")))

namespace {

int numberOf(const char* variable) {
    const char* const text = std::getenv(variable);
    return text ? std::atoi(text) : 0;
}

enum class Kind { writing, reading };

/// Whether this call is the one.
bool isHit(const char* call, Kind kind = Kind::writing) {
    static int calls = 0;
    const char* const wanted = std::getenv("KP_FAULT_CALL");
    const bool isAny = wanted && kind == Kind::writing && std::strcmp(wanted, "any") == 0;
    if (!wanted || (std::strcmp(wanted, call) != 0 && !isAny)) return false;
    if (++calls != numberOf("KP_FAULT_AT")) return false;
    if (const char* const mark = std::getenv("KP_FAULT_FIRED"))
        syscall(SYS_close, syscall(SYS_openat, AT_FDCWD, mark, O_WRONLY | O_CREAT, 0600));
    return true;
}

int fault() {
    if (std::getenv("KP_FAULT_KILL")) kill(getpid(), SIGKILL);
    errno = numberOf("KP_FAULT_ERRNO");
    return -1;
}

template <class Function>
Function* next(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

KP_INTERPOSED int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = flags & O_CREAT ? static_cast<mode_t>(va_arg(arguments, int)) : 0;
    va_end(arguments);
    return isHit("open") ? fault() : next(&open, "open")(path, flags, mode);
}

KP_INTERPOSED ssize_t write(int file, const void* bytes, size_t size) {
    if (!isHit("write")) return next(&write, "write")(file, bytes, size);
    const bool isKilled = std::getenv("KP_FAULT_KILL") != nullptr;
    if (!isKilled && numberOf("KP_FAULT_ERRNO") != 0) return fault();
    const ssize_t written = next(&write, "write")(file, bytes, size / 2);
    return isKilled ? fault() : written;
}

KP_INTERPOSED int fsync(int file) {
    return isHit("fsync") ? fault() : next(&fsync, "fsync")(file);
}

KP_INTERPOSED int close(int file) {
    if (!isHit("close")) return next(&close, "close")(file);
    const int result = fault();
    const int reason = errno;
    next(&close, "close")(file);
    errno = reason;
    return result;
}

KP_INTERPOSED int rename(const char* from, const char* to) noexcept {
    return isHit("rename") ? fault() : next(&rename, "rename")(from, to);
}

KP_INTERPOSED int fchmod(int file, mode_t mode) noexcept {
    return isHit("fchmod") ? fault() : next(&fchmod, "fchmod")(file, mode);
}

// -- reading

KP_INTERPOSED ssize_t read(int file, void* bytes, size_t size) {
    if (!isHit("read", Kind::reading)) return next(&read, "read")(file, bytes, size);
    if (numberOf("KP_FAULT_ERRNO") != 0) return fault();
    return next(&read, "read")(file, bytes, size > 1 ? size / 2 : size);
}

KP_INTERPOSED off_t lseek(int file, off_t offset, int from) noexcept {
    return isHit("lseek", Kind::reading) ? fault() : next(&lseek, "lseek")(file, offset, from);
}

KP_INTERPOSED int stat(const char* path, struct stat* result) noexcept {
    return isHit("stat", Kind::reading) ? fault() : next(&stat, "stat")(path, result);
}

KP_INTERPOSED int fstat(int file, struct stat* result) noexcept {
    return isHit("fstat", Kind::reading) ? fault() : next(&fstat, "fstat")(file, result);
}

KP_INTERPOSED size_t fread(void* to, size_t size, size_t count, FILE* file) {
    if (!isHit("fread", Kind::reading)) return next(&fread, "fread")(to, size, count, file);
    fault();
#ifdef _IO_ERR_SEEN
    file->_flags |= _IO_ERR_SEEN; // what ferror() tells
#endif
    return 0;
}

KP_INTERPOSED int fseeko(FILE* file, off_t offset, int from) {
    return isHit("fseeko", Kind::reading) ? fault() : next(&fseeko, "fseeko")(file, offset, from);
}
