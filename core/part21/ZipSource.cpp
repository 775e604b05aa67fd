#include "part21/ZipSource.h"

#include <unzip.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

namespace KP_SDAI {

namespace {

constexpr const char* kNoFile = "zip archive has no file in it";

std::string describe(int status, int failure) {
    switch (status) {
    case UNZ_CRCERROR: return "zip archive is damaged: checksum does not match";
    case UNZ_ERRNO: return std::string("zip archive cannot be read: ") + std::strerror(failure ? failure : EIO);
    case UNZ_INTERNALERROR: return "zip archive cannot be read: out of memory";
    default: return "zip archive is damaged";
    }
}

bool endsInIfc(std::string_view name) {
    constexpr std::string_view kEnding = ".ifc";
    return name.size() >= kEnding.size() &&
           std::equal(kEnding.begin(), kEnding.end(), name.end() - kEnding.size(),
                      [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b - 'A' + 'a' : b); });
}

/// Names in messages: some of them, on one line.
std::string listed(const std::vector<std::string>& names) {
    constexpr std::size_t kMost = 10;
    std::string text;
    for (std::size_t i = 0; i < names.size() && i < kMost; ++i) text += (i ? ", '" : "'") + names[i] + '\'';
    if (names.size() > kMost) text += " and " + std::to_string(names.size() - kMost) + " more";
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
    return text;
}

/// Bytes in memory, as the archive's reader wants a file.
struct Content {
    std::string bytes;
    std::uint64_t place = 0;

    static uLong read(void*, void* stream, void* to, uLong size) {
        auto& content = *static_cast<Content*>(stream);
        const std::size_t got = content.place < content.bytes.size()
                                    ? std::min<std::size_t>(size, content.bytes.size() - content.place)
                                    : 0;
        std::memcpy(to, content.bytes.data() + (got ? content.place : 0), got);
        content.place += got;
        return static_cast<uLong>(got);
    }
    static ZPOS64_T tell(void*, void* stream) { return static_cast<Content*>(stream)->place; }
    static long seek(void*, void* stream, ZPOS64_T offset, int origin) {
        auto& content = *static_cast<Content*>(stream);
        if (origin == ZLIB_FILEFUNC_SEEK_CUR) offset += content.place;
        if (origin == ZLIB_FILEFUNC_SEEK_END) offset += content.bytes.size();
        content.place = offset;
        return 0;
    }
    static int close(void*, void*) { return 0; }
    static int error(void*, void*) { return 0; }
};

} // namespace

struct ZipSource::Archive {
    Archive() = default;
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;
    ~Archive() {
        if (isMemberOpen) unzCloseCurrentFile(zip);
        if (zip) unzClose(zip);
    }
    /// Takes over `from`, which is closed with the archive.
    bool open(zlib_filefunc64_def functions, void* from, std::string& error);
    /// What became of an operation. What the library takes for damage may be what the system did not give.
    std::string textOf(int status) const { return describe(failure ? UNZ_ERRNO : status, failure); }
    bool choose(std::string& error);
    int closeMember() { return std::exchange(isMemberOpen, false) ? unzCloseCurrentFile(zip) : UNZ_OK; }

    Content content;           ///< of an archive in memory
    std::FILE* file = nullptr; ///< of one in a file
    void* stream = nullptr;    ///< one of both
    int failure = 0;           ///< the system's, at the last read that failed
    FileStamp stamp;
    unzFile zip = nullptr;
    unz64_file_pos member = {};
    bool isMemberOpen = false;
    std::uint64_t size = 0;   ///< as the directory promises
    std::uint64_t packed = 0; ///< the same of what it takes in the archive
    std::uint64_t place = 0;
    bool hasOthers = false;
};

bool ZipSource::Archive::open(zlib_filefunc64_def functions, void* from, std::string& error) {
    stream = from; // has been opened already
    functions.zopen64_file = [](void* archive, const void*, int) { return static_cast<Archive*>(archive)->stream; };
    functions.opaque = this;
    // The directory of an archive without members is not found by the library.
    char start[4] = {};
    functions.zread_file(this, stream, start, sizeof start);
    functions.zseek64_file(this, stream, 0, ZLIB_FILEFUNC_SEEK_SET);
    if (std::memcmp(start, "PK\5\6", sizeof start) == 0) {
        functions.zclose_file(this, stream);
        error = kNoFile;
        return false;
    }
    errno = 0;
    zip = unzOpen2_64(nullptr, &functions); // closes the stream where it fails
    if (zip) return true;
    if (!failure && errno == ENOMEM) failure = ENOMEM;
    error = failure ? textOf(UNZ_ERRNO) : "zip archive is damaged or cut off: its directory was not found";
    return false;
}

