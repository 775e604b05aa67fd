#include "Harness.h"
#include "Models.h"

#include <KpIfcCore/KpIfcEntityType.h>
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

static std::string counted(const KpIfcModel& model) {
    std::string text = std::to_string(model.highestName()) + ' ' + std::to_string(model.keptRecordCount());
    for (const KpIfcEntityCount& count : model.entityCounts())
        text += std::string(" ") + count.entity->name() + ' ' + std::to_string(count.instances);
    return text;
}

/// Touches every `step`th instance of the file opened lazily before the rest is read.
static void requireAlikeLazily(const std::string& plain, KpIfcFile& file, std::size_t step) {
    KpIfcFile lazy;
    require(lazy.openMemory(plain.data(), plain.size(), "memory", {.lazy = true}) == KP::eOk,
            "what opens opens lazily");
    requireSame(counted(*lazy.model()), counted(*file.model()), "the same is counted before it is read");
    std::size_t place = 0;
    for (const KpIfcEntityBase* instance : file.model()->instances()) {
        if (place++ % step != 0) continue;
        const KpIfcEntityBase* const touched = lazy.model()->find(instance->instanceName()).openObject();
        require(touched && touched->getInstanceType() == instance->getInstanceType(), "each is what it would be");
    }
    require(lazy.readAll() == KP::eOk, "the rest is read");
    requireSame(listed(lazy.report()), listed(file.report()), "the same is found however it is opened");
    requireSame(written(lazy, true), written(file, true), "a file reads alike however it is opened");
}

/// A data section whose first two bytes say where the border of what the reader holds at a time falls, and how large
/// the parts are that several threads read: it reads alike wherever that is, with any number of threads, and lazily.
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
    requireAlikeLazily(plain, file, 1 + before % 7);
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
