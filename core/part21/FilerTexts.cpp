#include <KpIfcCore/KpSpfFilerBase.h>
#include <KpIfcCore/KpStepText.h>

#include "model/ModelData.h"
#include "part21/Findings.h"

#include <cstring>

using namespace KP_SDAI;

namespace {

// Short texts recur; equal ones share one place. A direct-mapped cache finds nearly all of them at no growing cost.
constexpr std::size_t kCacheSize = 1 << 14;
constexpr std::size_t kLongestShared = 48;

constexpr const char kEncoded[] = "it encoded by \\X2\\";
constexpr const char kPartOfText[] = "taken as a part of the text";
constexpr const char kUnderstood[] = "taken as what it stands for";

std::size_t hashOf(std::string_view text) {
    std::uint64_t hash = text.size() * 0x9E3779B97F4A7C15u;
    const char* p = text.data();
    std::size_t left = text.size();
    for (; left >= 8; left -= 8, p += 8) {
        std::uint64_t word;
        std::memcpy(&word, p, 8);
        hash = (hash ^ word) * 0xFF51AFD7ED558CCDu;
        hash ^= hash >> 32;
    }
    std::uint64_t word = 0;
    std::memcpy(&word, p, left);
    hash = (hash ^ word) * 0xFF51AFD7ED558CCDu;
    return (hash ^ (hash >> 29)) & (kCacheSize - 1);
}

} // namespace

/// The text between apostrophes, in the form in which the model holds texts. It lasts until the next call.
bool KpSpfFilerBase::readText(std::string_view& text) {
    if (*m_cur != '\'') return false;
    const char* const begin = m_cur + 1;
    const char* p = begin;
    while (static_cast<unsigned char>(*p) >= ' ' && static_cast<unsigned char>(*p) < 0x7F && *p != '\'' && *p != '\\')
        ++p;
    if (*p == '\'' && p[1] != '\'') {
        text = {begin, static_cast<std::size_t>(p - begin)};
        m_cur = p + 1;
        return true;
    }
    const char* const behind = KpStepText::stringEnd(p, m_end);
    if (!behind) {
        broken("the closing apostrophe of a text");
        return false;
    }
    const std::string_view encoded(begin, static_cast<std::size_t>(behind - 1 - begin));
    m_cur = behind;
    unsigned issues = KpStepText::kNone;
    KpStepText::decode(encoded, m_decoded, issues);
    text = m_data.utf8 ? std::string_view(m_decoded) : encoded;
    if (issues & KpStepText::kRawUtf8)
        textIssue(KpIfcSeverity::note, false, "UTF-8 in a text", "characters beyond ASCII by \\X2\\", "taken as such");
    if (issues & KpStepText::kRawLatin1)
        textIssue(KpIfcSeverity::warning, false, "bytes in a text that are no UTF-8",
                  "characters beyond ASCII by \\X2\\", "taken as ISO 8859-1");
    if (issues & KpStepText::kBadDirective)
        textIssue(KpIfcSeverity::warning, !m_data.utf8 && !KpStepText::isEncoded(encoded),
                  "a reverse solidus in a text that opens no directive", "two of them", "taken as it is");
    if (issues & KpStepText::kBadCodePoint)
        textIssue(KpIfcSeverity::warning, m_data.utf8, "a code point that does not exist",
                  "one up to 10FFFF that is no surrogate", kTextKept);
    if (issues & KpStepText::kLineEnd)
        textIssue(KpIfcSeverity::note, false, "a tab or line end in a text", kEncoded, kPartOfText);
    if (issues & KpStepText::kControl)
        textIssue(KpIfcSeverity::warning, false, "a control character in a text", kEncoded, kPartOfText);
    if (issues & KpStepText::kLowerHex)
        textIssue(KpIfcSeverity::warning, false, "hexadecimal digits in lower case in a text", "upper case",
                  kUnderstood);
    if (issues & KpStepText::kEmptyRun)
        textIssue(KpIfcSeverity::warning, false, "a run of no characters in a text", "one at least", kUnderstood);
    if (issues & KpStepText::kSurrogates)
        textIssue(KpIfcSeverity::warning, false, "a surrogate pair in a text", "the character by \\X4\\", kUnderstood);
    return true;
}

void KpSpfFilerBase::store(KpAnsiString& value, std::string_view text) {
    if (text.empty()) {
        value = KpAnsiString();
        return;
    }
    if (text.size() > kLongestShared) {
        value.refer(KpAnsiString::place(m_data.arena, text));
        return;
    }
    if (m_sharedTexts.empty()) m_sharedTexts.resize(kCacheSize);
    const char*& cached = m_sharedTexts[hashOf(text)];
    if (cached) {
        const auto* header = reinterpret_cast<const KpTextHeader*>(cached) - 1;
        if (header->length == text.size() && std::memcmp(cached, text.data(), text.size()) == 0)
            return value.refer(cached);
    }
    cached = KpAnsiString::place(m_data.arena, text);
    value.refer(cached);
}
