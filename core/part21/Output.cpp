#include "part21/Output.h"

#include <KpIfcCore/KpTextCase.h>

#include <algorithm>
#include <filesystem>

namespace KP_SDAI {

namespace {

std::string inUpperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), upperAscii);
    return text;
}

/// The member of house.ifczip, house.zip and house.ifc.zip is house.ifc.
std::string memberName(const std::filesystem::path& archive) {
    const std::filesystem::path stem = archive.stem();
    return stem.string() + (inUpperCase(stem.extension().string()) == ".IFC" ? "" : ".ifc");
}

} // namespace

Output::Output(const std::string& path) : m_file(path) {
    const std::filesystem::path name = path;
    const std::string ending = inUpperCase(name.extension().string());
    const Compressor::Sink sink = [this](std::string_view bytes) { return m_file.write(bytes); };
    if (ending == ".GZ")
        m_compressor = Compressor::gzip(sink);
    else if (ending == ".IFCZIP" || ending == ".ZIP")
        m_compressor = Compressor::zip(memberName(name), sink);
}

bool Output::write(std::string_view piece) {
    return m_compressor ? error().empty() && m_compressor->write(piece) : m_file.write(piece);
}

bool Output::finish() {
    if (!error().empty()) return false;
    return (!m_compressor || m_compressor->finish()) && m_file.commit();
}

} // namespace KP_SDAI
