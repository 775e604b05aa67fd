#include "part21/FileStamp.h"

#include <sys/stat.h>

namespace KP_SDAI {

static FileStamp stampOf(const struct stat& status) {
    FileStamp stamp;
    if (!S_ISREG(status.st_mode)) return stamp;
    stamp.device = status.st_dev;
    stamp.number = status.st_ino;
    stamp.size = static_cast<std::uint64_t>(status.st_size);
    stamp.seconds = status.st_mtim.tv_sec;
    stamp.nanoseconds = status.st_mtim.tv_nsec;
    return stamp;
}

FileStamp::FileStamp(const std::string& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) == 0) *this = stampOf(status);
}

FileStamp::FileStamp(std::FILE* file) : FileStamp(::fileno(file)) {}

FileStamp::FileStamp(int handle) {
    struct stat status = {};
    if (::fstat(handle, &status) == 0) *this = stampOf(status);
}

} // namespace KP_SDAI
