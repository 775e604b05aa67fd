#include "part21/OpenSource.h"

#include "part21/GzipSource.h"
#include "part21/ProgressMeter.h"
#include "part21/ZipSource.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace KP_SDAI {

namespace {

std::string contentOf(ByteSource& source) {
    constexpr std::size_t kPiece = 256 * 1024;
    std::string content;
    for (std::size_t got = kPiece; got == kPiece;) {
        const std::size_t before = content.size();
        content.resize(before + kPiece);
        got = source.read(content.data() + before, kPiece);
        content.resize(before + got);
    }
    return content;
}

/// The source of what `source` holds. A zip archive is read from its end, by `path` where it stands in a file.
std::unique_ptr<ByteSource> decompressed(std::unique_ptr<ByteSource> source, const std::string& path,
                                         ProgressMeter& progress, std::string& error) {
    char start[4];
    const std::string_view head(start, source->read(start, sizeof start));
    if (!source->error().empty() || !source->rewind()) {
        error = source->error();
        return nullptr;
    }
    if (GzipSource::isGzip(head)) return std::make_unique<GzipSource>(std::move(source));
    if (!ZipSource::isZip(head)) return source;
    if (!path.empty()) return ZipSource::open(path, error);
    WatchedSource archive(std::move(source), progress);
    std::string content = contentOf(archive);
    error = archive.error();
    return error.empty() ? ZipSource::openContent(std::move(content), error) : nullptr;
}

/// The same, watched; null, with "name: reason" in `error`, where that fails.
std::unique_ptr<ByteSource> watched(std::unique_ptr<ByteSource> source, const std::string& name,
                                    const std::string& path, ProgressMeter& progress, std::string& error) {
    source = decompressed(std::move(source), path, progress, error);
    if (source) return std::make_unique<WatchedSource>(std::move(source), progress);
    error.insert(0, name + ": ");
    return nullptr;
}

} // namespace

std::unique_ptr<ByteSource> openSource(const std::string& path, ProgressMeter& progress, std::string& error) {
    std::unique_ptr<ByteSource> source = FileSource::open(path, progress, error);
    if (!source) return nullptr;
    std::error_code code;
    const bool isRegular = std::filesystem::is_regular_file(path, code);
    if (!isRegular) source = std::make_unique<SpooledSource>(std::move(source));
    return watched(std::move(source), path, isRegular ? path : std::string(), progress, error);
}

std::unique_ptr<ByteSource> openSource(const void* data, std::size_t size, const std::string& name,
                                       ProgressMeter& progress, std::string& error) {
    return watched(std::make_unique<MemorySource>(data, size), name, {}, progress, error);
}

} // namespace KP_SDAI
