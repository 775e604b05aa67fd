#include <KpIfcCore/KpSpfFilerBase.h>
#include <KpIfcCore/KpStepText.h>

#include "model/ModelData.h"
#include "part21/Scan.h"
#include "part21/TextIssues.h"

#include <cstring>

using namespace KP_SDAI;

namespace {

// Short texts recur; equal ones share one place. A direct-mapped cache finds nearly all of them at no growing cost.
constexpr std::size_t kCacheSize = 1 << 14;
constexpr std::size_t kLongestShared = 48;

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
    const char* const p = scan::plainEnd(begin);
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
    if (!issues) return true;
    // What the member could not be written as again.
    const unsigned kept = m_data.utf8                       ? KpStepText::kBadCodePoint
                          : !KpStepText::isEncoded(encoded) ? KpStepText::kBadDirective
                                                            : KpStepText::kNone;
    for (const TextIssue& kind : kTextIssues)
        if (issues & kind.flag) textIssue(kind.severity, (kept & kind.flag) != 0, kind.found, kind.expected, kind.done);
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