/// Finds the member to read.
bool ZipSource::Archive::choose(std::string& error) {
    constexpr uLong kEncrypted = 1; // of a member's flags
    constexpr uLong kUtf8 = 1 << 11;
    struct Member {
        unz64_file_pos place;
        unz_file_info64 facts;
    };
    std::vector<std::string> names;
    std::vector<std::string> ifcNames;
    Member only = {};
    Member onlyIfc = {};
    int status = unzGoToFirstFile(zip);
    for (; status == UNZ_OK; status = unzGoToNextFile(zip)) {
        Member here = {};
        status = unzGetCurrentFileInfo64(zip, &here.facts, nullptr, 0, nullptr, 0, nullptr, 0);
        if (status != UNZ_OK) break;
        std::string name(here.facts.size_filename, 0);
        status = unzGetCurrentFileInfo64(zip, nullptr, name.data(), here.facts.size_filename, nullptr, 0, nullptr, 0);
        if (status != UNZ_OK || (status = unzGetFilePos64(zip, &here.place)) != UNZ_OK) break;
        // Folders, and what one system puts beside every file to hold its attributes.
        if (name.ends_with('/') || name.starts_with("__MACOSX/")) continue;
        if (!(here.facts.flag & kUtf8)) // who knows in which code page
            std::replace_if(
                name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x7F; }, '?');
        names.push_back(name);
        only = here;
        if (endsInIfc(name)) {
            ifcNames.push_back(name);
            onlyIfc = here;
        }
    }
    if (status != UNZ_END_OF_LIST_OF_FILE) {
        error = textOf(status);
        return false;
    }
    if (ifcNames.size() != 1 && (!ifcNames.empty() || names.size() != 1)) {
        error = names.empty() ? kNoFile
                : ifcNames.empty()
                    ? "zip archive has no .ifc file, but several others: " + listed(names)
                    : "zip archive has several .ifc files, of which one must be chosen: " + listed(ifcNames);
        return false;
    }
    hasOthers = names.size() > 1;
    const Member& chosen = ifcNames.empty() ? only : onlyIfc;
    const std::string what = "zip archive: " + listed({ifcNames.empty() ? names.front() : ifcNames.front()});
    if (chosen.facts.flag & kEncrypted) {
        error = what + " is encrypted";
        return false;
    }
    if (chosen.facts.compression_method != 0 && chosen.facts.compression_method != Z_DEFLATED) {
        error = what + " is compressed by a method that is not supported, number " +
                std::to_string(chosen.facts.compression_method);
        return false;
    }
    member = chosen.place;
    size = chosen.facts.uncompressed_size;
    packed = chosen.facts.compressed_size;
    return true;
}

ZipSource::ZipSource(std::unique_ptr<Archive> archive) : m_archive(std::move(archive)) {}
ZipSource::~ZipSource() = default;

std::unique_ptr<ZipSource> ZipSource::make(std::unique_ptr<Archive> archive, std::string& error) {
    if (!archive->choose(error)) return nullptr;
    std::unique_ptr<ZipSource> source(new ZipSource(std::move(archive)));
    if (source->openMember()) return source;
    error = source->m_error;
    return nullptr;
}

std::unique_ptr<ZipSource> ZipSource::open(const std::string& path, std::string& error) {
    auto archive = std::make_unique<Archive>();
    archive->file = std::fopen(path.c_str(), "rb");
    if (!archive->file) {
        error = std::strerror(errno);
        return nullptr;
    }
    archive->stamp = FileStamp(archive->file);
    zlib_filefunc64_def functions;
    fill_fopen64_filefunc(&functions);
    functions.zread_file = [](void* reader, void* stream, void* to, uLong size) {
        auto* const file = static_cast<std::FILE*>(stream);
        errno = 0;
        const std::size_t got = std::fread(to, 1, size, file);
        if (got < size && !std::feof(file)) static_cast<Archive*>(reader)->failure = errno ? errno : EIO;
        return static_cast<uLong>(got);
    };
    return archive->open(functions, archive->file, error) ? make(std::move(archive), error) : nullptr;
}

std::unique_ptr<ZipSource> ZipSource::openContent(std::string content, std::string& error) {
    auto archive = std::make_unique<Archive>();
    archive->content.bytes = std::move(content);
    const zlib_filefunc64_def functions{nullptr,       Content::read,  nullptr,        Content::tell,
                                        Content::seek, Content::close, Content::error, nullptr};
    return archive->open(functions, &archive->content, error) ? make(std::move(archive), error) : nullptr;
}

bool ZipSource::openMember() {
    Archive& archive = *m_archive;
    archive.closeMember();
    archive.place = 0;
    int status = unzGoToFilePos64(archive.zip, &archive.member);
    if (status == UNZ_OK) status = unzOpenCurrentFile(archive.zip);
    archive.isMemberOpen = status == UNZ_OK;
    if (status != UNZ_OK) m_error = archive.textOf(status);
    return archive.isMemberOpen;
}

std::size_t ZipSource::read(char* to, std::size_t size) {
    constexpr std::size_t kMost = std::size_t{1} << 30; // at a time
    Archive& archive = *m_archive;
    std::size_t got = 0;
    while (got < size && archive.isMemberOpen && m_error.empty()) {
        const int more = unzReadCurrentFile(archive.zip, to + got, static_cast<unsigned>(std::min(size - got, kMost)));
        if (more < 0) m_error = archive.textOf(more);
        if (more <= 0) break;
        got += static_cast<std::size_t>(more);
        archive.place += static_cast<std::uint64_t>(more);
    }
    if (got == size || !m_error.empty() || !archive.isMemberOpen) return got;
    if (archive.place < archive.size)
        m_error = "zip archive is damaged: a file in it is shorter than its directory says";
    else if (const int status = archive.closeMember(); status != UNZ_OK) // checks the whole
        m_error = archive.textOf(status);
    return got;
}

bool ZipSource::rewind() {
    m_error.clear();
    m_archive->failure = 0;
    return openMember();
}

bool ZipSource::isOneOfSeveral() const {
    return m_archive->hasOthers;
}

std::uint64_t ZipSource::size() const {
    return m_archive->size;
}

std::uint64_t ZipSource::place() const {
    const Archive& archive = *m_archive;
    const double part = archive.size ? static_cast<double>(archive.place) / static_cast<double>(archive.size) : 0;
    return static_cast<std::uint64_t>(static_cast<double>(archive.packed) * part);
}

std::uint64_t ZipSource::fileSize() const {
    return m_archive->packed;
}

FileStamp ZipSource::stamp() const {
    return m_archive->stamp;
}

bool ZipSource::hasChanged() const {
    return m_archive->file && FileStamp(m_archive->file).tellsApart(m_archive->stamp);
}

} // namespace KP_SDAI
