#include <KpIfcCore/KpIfcWriteFile.h>

#include "part21/AtomicFile.h"
#include "part21/ProgressMeter.h"

namespace KP_SDAI {

namespace {

bool writeAll(AtomicFile& file, std::string_view content, ProgressMeter& progress) {
    constexpr std::size_t kPiece = 256 * 1024;
    progress.beginBytes(KpIfcStage::writing, content.size());
    for (std::size_t at = 0; at < content.size(); at += kPiece) {
        if (!file.write(content.substr(at, kPiece))) return false;
        progress.readTo(at + kPiece);
    }
    progress.beginItems(KpIfcStage::flushing, 1);
    if (!file.flush()) return false;
    progress.end();
    return file.commit();
}

} // namespace

KP::ErrorStatus writeFile(const std::string& path, std::string_view content, const KpIfcProgressFunction& progress,
                          std::string& error) {
    try {
        ProgressMeter meter(progress);
        AtomicFile file(path, meter);
        if (file.error().empty() && writeAll(file, content, meter)) return KP::eOk;
        error = path + ": " + file.error();
        return KP::eNotAvailable;
    } catch (const ProgressMeter::Cancelled&) {
        error = path + ": cancelled";
        return KP::eCancelled;
    }
}

} // namespace KP_SDAI
