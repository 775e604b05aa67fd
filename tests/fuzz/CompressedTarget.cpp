#include "Harness.h"
#include "Models.h"

#include <zlib.h>

using namespace KP_SDAI;

namespace {

/// Deflated with a header and trailer as `windowBits` says.
std::string deflated(std::string_view content, int windowBits) {
    z_stream z{};
    require(deflateInit2(&z, 6, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY) == Z_OK, "zlib works");
    std::string out(deflateBound(&z, static_cast<uLong>(content.size())), '\0');
    z.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(content.data()));
    z.avail_in = static_cast<uInt>(content.size());
    z.next_out = reinterpret_cast<Bytef*>(out.data());
    z.avail_out = static_cast<uInt>(out.size());
    require(deflate(&z, Z_FINISH) == Z_STREAM_END, "zlib works");
    out.resize(z.total_out);
    deflateEnd(&z);
    return out;
}

void append(std::string& out, std::uint32_t number, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out += static_cast<char>(number >> (8 * i));
    }
}

/// A zip archive of one member, by hand so that it costs no file.
std::string zipped(std::string_view content, bool stored) {
    const std::string data = stored ? std::string(content) : deflated(content, -15);
    const std::string name = "a.ifc";
    std::string facts; // what stands in both headers
    append(facts, 20, 2);
    append(facts, 0, 2);
    append(facts, stored ? 0 : 8, 2);
    append(facts, 0x21 << 16, 4);
    append(facts,
           static_cast<std::uint32_t>(
               crc32(0, reinterpret_cast<const Bytef*>(content.data()), static_cast<uInt>(content.size()))),
           4);
    append(facts, static_cast<std::uint32_t>(data.size()), 4);
    append(facts, static_cast<std::uint32_t>(content.size()), 4);
    append(facts, static_cast<std::uint32_t>(name.size()), 2);
    append(facts, 0, 2);
    std::string out = "PK\3\4" + facts + name + data;
    const std::size_t directory = out.size();
    out += "PK\1\2";
    append(out, 20, 2);
    out += facts + std::string(14, '\0') + name;
    const std::size_t size = out.size() - directory;
    out += "PK\5\6";
    append(out, 0, 4);
    append(out, 1, 2);
    append(out, 1, 2);
    append(out, static_cast<std::uint32_t>(size), 4);
    append(out, static_cast<std::uint32_t>(directory), 4);
    append(out, 0, 2);
    return out;
}

std::string packed(std::string_view content, std::size_t form) {
    switch (form) {
    case 0: return deflated(content, 15 + 16);
    case 1: {
        const std::size_t half = content.size() / 2;
        return deflated(content.substr(0, half), 15 + 16) + deflated(content.substr(half), 15 + 16);
    }
    case 2: return zipped(content, true);
    default: return zipped(content, false);
    }
}

} // namespace

/// Compressed files. The first byte says how the rest is packed, if at all, and how much of that is cut off or
/// overwritten: whatever the damage, what is read is the content that was packed.
void fuzzTarget(std::string_view bytes) {
    Decisions decisions(bytes);
    const std::size_t form = decisions.below(5);
    keepModule();
    if (form == 4) {
        KpIfcFile file;
        if (file.openMemory(decisions.rest().data(), decisions.rest().size()) == KP::eOk) {
            reopened(written(file, false));
        }
        return;
    }
    struct Patch {
        std::size_t place;
        char value;
    };
    Patch patches[4];
    const std::size_t count = decisions.below(4);
    for (Patch& patch : patches) {
        patch.place = decisions.below(65535);
        patch.value = static_cast<char>(decisions.byte());
    }
    const std::size_t cut = decisions.below(32);
    const std::string content = framed(decisions.rest());
    std::string archive = packed(content, form);
    for (std::size_t i = 0; i < count; ++i) {
        archive[patches[i].place % archive.size()] = patches[i].value;
    }
    archive.resize(archive.size() - (cut < 16 ? 0 : cut - 15));

    KpIfcFile file;
    if (file.openMemory(archive.data(), archive.size()) != KP::eOk) {
        require(!file.error().empty() && !file.model(), "what is refused has a reason and no model");
        require(count != 0 || cut >= 16, "an archive without damage can be read: " + file.error());
        return;
    }
    requireSame(written(file, false), content, "what is read is what was packed");
}
