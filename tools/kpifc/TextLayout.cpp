#include "TextLayout.h"

#include "Utf8.h"

namespace kpifc {

std::vector<std::string> wrapped(std::string_view text, std::size_t width) {
    std::vector<std::string> lines(1);
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(word.size());
        if (!lines.back().empty() && displayWidth(lines.back()) + displayWidth(word) > width) {
            lines.emplace_back();
        }
        lines.back() += word;
        while (text.starts_with(' ')) {
            lines.back() += ' ';
            text.remove_prefix(1);
        }
    }
    for (std::string& line : lines) {
        line.erase(line.find_last_not_of(' ') + 1);
    }
    return lines;
}

std::vector<TextBlock> blocksOf(std::string_view text) {
    std::vector<TextBlock> blocks;
    bool isApart = false;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (line.empty()) {
            isApart = true;
            continue;
        }
        const bool isFixed = line.starts_with(' ');
        if (isApart || blocks.empty() || blocks.back().isFixed != isFixed) {
            blocks.push_back({isFixed, "", isApart});
        }
        isApart = false;
        TextBlock& block = blocks.back();
        block.text += isFixed || block.text.empty() ? "" : " ";
        block.text += line;
        block.text += isFixed ? "\n" : "";
    }
    return blocks;
}

std::string filled(std::string_view text, std::size_t width) {
    std::string out;
    for (const TextBlock& block : blocksOf(text)) {
        out += block.isApart ? "\n" : "";
        if (block.isFixed) {
            out += block.text;
            continue;
        }
        for (const std::string& line : wrapped(block.text, width)) {
            out += line + '\n';
        }
    }
    return out;
}

} // namespace kpifc
