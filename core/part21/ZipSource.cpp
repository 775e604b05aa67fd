#include "part21/ZipSource.h"

#include <zip.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace KP_SDAI {

namespace {

std::string textOf(zip_error_t* error) {
    switch (zip_error_code_zip(error)) {
    case ZIP_ER_NOZIP: return "zip archive is damaged or cut off: its directory was not found";
    case ZIP_ER_CRC: return "zip archive is damaged: checksum does not match";
    default: return std::string("zip archive cannot be read: ") + zip_error_strerror(error);
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

} // namespace

struct ZipSource::Archive {
    Archive() = default;
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;
    ~Archive() {
        if (member) zip_fclose(member);
        if (zip) zip_discard(zip);
    }
    bool open(zip_source_t* bytes, zip_error_t& reason, std::string& error);
    bool choose(std::string& error);

    std::string content;       ///< of an archive in memory
    std::FILE* file = nullptr; ///< of one in a file; closed with the archive
    FileStamp stamp;
    zip_t* zip = nullptr;
    zip_file_t* member = nullptr;
    zip_uint64_t index = 0;
    std::uint64_t size = 0;   ///< as the directory promises
    std::uint64_t packed = 0; ///< the same of what it takes in the archive
    std::uint64_t place = 0;
    bool hasOthers = false;
};

/// Takes over what the archive consists of, null where that failed, and finishes `reason`.
bool ZipSource::Archive::open(zip_source_t* bytes, zip_error_t& reason, std::string& error) {
    if (bytes) zip = zip_open_from_source(bytes, ZIP_RDONLY, &reason);
    if (bytes && !zip) zip_source_free(bytes);
    if (!zip) error = textOf(&reason);
    zip_error_fini(&reason);
    return zip != nullptr;
}

/// Finds the member to read.
bool ZipSource::Archive::choose(std::string& error) {
    std::vector<std::string> names;
    std::vector<std::string> ifcNames;
    zip_uint64_t only = 0;
    zip_uint64_t onlyIfc = 0;
    const zip_int64_t count = zip_get_num_entries(zip, 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        const zip_uint64_t at = static_cast<zip_uint64_t>(i);
        const char* const text = zip_get_name(zip, at, ZIP_FL_ENC_GUESS);
        const std::string name = text ? text : "";
        // Folders, and what one system puts beside every file to hold its attributes.
        if (name.ends_with('/') || name.starts_with("__MACOSX/")) continue;
        names.push_back(name);
        only = at;
        if (endsInIfc(name)) {
            ifcNames.push_back(name);
            onlyIfc = at;
        }
    }
    if (ifcNames.size() == 1) {
        index = onlyIfc;
    } else if (ifcNames.empty() && names.size() == 1) {
        index = only;
    } else {
        error = names.empty() ? "zip archive has no file in it"
                : ifcNames.empty()
                    ? "zip archive has no .ifc file, but several others: " + listed(names)
                    : "zip archive has several .ifc files, of which one must be chosen: " + listed(ifcNames);
        return false;
    }
    hasOthers = names.size() > 1;
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (zip_stat_index(zip, index, 0, &stat) != 0) {
        error = textOf(zip_get_error(zip));
        return false;
    }
    if ((stat.valid & ZIP_STAT_ENCRYPTION_METHOD) && stat.encryption_method != ZIP_EM_NONE) {
        error = "zip archive: " + listed({stat.name ? stat.name : ""}) + " is encrypted";
        return false;
    }
    size = stat.valid & ZIP_STAT_SIZE ? stat.size : 0;
    packed = stat.valid & ZIP_STAT_COMP_SIZE ? stat.comp_size : 0;
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
    zip_error_t reason;
    zip_error_init(&reason);
    zip_source_t* const bytes = zip_source_filep_create(archive->file, 0, -1, &reason);
    if (!bytes) std::fclose(archive->file);
    return archive->open(bytes, reason, error) ? make(std::move(archive), error) : nullptr;
}

std::unique_ptr<ZipSource> ZipSource::openContent(std::string content, std::string& error) {
    auto archive = std::make_unique<Archive>();
    archive->content = std::move(content);
    zip_error_t reason;
    zip_error_init(&reason);
    zip_source_t* const buffer = zip_source_buffer_create(archive->content.data(), archive->content.size(), 0, &reason);
    return archive->open(buffer, reason, error) ? make(std::move(archive), error) : nullptr;
}

bool ZipSource::openMember() {
    Archive& archive = *m_archive;
    if (archive.member) zip_fclose(archive.member);
    archive.place = 0;
    archive.member = zip_fopen_index(archive.zip, archive.index, 0);
    if (!archive.member) m_error = textOf(zip_get_error(archive.zip));
    return archive.member != nullptr;
}

std::size_t ZipSource::read(char* to, std::size_t size) {
    Archive& archive = *m_archive;
    std::size_t got = 0;
    while (got < size && m_error.empty()) {
        const zip_int64_t more = zip_fread(archive.member, to + got, size - got);
        if (more < 0) m_error = textOf(zip_file_get_error(archive.member));
        if (more <= 0) break;
        got += static_cast<std::size_t>(more);
        archive.place += static_cast<std::uint64_t>(more);
        if (archive.place > archive.size)
            m_error = "zip archive is damaged: a file in it is longer than its directory says";
    }
    if (got < size && m_error.empty() && archive.place < archive.size)
        m_error = "zip archive is damaged: a file in it is shorter than its directory says";
    return got;
}

bool ZipSource::rewind() {
    m_error.clear();
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
