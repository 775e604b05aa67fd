#include "FixedModel.h"

#include <IFC2X3/IfcCartesianPoint.h>
#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

// kpifc_bench_counts WORKLOAD: does one piece of work, the same everywhere, on a model of fixed content, in the
// function kpMeasured, by which callgrind finds what to count. Prints what can be counted without it as a JSON object:
// of how many instances or values the work was, how often it asked for memory, how many bytes it left in use.

using namespace KP_SDAI;

namespace {

std::size_t g_allocations = 0;

constexpr int kWalls = 2000;

} // namespace

// All memory from the heap comes through these, also that of the libraries.
#ifdef __GLIBC__
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_memalign(std::size_t, std::size_t);

void* malloc(std::size_t size) {
    ++g_allocations;
    return __libc_malloc(size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    ++g_allocations;
    return __libc_memalign(alignment, size);
}
}
#endif

extern "C" [[gnu::noinline]] void kpMeasured(const std::function<void()>& work) {
    work();
}

namespace {

/// Bytes of the heap that are in use, what the heap itself needs for them included.
std::size_t bytesHeld() {
#ifdef __GLIBC__
    const auto heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
#else
    return 0;
#endif
}

void require(KP::ErrorStatus status, const KpIfcFile& file) {
    if (status != KP::eOk) throw std::runtime_error(file.error());
}

/// What a workload needs is made by its constructor, before anything is counted.
struct Bench {
    Bench() : text(fixedModel(kWalls)) {
        std::string error;
        module = KpIfcModule::load("IFC2X3", error);
        if (!module) throw std::runtime_error(error);
    }
    /// Number of instances.
    std::size_t open() {
        require(file.openMemory(text.data(), text.size()), file);
        return file.model()->count();
    }

    std::string text;
    std::shared_ptr<KpIfcModule> module;
    KpIfcFile file;
};

/// Prepares the work, hands what is to be measured to `measure`, returns by how many it counts: instances or values.
using Workload = std::size_t (*)(Bench& bench, void (*measure)(const std::function<void()>&));

std::size_t openFile(Bench& bench, void (*measure)(const std::function<void()>&)) {
    std::size_t count = 0;
    measure([&] { count = bench.open(); });
    return count;
}

std::size_t writeFile(Bench& bench, void (*measure)(const std::function<void()>&)) {
    const std::size_t count = bench.open();
    std::string out;
    measure([&] { require(bench.file.saveToMemory(out, {.normalise = true}), bench.file); });
    return count;
}

std::size_t closeFile(Bench& bench, void (*measure)(const std::function<void()>&)) {
    const std::size_t count = bench.open();
    measure([&] { bench.file.close(); });
    return count;
}

std::size_t readByName(Bench& bench, void (*measure)(const std::function<void()>&)) {
    bench.open();
    bench.file.model()->mode(kReadOnly);
    std::unordered_map<const KpIfcEntityType*, std::vector<KpAnsiString>> names;
    std::size_t count = 0;
    for (const KpIfcEntityBase* instance : bench.file.model()->instances()) {
        const auto [entry, isNew] = names.try_emplace(instance->getInstanceType());
        if (isNew) {
            for (const KpIfcAttributeDefinition* attribute : entry->first->allAttributes()) {
                if (attribute->kind() == KpIfcAttributeKind::explicitAttribute)
                    entry->second.emplace_back(attribute->name());
            }
        }
        count += entry->second.size();
    }
    std::size_t found = 0;
    measure([&] {
        KpIfcVariant value;
        for (const KpIfcEntityBase* instance : bench.file.model()->instances())
            for (const KpAnsiString& name : names.find(instance->getInstanceType())->second)
                found += instance->getAttr(name, value);
    });
    if (found != count) throw std::runtime_error("not every attribute was found");
    return count;
}

std::size_t createPoints(Bench& bench, void (*measure)(const std::function<void()>&)) {
    constexpr std::size_t count = 100'000;
    KpIfcModel model(bench.module);
    measure([&] {
        for (std::size_t i = 0; i < count; ++i)
            model.create<IFC2X3::IfcCartesianPoint>()->setCoordinates({1.0, 2.0, static_cast<double>(i)});
    });
    return count;
}

const std::map<std::string_view, Workload> kWorkloads = {
    {"open", openFile}, {"write", writeFile}, {"close", closeFile}, {"byName", readByName}, {"create", createPoints}};

} // namespace

int main(int argc, char** argv) {
    const auto workload = argc == 2 ? kWorkloads.find(argv[1]) : kWorkloads.end();
    if (workload == kWorkloads.end()) {
        std::fprintf(stderr, "usage: kpifc_bench_counts open|write|close|byName|create\n");
        return 2;
    }
    try {
        Bench bench;
        static std::size_t allocations = 0;
        static std::ptrdiff_t bytes = 0;
        const std::size_t count = workload->second(bench, [](const std::function<void()>& work) {
            const std::size_t allocationsBefore = g_allocations;
            const std::size_t held = bytesHeld();
            kpMeasured(work);
            allocations = g_allocations - allocationsBefore;
            bytes = static_cast<std::ptrdiff_t>(bytesHeld() - held);
        });
        fmt::print("{{\"count\": {}, \"allocations\": {}, \"bytes\": {}}}\n", count, allocations, bytes);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "kpifc_bench_counts: %s\n", failure.what());
        return 1;
    }
    return 0;
}
