#include "Figures.h"
#include "SampleFiles.h"
#include "Workloads.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Arguments {
    std::vector<std::string> files;
    std::vector<std::string> only;
    int runs = 5;
    unsigned threads = 1;
    bool json = false;
};

/// The files given, else the real files beside the checkout, else the example.
std::vector<fs::path> filesFor(const Arguments& arguments) {
    if (!arguments.files.empty()) {
        return {arguments.files.begin(), arguments.files.end()};
    }
    return samplesFor(KP_SOURCE_DIR);
}

Workloads workloadsFor(const Arguments& arguments) {
    const std::vector<std::string>& only = arguments.only;
    const auto wanted = [&only](const char* name) {
        return only.empty() || std::find(only.begin(), only.end(), name) != only.end();
    };
    return {.open = wanted("open"),
            .tokens = wanted("tokens"),
            .write = wanted("write"),
            .save = wanted("save"),
            .close = wanted("close"),
            .inverse = wanted("inverse"),
            .memory = wanted("memory"),
            .lazy = wanted("lazy"),
            .module = wanted("module"),
            .threads = arguments.threads};
}

Figures measure(const Arguments& arguments) {
    const Workloads workloads = workloadsFor(arguments);
    Figures figures;
    figures.runs = arguments.runs;
    std::deque<UnpackedFile> files;
    for (const fs::path& path : filesFor(arguments)) {
        const fs::path& file = files.emplace_back(path).path();
        FileFigures& about = figures.files.emplace_back();
        about.name = path.filename().string();
        about.bytes = fs::file_size(file);
    }
    // Memory first: a child begins with what this process holds.
    for (std::size_t i = 0; workloads.memory && i < files.size(); ++i) {
        measureMemory(files[i].path().string(), workloads, figures.files[i]);
    }
    for (std::size_t i = 0; workloads.lazy && i < files.size(); ++i) {
        measureLazily(files[i].path().string(), arguments.runs, figures.files[i]);
    }
    if (workloads.module) {
        figures.module = measureModule(arguments.runs);
    }
    for (std::size_t i = 0; workloads.tokens && i < files.size(); ++i) {
        measureTokens(files[i].path().string(), arguments.runs, figures.files[i]);
    }
    const bool speed = workloads.open || workloads.write || workloads.save || workloads.close || workloads.inverse;
    for (std::size_t i = 0; speed && i < files.size(); ++i) {
        measureSpeed(files[i].path().string(), arguments.runs, workloads, figures.files[i]);
    }
    return figures;
}

} // namespace

static int run(int argc, char** argv) {
    CLI::App app("Measures reading and writing of STEP files.", "kpifc_bench");
    Arguments arguments;
    app.add_option("FILE", arguments.files, "STEP files, also compressed (.gz); else the samples that are found");
    app.add_option("--only", arguments.only,
                   "Workloads: tokens, open, write, save, close, inverse, memory, lazy, module; else all")
        ->allow_extra_args(false)
        ->delimiter(',')
        ->check(CLI::IsMember({"tokens", "open", "write", "save", "close", "inverse", "memory", "lazy", "module"}));
    app.add_option("--runs", arguments.runs, "Runs, of which medians are taken")->check(CLI::PositiveNumber);
    app.add_option("--threads", arguments.threads, "Threads that open a file; 0 for as many as there are cores");
    app.add_flag("--json", arguments.json, "Print one JSON object");
    CLI11_PARSE(app, argc, argv);
    const Figures figures = measure(arguments);
    fmt::print("{}", arguments.json ? jsonOf(figures) : tableOf(figures));
    return 0;
}

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "kpifc_bench: %s\n", failure.what());
    }
    return 1;
}
