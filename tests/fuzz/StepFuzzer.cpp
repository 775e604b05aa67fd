#include "Require.h"

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

using namespace KP_SDAI;

namespace {

std::string saved(KpIfcFile& file, const KpIfcSaveOptions& options) {
    std::string out;
    require(file.saveToMemory(out, options) == KP::eOk, "what was read can be written");
    return out;
}

} // namespace

/// Whatever the bytes: where they can be read, they are written as they are; normalised, they read as the same and are
/// normalised.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::string error;
    static const std::shared_ptr<KpIfcModule> module = KpIfcModule::load("IFC2X3", error); // once, not for each input
    require(module != nullptr, error.c_str());

    const std::string content(reinterpret_cast<const char*>(data), size);
    KpIfcFile file;
    if (file.openMemory(content.data(), content.size()) != KP::eOk) {
        return 0;
    }
    require(saved(file, {}) == content, "what nobody changed stays");
    for (KpIfcEntityBase* instance : file.model()->instances()) {
        KpIfcChange::before(*instance);
    }
    require(saved(file, {}) == content, "what is as it was stays");

    const std::string normalised = saved(file, {.normalise = true});
    KpIfcFile again;
    require(again.openMemory(normalised.data(), normalised.size()) == KP::eOk, "what was written can be read");
    require(again.model()->count() == file.model()->count(), "all instances come back");
    // Where a file was cut off, the record that was lost comes once, in a comment.
    require(saved(again, {.normalise = true}) == normalised || file.report().isTruncated(),
            "it is written alike again");
    return 0;
}
