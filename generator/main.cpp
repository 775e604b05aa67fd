#include "emit/Emitters.h"
#include "facts/Linker.h"
#include "plan/ModulePlan.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;
using namespace kpifcgen;

namespace {

constexpr const char* usage =
    R"(usage: kpifcgen SCHEMA -o DIR    writes the generated sources below DIR, only those whose text changed
       kpifcgen SCHEMA --check   reads the schema file and reports what is wrong with it
)";

struct Arguments {
    std::string schema;
    std::optional<std::string> outputFolder; ///< none to check only
};

std::optional<Arguments> readArguments(const std::vector<std::string>& words) {
    if (words.size() == 2 && words[1] == "--check") {
        return Arguments{words[0], std::nullopt};
    }
    if (words.size() == 3 && words[1] == "-o") {
        return Arguments{words[0], words[2]};
    }
    return std::nullopt;
}

std::optional<std::string> readFile(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator(stream), {});
}

bool writeIfChanged(const fs::path& path, const std::string& text) {
    if (readFile(path) == text) {
        return true;
    }
    fs::create_directories(path.parent_path());
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << text;
    stream.close();
    return stream.good();
}

int fail(const std::string& message) {
    std::fputs(message.c_str(), stderr);
    return 1;
}

int run(const Arguments& arguments) {
    const auto text = fs::is_regular_file(arguments.schema) ? readFile(arguments.schema) : std::nullopt;
    if (!text) {
        return fail(arguments.schema + ": cannot be read\n");
    }
    facts::Diagnostics diagnostics;
    const auto schema = facts::load(*text, diagnostics);
    if (!schema) {
        return fail(facts::format(arguments.schema, diagnostics));
    }
    if (!arguments.outputFolder) {
        return 0;
    }
    const auto plan = plan::planModule(*schema, fs::path(arguments.schema).filename().string(), diagnostics);
    if (!plan) {
        return fail(facts::format(arguments.schema, diagnostics));
    }
    for (const emit::File& file : emit::emitModule(*plan)) {
        if (const fs::path path = fs::path(*arguments.outputFolder) / file.path; !writeIfChanged(path, file.text)) {
            return fail(path.string() + ": cannot be written\n");
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const auto arguments = readArguments({argv + 1, argv + argc});
    if (!arguments) {
        std::fputs(usage, stderr);
        return 2;
    }
    try {
        return run(*arguments);
    } catch (const std::exception& error) {
        return fail(std::string("kpifcgen: ") + error.what() + "\n");
    }
}
