#include <KpIfcCore/KpIfcGlobalIds.h>

#include <cstdint>
#include <random>

namespace KP_SDAI {

KpIfcGUID newGlobalId() {
    constexpr char digits[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
    std::random_device source;
    std::uniform_int_distribution<std::uint64_t> bits;
    char text[KpIfcGUID::kLength + 1] = {};
    // Each half gives ten digits; the four bits left over of each make the first digit and the last.
    const std::uint64_t high = bits(source);
    const std::uint64_t low = bits(source);
    for (int i = 0; i < 10; ++i) {
        text[1 + i] = digits[high >> (6 * i) & 63];
        text[11 + i] = digits[low >> (6 * i) & 63];
    }
    text[0] = digits[high >> 60 & 3];
    text[21] = digits[(high >> 62 & 3) << 4 | (low >> 60 & 15)];
    return KpIfcGUID(text);
}

} // namespace KP_SDAI
