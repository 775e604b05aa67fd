#include "part21/Compressor.h"

#include "part21/Deflater.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace KP_SDAI {

namespace {

class GzipCompressor : public Compressor {
public:
    explicit GzipCompressor(Sink sink) : m_deflater(Deflater::Container::gzip, std::move(sink)) {}
    bool write(std::string_view piece) override { return m_deflater.write(piece); }
    bool finish() override { return m_deflater.finish(); }

private:
    Deflater m_deflater;
};

/// The parts of zip archives: numbers, least significant byte first.
class ZipRecord {
public:
    explicit ZipRecord(std::uint32_t signature) { u32(signature); }
    ZipRecord& u16(unsigned value) { return put(value, 2); }
    ZipRecord& u32(std::uint64_t value) { return put(value, 4); }
    ZipRecord& u64(std::uint64_t value) { return put(value, 8); }
    ZipRecord& text(std::string_view value) {
        m_bytes += value;
        return *this;
    }
    const std::string& bytes() const { return m_bytes; }

private:
    ZipRecord& put(std::uint64_t value, int size) {
        for (int i = 0; i < size; ++i) m_bytes += static_cast<char>(value >> (8 * i) & 0xFF);
        return *this;
    }

    std::string m_bytes;
};

class ZipCompressor : public Compressor {
public:
    ZipCompressor(std::string name, Sink sink)
        : m_name(std::move(name)), m_sink(sink), m_deflater(Deflater::Container::none, std::move(sink)) {
        const bool isAscii = std::all_of(m_name.begin(), m_name.end(), [](char c) { return (c & 0x80) == 0; });
        if (!isAscii) m_flags |= kNameIsUtf8;
    }
    bool write(std::string_view piece) override { return begin() && m_deflater.write(piece); }
    bool finish() override;

private:
    static constexpr unsigned kSizesFollow = 1 << 3;
    static constexpr unsigned kNameIsUtf8 = 1 << 11;
    static constexpr unsigned kDeflated = 8;
    static constexpr unsigned kDate = 1 << 5 | 1; // 1980-01-01, the first that can be told
    static constexpr unsigned kUnix = 3 << 8;
    static constexpr std::uint32_t kIsLarge = 0xFFFFFFFF; // the number stands elsewhere, in 64 bits

    bool begin();

    std::string m_name;
    Sink m_sink;
    Deflater m_deflater;
    unsigned m_flags = kSizesFollow;
    bool m_isBegun = false;
};

bool ZipCompressor::begin() {
    if (m_isBegun) return true;
    m_isBegun = true;
    ZipRecord local(0x04034B50);
    local.u16(20).u16(m_flags).u16(kDeflated).u16(0).u16(kDate);
    local.u32(0).u32(0).u32(0).u16(static_cast<unsigned>(m_name.size())).u16(0).text(m_name);
    return m_sink(local.bytes());
}

bool ZipCompressor::finish() {
    if (!begin() || !m_deflater.finish()) return false;
    const std::uint64_t length = m_deflater.taken();
    const std::uint64_t packed = m_deflater.given();
    const std::uint64_t begin = 30 + m_name.size();
    // Both sizes are told in 64 bits where one of them, or the place of the directory, does not fit into 32.
    const bool isLarge = std::max(length, begin + packed + 24) >= kIsLarge;
    const unsigned version = isLarge ? 45 : 20;

    ZipRecord sizes(0x08074B50);
    sizes.u32(m_deflater.crc());
    if (isLarge)
        sizes.u64(packed).u64(length);
    else
        sizes.u32(packed).u32(length);
    const std::uint64_t directoryPlace = begin + packed + sizes.bytes().size();

    ZipRecord entry(0x02014B50);
    entry.u16(kUnix | version).u16(version).u16(m_flags).u16(kDeflated).u16(0).u16(kDate).u32(m_deflater.crc());
    entry.u32(isLarge ? kIsLarge : packed).u32(isLarge ? kIsLarge : length);
    entry.u16(static_cast<unsigned>(m_name.size())).u16(isLarge ? 20 : 0).u16(0).u16(0).u16(0);
    entry.u32(std::uint64_t{0100644} << 16).u32(0).text(m_name); // a regular file of these permissions
    if (isLarge) entry.u16(1).u16(16).u64(length).u64(packed);

    std::string directory = entry.bytes();
    const std::uint64_t directorySize = directory.size();
    if (isLarge) {
        ZipRecord end(0x06064B50);
        end.u64(44).u16(kUnix | version).u16(version).u32(0).u32(0).u64(1).u64(1);
        end.u64(directorySize).u64(directoryPlace);
        ZipRecord locator(0x07064B50);
        locator.u32(0).u64(directoryPlace + directorySize).u32(1);
        directory += end.bytes() + locator.bytes();
    }
    ZipRecord end(0x06054B50);
    end.u16(0).u16(0).u16(1).u16(1).u32(directorySize).u32(isLarge ? kIsLarge : directoryPlace).u16(0);
    return m_sink(sizes.bytes() + directory + end.bytes());
}

} // namespace

std::unique_ptr<Compressor> Compressor::gzip(Sink sink) {
    return std::make_unique<GzipCompressor>(std::move(sink));
}

std::unique_ptr<Compressor> Compressor::zip(std::string memberName, Sink sink) {
    return std::make_unique<ZipCompressor>(std::move(memberName), std::move(sink));
}

} // namespace KP_SDAI
