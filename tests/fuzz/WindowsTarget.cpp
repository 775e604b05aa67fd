#include "Harness.h"
#include "Models.h"

#include <part21/SmallParts.h>

#include <algorithm>

using namespace KP_SDAI;

/// What the reader holds at a time. Where it holds other amounts, the target still holds but shows less.
#ifdef KP_WINDOW_REACH
static constexpr std::size_t kWindow = 2 * KP_WINDOW_REACH;
#else
static constexpr std::size_t kWindow = 512 * 1024;
#endif

static std::string listed(const KpIfcReport& report) {
    std::string text;
    for (const KpIfcReportEntry& entry : report.entries()) text += entry.text() + '\n';
    return text;
}

/// A data section whose first two bytes say where the border of what the reader holds at a time falls, and how large
/// the parts are that several threads read: it reads alike wherever that is, and with any number of threads.
void fuzzTarget(std::string_view bytes) {
    keepModule();
    Decisions decisions(bytes);
    const std::size_t before = decisions.below(65535);
    const std::string_view records = decisions.rest();
    const std::string plain = framed(records);
    KpIfcFile file;
    if (file.openMemory(plain.data(), plain.size()) != KP::eOk) {
        return;
    }
    KpIfcFile shared;
    const KpIfcOpenOptions threaded{.threads = 2 + static_cast<unsigned>(before % 2)};
    {
        const SmallParts parts(16 + before / 2 % 400);
        require(shared.openMemory(plain.data(), plain.size(), "memory", threaded) == KP::eOk,
                "what one thread reads several read");
    }
    requireSame(written(shared, true), written(file, true), "a file reads alike however many threads read it");
    requireSame(listed(shared.report()), listed(file.report()), "the same is found however many threads read");
    const std::size_t head = framed("").find("DATA;\n") + 6;
    // The border is one of what the reader takes at first; it takes more where that has no end.
    const std::size_t room = before % std::min(records.size() + 2, kWindow - head);
    const std::string moved = framed(std::string(kWindow - head - room, '\n') + std::string(records));
    KpIfcFile cut;
    require(cut.openMemory(moved.data(), moved.size()) == KP::eOk, "what reads unmoved reads moved");
    requireSame(written(cut, true), written(file, true), "a file reads alike wherever a border cuts it");
    for (const KpIfcSeverity severity : {KpIfcSeverity::warning, KpIfcSeverity::error}) {
        require(cut.report().count(severity) == file.report().count(severity), "the same is found");
    }
    require(written(cut, false) == moved, "what nobody changed stays");
}
