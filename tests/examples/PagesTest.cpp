#include "Examples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// An indented block of a page and what stands before it.
struct Block {
    std::string paragraph;
    std::vector<std::string> lines; ///< without the indentation
};

std::vector<Block> blocksOf(const std::string& text) {
    constexpr std::string_view kIndent = "    ";
    std::vector<Block> blocks;
    std::string paragraph;
    bool inside = false;
    std::size_t gap = 0; // empty lines since the block's last one
    for (const std::string& line : linesOf(text)) {
        if (line.empty()) {
            ++gap;
        } else if (line.starts_with(kIndent)) {
            if (!inside) blocks.push_back({paragraph, {}});
            Block& block = blocks.back();
            if (inside) block.lines.resize(block.lines.size() + gap);
            block.lines.push_back(line.substr(kIndent.size()));
            inside = true;
            gap = 0;
        } else {
            if (inside || gap) paragraph.clear();
            paragraph += line + '\n';
            inside = false;
            gap = 0;
        }
    }
    return blocks;
}

/// Of the pages that quote examples and show commands.
std::vector<Block> pages() {
    std::vector<Block> all;
    for (const char* page : {"README.md", "docs/command_line.md"})
        for (const Block& block : blocksOf(contentOf(fs::path(KP_SOURCE_DIR) / page))) all.push_back(block);
    return all;
}

/// The lines without the indentation that all of them have, each ended.
std::string unindented(const std::vector<std::string>& lines) {
    std::size_t common = std::string::npos;
    for (const std::string& line : lines)
        if (!line.empty()) common = std::min(common, line.find_first_not_of(' '));
    std::string text;
    for (const std::string& line : lines) text += (line.empty() ? line : line.substr(common)) + '\n';
    return text;
}

bool isQuotedFrom(const std::vector<std::string>& quote, const std::vector<std::string>& file) {
    for (std::size_t at = 0; at + quote.size() <= file.size(); ++at) {
        const auto begin = file.begin() + static_cast<std::ptrdiff_t>(at);
        const std::vector<std::string> part(begin, begin + static_cast<std::ptrdiff_t>(quote.size()));
        if (unindented(part) == unindented(quote)) return true;
    }
    return false;
}

/// `examples/walls.cpp` in the paragraph before a block says where the block is quoted from.
std::string fileNamedIn(const std::string& paragraph) {
    for (const std::string_view folder : {"`examples/", "`tests/consumer/"}) {
        const std::size_t begin = paragraph.find(folder);
        if (begin != std::string::npos) return paragraph.substr(begin + 1, paragraph.find('`', begin + 1) - begin - 1);
    }
    return {};
}

bool isTranscript(const Block& block) {
    return block.lines.front().starts_with("$ ");
}

TEST(Pages, QuoteWhatTheProgramsSay) {
    std::set<std::string> quoted;
    for (const Block& block : pages()) {
        const std::string file = fileNamedIn(block.paragraph);
        if (file.empty() || isTranscript(block)) continue;
        EXPECT_TRUE(isQuotedFrom(block.lines, linesOf(contentOf(fs::path(KP_SOURCE_DIR) / file))))
            << "not in " << file << ":\n"
            << unindented(block.lines);
        quoted.insert(fs::path(file).filename().string());
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(KP_SOURCE_DIR "/examples")) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(".cpp") && name != "first_steps.cpp") {
            EXPECT_TRUE(quoted.contains(name)) << name;
        }
    }
}

/// Commands on the small house print what pages show: all, or what goes to standard output.
TEST(Pages, ShowWhatCommandsPrint) {
    const WorkFolder folder;
    fs::create_directory_symlink(KP_SOURCE_DIR "/examples", folder.path("examples"));
    int commands = 0;
    for (const Block& block : pages()) {
        if (!isTranscript(block)) continue;
        const auto end = block.lines.end();
        for (auto line = block.lines.begin(); line != end;) {
            std::string command = line->substr(2);
            for (++line; line != end && command.ends_with('\\'); ++line) command += '\n' + *line;
            std::string shown;
            for (; line != end && !line->starts_with("$ "); ++line) shown += *line + '\n';
            if (command.find("examples/small_house.ifc") == std::string::npos) continue;
            ++commands;
            const Outcome outcome = folder.run(withExamples(command));
            EXPECT_THAT(shown, testing::AnyOf(outcome.out, outcome.out + outcome.err, outcome.err + outcome.out))
                << command;
        }
    }
    EXPECT_GE(commands, 15);
}

} // namespace
