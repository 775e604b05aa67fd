#include <KpRx/KcString.h>

KcString::KcString() = default;
KcString::KcString(const KcString&) = default;
KcString::KcString(KcString&&) noexcept = default;
KcString& KcString::operator=(const KcString&) = default;
KcString& KcString::operator=(KcString&&) noexcept = default;
KcString::~KcString() = default;

KcString::KcString(const char* text, Encoding encoding) {
    if (encoding == Encoding::utf8) {
        assign(text);
        return;
    }
    for (; text && *text; ++text) {
        const auto byte = static_cast<unsigned char>(*text);
        if (byte < 0x80) {
            m_text += *text;
        } else {
            m_text += static_cast<char>(0xC0 | (byte >> 6));
            m_text += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
}

void KcString::assign(const char* utf8) {
    m_text = utf8 ? utf8 : "";
}
