#include "Require.h"

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

using namespace KP_SDAI;

/// Whatever the bytes: what is read of them can be written, and what was written reads and is written as the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::string error;
    static const std::shared_ptr<KpIfcModule> module = KpIfcModule::load("IFC2X3", error); // once, not for each input
    require(module != nullptr, error.c_str());

    KpIfcFile file;
    if (file.openMemory(reinterpret_cast<const char*>(data), size) != KP::eOk) {
        return 0;
    }
    std::string written;
    require(file.saveToMemory(written) == KP::eOk, "what was read can be written");
    KpIfcFile again;
    require(again.openMemory(written.data(), written.size()) == KP::eOk, "what was written can be read");
    require(again.model()->count() == file.model()->count(), "all instances come back");
    std::string rewritten;
    require(again.saveToMemory(rewritten) == KP::eOk, "what was read again can be written");
    // Where a file was cut off, the record that was lost comes once, in a comment.
    require(rewritten == written || file.report().isTruncated(), "it is written alike again");
    return 0;
}
