#include "JoinedFile.h"
#include "SampleFiles.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

// kpifc_bench_join MEGABYTES TARGET [FILE...]: makes a large file of the given ones, else of the samples that are
// found.
int main(int argc, char** argv) {
    const double megabytes = argc < 3 ? 0 : std::atof(argv[1]);
    if (megabytes <= 0) {
        std::fprintf(stderr, "usage: kpifc_bench_join MEGABYTES TARGET [FILE...]\n");
        return 2;
    }
    try {
        std::vector<std::filesystem::path> files(argv + 3, argv + argc);
        if (files.empty()) {
            files = samplesFor(KP_SOURCE_DIR);
        }
        writeJoinedFile(files, static_cast<std::uint64_t>(megabytes * 1e6), argv[2]);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "kpifc_bench_join: %s\n", failure.what());
        return 1;
    }
    return 0;
}
