#include "part21/Output.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

namespace KP_SDAI {

namespace fs = std::filesystem;

Output::Output(const std::string& path) : m_path(path) {
    std::error_code code;
    if (fs::is_symlink(path, code)) {
        // The file that a link names is written, not the link.
        const fs::path target = fs::weakly_canonical(path, code);
        if (!code) m_path = target.string();
    }
    if (fs::exists(m_path, code) && !fs::is_regular_file(m_path, code)) {
        m_file = std::fopen(m_path.c_str(), "wb");
    } else {
        // Exclusively, because others may be writing the same target.
        for (int i = 0; !m_file && i < 100 && (i == 0 || errno == EEXIST); ++i) {
            m_beside = m_path + ".part" + (i ? std::to_string(i) : "");
            m_file = std::fopen(m_beside.c_str(), "wbx");
        }
        if (!m_file) m_beside.clear();
    }
    if (!m_file) fail();
    if (m_file) std::setvbuf(m_file, nullptr, _IONBF, 0);
}

Output::~Output() {
    if (m_file) std::fclose(m_file);
    if (!m_beside.empty()) std::remove(m_beside.c_str());
}

bool Output::fail() {
    if (m_reason == 0) m_reason = errno ? errno : EIO;
    return false;
}

bool Output::write(std::string_view piece) {
    if (!m_file) return false;
    errno = 0;
    return std::fwrite(piece.data(), 1, piece.size(), m_file) == piece.size() || fail();
}

bool Output::finish() {
    if (!m_file || m_reason) return false;
    errno = 0;
    if (std::fclose(std::exchange(m_file, nullptr)) != 0) return fail();
    if (m_beside.empty()) return true;
    std::error_code code;
    if (fs::exists(m_path, code)) {
        const fs::perms permissions = fs::status(m_path, code).permissions();
        if (!code) fs::permissions(m_beside, permissions, code);
    }
    fs::rename(m_beside, m_path, code);
    if (code) {
        m_reason = code.value();
        return false;
    }
    m_beside.clear();
    return true;
}

std::string Output::error() const {
    return std::strerror(m_reason);
}

} // namespace KP_SDAI
