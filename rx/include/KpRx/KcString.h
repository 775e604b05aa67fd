#pragma once

#include <string>
#include <string_view>

#if defined(_WIN32)
#if defined(KPRX_BUILDING)
#define KPRX_EXPORT __declspec(dllexport)
#else
#define KPRX_EXPORT __declspec(dllimport)
#endif
#else
#define KPRX_EXPORT __attribute__((visibility("default")))
#endif

/// The host's text, as it is shown to users: Unicode, kept as UTF-8. Owns its characters.
class KPRX_EXPORT KcString {
public:
    /// How bytes handed over are encoded.
    enum class Encoding {
        utf8,  ///< kept as they are
        latin1 ///< ISO 8859-1
    };

    KcString();
    KcString(const char* text, Encoding encoding);
    KcString(const KcString&);
    KcString(KcString&&) noexcept;
    KcString& operator=(const KcString&);
    KcString& operator=(KcString&&) noexcept;
    ~KcString();

    /// Takes a UTF-8 text; a null pointer gives the empty text.
    void assign(const char* utf8);
    /// The same with zeros that the text may hold.
    void assign(std::string_view utf8) { m_text = utf8; }
    /// The zero-terminated UTF-8 text; lives until the string changes.
    const char* utf8Ptr() const { return m_text.c_str(); }
    std::string_view view() const { return m_text; }
    bool isEmpty() const { return m_text.empty(); }

    friend bool operator==(const KcString& a, const KcString& b) { return a.m_text == b.m_text; }

private:
    std::string m_text;
};
