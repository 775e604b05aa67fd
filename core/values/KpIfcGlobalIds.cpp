#include <KpIfcCore/KpIfcGlobalIds.h>

#include <array>
#include <cstdint>
#include <random>

namespace KP_SDAI {

namespace {

constexpr char kDigits[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
constexpr char kHexDigits[] = "0123456789abcdef";
constexpr std::size_t kUuidLength = 36;

struct Bits {
    std::uint64_t high = 0;
    std::uint64_t low = 0;

    void shiftIn(unsigned count, std::uint64_t bits) {
        high = high << count | low >> (64 - count);
        low = low << count | bits;
    }
    /// The bits from `position`, counted from the least significant one; fewer than 8.
    unsigned at(unsigned position, unsigned mask) const {
        std::uint64_t shifted = position >= 64 ? high >> (position - 64) : low >> position;
        if (position < 64 && position > 0) shifted |= high << (64 - position);
        return static_cast<unsigned>(shifted) & mask;
    }
};

KpIfcGUID compressed(const Bits& bits) {
    char text[KpIfcGUID::kLength + 1] = {};
    for (unsigned i = 0; i < KpIfcGUID::kLength; ++i) text[KpIfcGUID::kLength - 1 - i] = kDigits[bits.at(6 * i, 63)];
    return KpIfcGUID(text);
}

/// The place of a character among digits; their number where it is none.
unsigned valueOf(char digit, std::string_view digits) {
    const std::size_t found = digits.find(digit);
    return static_cast<unsigned>(found == digits.npos ? digits.size() : found);
}

constexpr bool isHyphenAt(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

constexpr std::array<bool, 256> kIsDigit = [] {
    std::array<bool, 256> isDigit{};
    for (const char c : std::string_view(kDigits, 64)) isDigit[static_cast<unsigned char>(c)] = true;
    return isDigit;
}();

} // namespace

KpIfcGUID newGlobalId() {
    std::random_device source;
    std::uniform_int_distribution<std::uint64_t> bits;
    const std::uint64_t high = bits(source);
    return compressed({high, bits(source)});
}

bool isGlobalId(std::string_view text) {
    if (text.size() != KpIfcGUID::kLength || text[0] < '0' || text[0] > '3') return false;
    bool isOne = true; // reading asks this of every instance that has one
    for (const char c : text) isOne &= kIsDigit[static_cast<unsigned char>(c)];
    return isOne;
}

std::string uuidOfGlobalId(std::string_view globalId) {
    if (!isGlobalId(globalId)) return {};
    Bits bits;
    for (const char c : globalId) bits.shiftIn(6, valueOf(c, std::string_view(kDigits, 64)));
    std::string uuid;
    for (unsigned i = 32; i-- > 0;) {
        if (isHyphenAt(uuid.size())) uuid += '-';
        uuid += kHexDigits[bits.at(4 * i, 15)];
    }
    return uuid;
}

KpIfcGUID globalIdOfUuid(std::string_view uuid) {
    if (uuid.size() != kUuidLength) return {};
    Bits bits;
    for (std::size_t i = 0; i < uuid.size(); ++i) {
        if (isHyphenAt(i)) {
            if (uuid[i] != '-') return {};
            continue;
        }
        const char digit = uuid[i] >= 'A' && uuid[i] <= 'F' ? static_cast<char>(uuid[i] - 'A' + 'a') : uuid[i];
        const unsigned value = valueOf(digit, std::string_view(kHexDigits, 16));
        if (value == 16) return {};
        bits.shiftIn(4, value);
    }
    return compressed(bits);
}

} // namespace KP_SDAI
