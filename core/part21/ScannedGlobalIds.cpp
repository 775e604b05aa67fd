#include "part21/ScannedGlobalIds.h"

#include <KpIfcCore/KpIfcGUID.h>

#include "part21/Lexer.h"

#include <algorithm>
#include <cstring>

namespace KP_SDAI {

namespace {

constexpr std::size_t kLength = KpIfcGUID::kLength;

std::uint32_t hashOf(const char* text) {
    std::uint64_t words[3];
    std::memcpy(&words[0], text, 8);
    std::memcpy(&words[1], text + 8, 8);
    std::memcpy(&words[2], text + kLength - 8, 8);
    std::uint64_t hash = 0;
    for (const std::uint64_t word : words) {
        hash = (hash ^ word) * 0xFF51AFD7ED558CCDu;
        hash ^= hash >> 32;
    }
    return static_cast<std::uint32_t>(hash);
}

/// True for a text of the right length that means just what stands there.
bool isPlain(const char* parameter) {
    if (*parameter != '\'') return false;
    const char* const text = parameter + 1;
    for (std::size_t i = 0; i < kLength; ++i)
        if (static_cast<unsigned char>(text[i]) < ' ' || static_cast<unsigned char>(text[i]) >= 0x7F ||
            text[i] == '\'' || text[i] == '\\')
            return false;
    return text[kLength] == '\'' && lexer::endsParameter(text[kLength + 1]);
}

} // namespace

void ScannedGlobalIds::note(std::uint64_t name, const char* parameter) {
    if (isPlain(parameter))
        m_noted.push_back({hashOf(parameter + 1), static_cast<std::uint32_t>(name)});
    else if (*parameter != '$')
        m_unusual.push_back(static_cast<std::uint32_t>(name));
}

std::vector<KpDbObjectId> ScannedGlobalIds::mayHave(std::string_view globalId, const InstanceTable& table) const {
    std::vector<KpDbObjectId> found;
    for (const std::uint32_t name : m_unusual) found.emplace_back(table.find(name));
    if (globalId.size() != kLength) return found;
    const std::uint32_t hash = hashOf(globalId.data());
    for (const Noted& noted : m_noted)
        if (noted.hash == hash) found.emplace_back(table.find(noted.name));
    return found;
}

} // namespace KP_SDAI
