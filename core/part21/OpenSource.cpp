#include "part21/OpenSource.h"

#include "part21/GzipSource.h"
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
                                         std::string& error) {
    char start[4];
    const std::string_view head(start, source->read(start, sizeof start));
    if (!source->error().empty() || !source->rewind()) {
        error = source->error();
        return nullptr;
    }
    if (GzipSource::isGzip(head)) return std::make_unique<GzipSource>(std::move(source));
    if (!ZipSource::isZip(head)) return source;
    if (!path.empty()) return ZipSource::open(path, error);
    std::string content = contentOf(*source);
    error = source->error();
    return error.empty() ? ZipSource::openContent(std::move(content), error) : nullptr;
}

} // namespace

std::unique_ptr<ByteSource> openSource(const std::string& path, std::string& error) {
    std::unique_ptr<ByteSource> source = FileSource::open(path, error);
    if (!source) return nullptr;
    std::error_code code;
    const bool isRegular = std::filesystem::is_regular_file(path, code);
    if (!isRegular) source = std::make_unique<SpooledSource>(std::move(source));
    source = decompressed(std::move(source), isRegular ? path : std::string(), error);
    if (!source) error.insert(0, path + ": ");
    return source;
}

std::unique_ptr<ByteSource> openSource(const void* data, std::size_t size, const std::string& name,
                                       std::string& error) {
    std::unique_ptr<ByteSource> source = decompressed(std::make_unique<MemorySource>(data, size), {}, error);
    if (!source) error.insert(0, name + ": ");
    return source;
}

} // namespace KP_SDAI
