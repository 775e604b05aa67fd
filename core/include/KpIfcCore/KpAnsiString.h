#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpTextCase.h>

#include <cstdint>
#include <cstring>
#include <string_view>

namespace KP_SDAI {

class KpArena;

/// Character set of bytes handed to KpAnsiString.
enum class code_page_id : int {
    utf8 = 0,  ///< kept as they are
    latin1 = 1 ///< ISO 8859-1, converted to UTF-8
};

/// What stands before the characters of every text, so that a KpAnsiString is one pointer wide.
struct KpTextHeader {
    std::uint32_t length; ///< bytes before the terminating zero
    std::uint32_t owned;  ///< 1: heap memory of the one string that points here; 0: static or a model's memory
};

/// A text of static storage that strings can point at.
template <std::size_t N>
struct KpStaticText {
    KpTextHeader header;
    char text[N];
    constexpr explicit KpStaticText(const char (&chars)[N]) : header{N - 1, 0}, text{} {
        for (std::size_t i = 0; i < N; ++i) text[i] = chars[i];
    }
};

namespace detail {
extern KPIFCCORE_EXPORT const KpStaticText<1> g_emptyText;
extern KPIFCCORE_EXPORT const KpStaticText<10> g_unsetText;
} // namespace detail

/// The runtime's narrow text: bytes with a length and a terminating zero, never a null pointer.
///
/// Instances hold UTF-8 in models read that way, else the encoded form of the file (KpIfcSettings::get_useUTF8). A
/// string that belongs to an instance read from a file points into its model's memory; copies own theirs, so a copy
/// may outlive the model. Unset strings hold Consts::KpStringUnset, which is not the empty text.
class KPIFCCORE_EXPORT KpAnsiString {
public:
    KpAnsiString() noexcept : m_text(detail::g_emptyText.text) {}
    /// Copies a zero-terminated text; a null pointer gives the empty text.
    KpAnsiString(const char* text) : m_text(detail::g_emptyText.text) { *this = text; }
    KpAnsiString(const char* text, int length, code_page_id codePage);
    explicit KpAnsiString(std::string_view text) : m_text(make(text)) {}
    KpAnsiString(const KpAnsiString& other) : m_text(copy(other.m_text)) {}
    KpAnsiString(KpAnsiString&& other) noexcept : m_text(other.m_text) { other.m_text = detail::g_emptyText.text; }
    ~KpAnsiString() { release(); }
    /// A text that is Consts::KpStringUnset.
    static KpAnsiString unset() {
        KpAnsiString text;
        text.m_text = detail::g_unsetText.text;
        return text;
    }

    KpAnsiString& operator=(const char* text);
    KpAnsiString& operator=(const KpAnsiString& other);
    KpAnsiString& operator=(KpAnsiString&& other) noexcept {
        const char* mine = m_text;
        m_text = other.m_text;
        other.m_text = mine;
        return *this;
    }

    const char* constStr() const { return m_text; }
    operator const char*() const { return m_text; }
    int length() const { return static_cast<int>(header().length); }
    bool isEmpty() const { return header().length == 0; }
    std::string_view view() const { return {m_text, header().length}; }
    /// The same of the string that gave `text` as its constStr(), zeros inside it included: for the texts that
    /// KpIfcEntityBase::getAttr() hands out.
    static std::string_view viewOf(const char* text) {
        return {text, reinterpret_cast<const KpTextHeader*>(text - sizeof(KpTextHeader))->length};
    }

    /// True where the text is Consts::KpStringUnset: no value.
    bool isUnset() const {
        return m_text == detail::g_unsetText.text || view() == std::string_view(detail::g_unsetText.text);
    }

    int compare(const char* other) const { return std::strcmp(m_text, other ? other : ""); }
    int compare(const KpAnsiString& other) const { return view().compare(other.view()); }
    int compareNoCase(const char* other) const { return KP_SDAI::compareNoCase(m_text, other ? other : ""); }
    int compareNoCas(const char* other) const { return compareNoCase(other); }

    friend bool operator==(const KpAnsiString& a, const KpAnsiString& b) { return a.view() == b.view(); }
    friend bool operator==(const KpAnsiString& a, const char* b) { return a.compare(b) == 0; }
    friend bool operator<(const KpAnsiString& a, const KpAnsiString& b) { return a.view() < b.view(); }

    /// Makes this string point at a text whose memory somebody else keeps: `text` is preceded by its KpTextHeader.
    void refer(const char* text) {
        release();
        m_text = text;
    }
    /// Places a text with its header in an arena; the result is for refer().
    static const char* place(KpArena& arena, std::string_view text);

private:
    const KpTextHeader& header() const { return *reinterpret_cast<const KpTextHeader*>(m_text - sizeof(KpTextHeader)); }
    static const char* make(std::string_view text);
    static const char* copy(const char* text);
    void release() noexcept {
        if (header().owned) destroy();
    }
    void destroy() noexcept;

    const char* m_text;
};

} // namespace KP_SDAI
