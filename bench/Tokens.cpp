#include "CpuTime.h"
#include "Workloads.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// What was seen, so that no compiler leaves the looking out.
struct Tokens {
    std::uint64_t count = 0;
    std::uint64_t names = 0; ///< their sum
    double numbers = 0;      ///< their sum
};

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Behind the next such character.
const char* behind(const char* p, const char* end, char c) {
    const void* const found = std::memchr(p, c, static_cast<std::size_t>(end - p));
    return found ? static_cast<const char*>(found) + 1 : end;
}

/// Takes the text for well-formed, but never looks beyond its end.
Tokens tokensOf(std::string_view text) {
    Tokens tokens;
    const char* p = text.data();
    const char* const end = p + text.size();
    while (p != end) {
        if (*p == ' ' || *p == '\r' || *p == '\n') {
            ++p;
            continue;
        }
        ++tokens.count;
        if (*p == '\'') {
            p = behind(p + 1, end, '\'');
        } else if (*p == '#') {
            std::uint64_t name = 0;
            p = std::from_chars(p + 1, end, name).ptr;
            tokens.names += name;
        } else if (isDigit(*p) || *p == '-') {
            double number = 0;
            const char* const begin = p;
            p = std::from_chars(p, end, number).ptr;
            if (p == begin) ++p;
            tokens.numbers += number;
        } else if (isLetter(*p)) {
            while (p != end && (isLetter(*p) || isDigit(*p) || *p == '_')) ++p;
        } else if (*p == '.') {
            p = behind(p + 1, end, '.');
        } else {
            ++p;
        }
    }
    return tokens;
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    std::string content(file ? static_cast<std::size_t>(file.tellg()) : 0, '\0');
    if (!file.seekg(0).read(content.data(), static_cast<std::streamsize>(content.size()))) {
        throw std::runtime_error("cannot read " + path);
    }
    return content;
}

} // namespace

void measureTokens(const std::string& path, int runs, FileFigures& figures) {
    const std::string content = contentOf(path);
    std::vector<double> seconds;
    for (int run = 0; run < runs; ++run) {
        Tokens tokens;
        int rounds = 0;
        const double start = cpuSeconds();
        for (; rounds == 0 || cpuSeconds() - start < kShortestRun; ++rounds) {
            const Tokens seen = tokensOf(content);
            tokens.count += seen.count;
            tokens.names += seen.names;
            tokens.numbers += seen.numbers;
        }
        seconds.push_back((cpuSeconds() - start) / rounds);
        if (tokens.count == 0 || tokens.names == 0) throw std::runtime_error("there are no records in " + path);
    }
    figures.tokens = median(seconds);
}
