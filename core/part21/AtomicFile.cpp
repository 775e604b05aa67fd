#include "part21/AtomicFile.h"

#include <cstdio>
#include <filesystem>
#include <new>
#include <random>
#include <utility>

namespace KP_SDAI {

namespace fs = std::filesystem;

namespace {

/// Where a link leads that leads to nothing yet.
fs::path behindLinks(fs::path path) {
    std::error_code code;
    while (fs::is_symlink(path, code)) { // a circle of links has no status, so it does not come here
        const fs::path next = fs::read_symlink(path, code);
        if (code == std::errc::not_enough_memory) throw std::bad_alloc();
        if (code) break;
        path = path.parent_path() / next;
    }
    return path;
}

/// A name in the same folder. Random, because others may be writing the same target, and killed ones may have left
/// theirs.
fs::path nameBeside(const fs::path& target, std::random_device& random) {
    constexpr std::size_t kLongest = 200; // of the 255 bytes that most file systems allow
    std::string name = target.filename().string();
    if (name.size() > kLongest) {
        std::size_t length = kLongest;
        while (length && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) --length; // whole characters
        name.resize(length);
    }
    char number[16];
    std::snprintf(number, sizeof number, ".%08x", static_cast<unsigned>(random()));
    return target.parent_path() / (name + number + ".part");
}

} // namespace

AtomicFile::AtomicFile(const std::string& path, ProgressMeter& progress) : m_file(progress) {
    if (SystemFile::isStandardOutput(path)) { // a file or not, it may have content of others
        check(m_file.open(path));
        return;
    }
    std::error_code code;
    const fs::file_status status = fs::status(path, code);
    switch (status.type()) {
    case fs::file_type::not_found:
        m_target = behindLinks(path).string();
        createBeside();
        break;
    case fs::file_type::regular:
        m_isReplaced = true;
        m_target = fs::canonical(path, code).string();
        if (check(code) && check(SystemFile(progress).open(m_target))) createBeside();
        break;
    case fs::file_type::directory: fail("is a folder"); break;
    case fs::file_type::none: check(code); break;
    default: check(m_file.open(path));
    }
}

AtomicFile::~AtomicFile() {
    if (m_file.isOpen()) m_file.close();
    if (!m_beside.empty()) std::remove(m_beside.c_str());
}

void AtomicFile::createBeside() {
    std::random_device random;
    std::error_code code = std::make_error_code(std::errc::file_exists);
    for (int i = 0; i < 100 && code == std::errc::file_exists; ++i) {
        m_beside = nameBeside(m_target, random).string();
        code = m_file.create(m_beside, m_isReplaced);
    }
    if (!code) return;
    m_beside.clear();
    check(code, "cannot create a file in its folder: ");
}

bool AtomicFile::fail(std::string reason) {
    if (m_error.empty()) m_error = std::move(reason);
    return false;
}

bool AtomicFile::check(std::error_code code, const char* what) {
    return !code || fail(what + code.message());
}

bool AtomicFile::write(std::string_view bytes) {
    return m_error.empty() && check(m_file.write(bytes));
}

bool AtomicFile::flush() {
    if (!m_error.empty()) return false;
    if (m_isReplaced && !check(m_file.takePermissions(m_target), "cannot keep its permissions: ")) return false;
    return check(m_file.sync()) && check(m_file.close());
}

bool AtomicFile::commit() {
    if (!m_error.empty()) return false;
    if (m_beside.empty()) return true;
    std::string folder = fs::path(m_target).parent_path().string();
    if (folder.empty()) folder = ".";
    if (!check(SystemFile::rename(m_beside, m_target))) return false;
    m_beside.clear();
    // Nothing that goes wrong now can be undone, and the target is whole in any case.
    SystemFile::syncFolder(folder);
    return true;
}

} // namespace KP_SDAI
