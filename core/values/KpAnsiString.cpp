#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpArena.h>

#include <cstdlib>
#include <limits>
#include <new>
#include <string>

namespace KP_SDAI {

namespace detail {
// The unset text begins and ends with control characters, which no writer of texts uses.
constinit const KpStaticText<1> g_emptyText{""};
constinit const KpStaticText<10> g_unsetText{"\x01\x02unset\x02\x01"};
} // namespace detail

namespace {

const char* fill(void* memory, std::string_view text, std::uint32_t owned) {
    auto* header = ::new (memory) KpTextHeader{static_cast<std::uint32_t>(text.size()), owned};
    char* chars = reinterpret_cast<char*>(header + 1);
    if (!text.empty()) std::memcpy(chars, text.data(), text.size());
    chars[text.size()] = 0;
    return chars;
}

std::size_t bytesFor(std::string_view text) {
    if (text.size() > std::numeric_limits<int>::max() - sizeof(KpTextHeader) - 1) throw std::bad_alloc();
    return sizeof(KpTextHeader) + text.size() + 1;
}

} // namespace

KpAnsiString::KpAnsiString(const char* text, int length, code_page_id codePage) : m_text(detail::g_emptyText.text) {
    if (!text || length <= 0) return;
    const std::string_view bytes(text, static_cast<std::size_t>(length));
    if (codePage == code_page_id::utf8) {
        m_text = make(bytes);
        return;
    }
    std::string utf8;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0 | (byte >> 6));
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    m_text = make(utf8);
}

const char* KpAnsiString::make(std::string_view text) {
    if (text.empty()) return detail::g_emptyText.text;
    void* memory = std::malloc(bytesFor(text));
    if (!memory) throw std::bad_alloc();
    return fill(memory, text, 1);
}

const char* KpAnsiString::copy(const char* text) {
    if (text == detail::g_emptyText.text || text == detail::g_unsetText.text) return text;
    const auto* header = reinterpret_cast<const KpTextHeader*>(text - sizeof(KpTextHeader));
    return make({text, header->length});
}

const char* KpAnsiString::place(KpArena& arena, std::string_view text) {
    return fill(arena.allocate(bytesFor(text)), text, 0);
}

KpAnsiString& KpAnsiString::operator=(const char* text) {
    const char* made =
        text == detail::g_unsetText.text ? text : make(text ? std::string_view(text) : std::string_view());
    release();
    m_text = made;
    return *this;
}

KpAnsiString& KpAnsiString::operator=(const KpAnsiString& other) {
    if (m_text != other.m_text) {
        const char* copied = copy(other.m_text);
        release();
        m_text = copied;
    }
    return *this;
}

void KpAnsiString::destroy() noexcept {
    std::free(const_cast<char*>(m_text) - sizeof(KpTextHeader));
}

} // namespace KP_SDAI
