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

Output::Output(const std::string& path, ProgressMeter& progress) : m_progress(progress), m_file(path, progress) {
    const std::filesystem::path name = path;
    const std::string ending = inUpperCase(name.extension().string());
    const Compressor::Sink sink = [this](std::string_view bytes) { return m_file.write(bytes); };
    if (ending == ".GZ")
        m_compressor = Compressor::gzip(sink);
    else if (ending == ".IFCZIP" || ending == ".ZIP")
        m_compressor = Compressor::zip(memberName(name), sink);
}

bool Output::write(std::string_view piece) {
    constexpr std::size_t kPiece = 256 * 1024; // no longer than a moment, however slow compressing is
    for (; piece.size() > kPiece; piece.remove_prefix(kPiece))
        if (!pass(piece.substr(0, kPiece))) return false;
    return pass(piece);
}

bool Output::pass(std::string_view piece) {
    m_progress.look();
    return m_compressor ? error().empty() && m_compressor->write(piece) : m_file.write(piece);
}

bool Output::finish() {
    if (!error().empty()) return false;
    m_progress.beginItems(KpIfcStage::flushing, 1);
    if (m_compressor && !m_compressor->finish()) return false;
    if (!m_file.flush()) return false;
    m_progress.end();
    return m_file.commit();
}

} // namespace KP_SDAI
