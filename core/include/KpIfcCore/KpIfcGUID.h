#pragma once

#include <KpIfcCore/KpAnsiString.h>

#include <cstring>

namespace KP_SDAI {

/// The globally unique identifier of a rooted instance in its compressed form: 22 characters and a zero, held inline.
///
/// A fresh one holds Consts::KpStringUnset. Assignment takes up to 22 characters and fills with zeros.
class KpIfcGUID {
public:
    static constexpr int kLength = 22;

    KpIfcGUID() { *this = detail::g_unsetText.text; }
    explicit KpIfcGUID(const char* text) { *this = text; }

    KpIfcGUID& operator=(const char* text) {
        std::size_t length = text ? std::strlen(text) : 0;
        if (length > kLength) length = kLength;
        if (length) std::memmove(m_chars, text, length); // the text may be a part of this one
        std::memset(m_chars + length, 0, sizeof m_chars - length);
        return *this;
    }

    const char* constStr() const { return m_chars; }
    operator const char*() const { return m_chars; }
    /// The 22 characters in place, for fixed-length reading.
    char* chars() { return m_chars; }
    bool isUnset() const { return std::strcmp(m_chars, detail::g_unsetText.text) == 0; }

    friend bool operator==(const KpIfcGUID& a, const KpIfcGUID& b) {
        return std::memcmp(a.m_chars, b.m_chars, sizeof a.m_chars) == 0;
    }
    friend bool operator<(const KpIfcGUID& a, const KpIfcGUID& b) { return std::strcmp(a.m_chars, b.m_chars) < 0; }

private:
    char m_chars[kLength + 1];
};

} // namespace KP_SDAI
