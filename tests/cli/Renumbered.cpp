#include "Renumbered.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <random>
#include <vector>

namespace {

/// The end of the string, comment, instance name or single character at the start of a text.
std::size_t pieceEnd(std::string_view text) {
    std::size_t end = 1;
    if (text[0] == '\'' || text[0] == '"') {
        end = text.find(text[0], 1) + 1; // a doubled apostrophe makes two strings of one
    } else if (text.starts_with("/*")) {
        end = text.find("*/", 2) + 2;
    } else if (text[0] == '#') {
        end = text.find_first_not_of("0123456789", 1);
    }
    return std::min(end, text.size());
}

} // namespace

std::string renumbered(std::string_view file, unsigned seed) {
    const std::size_t begin = file.find("DATA;") + 5;
    const std::size_t end = file.rfind("ENDSEC;");
    std::vector<std::vector<std::string>> records(1);
    for (std::string_view rest = file.substr(begin, end - begin); !rest.empty();) {
        const std::string_view piece = rest.substr(0, pieceEnd(rest));
        rest.remove_prefix(piece.size());
        if (piece == "\n" || piece == "\r" || piece.starts_with("/*")) {
            continue;
        }
        records.back().emplace_back(piece);
        if (piece == ";") {
            records.emplace_back();
        }
    }
    records.pop_back();

    std::mt19937 random(seed);
    std::shuffle(records.begin(), records.end(), random);
    std::vector<std::size_t> numbers;
    for (std::size_t i = 0; i < records.size(); ++i) {
        numbers.push_back(3 * i + 1);
    }
    std::shuffle(numbers.begin(), numbers.end(), random);
    std::map<std::string, std::string> names;
    for (std::size_t i = 0; i < records.size(); ++i) {
        names.emplace(records[i].front(), '#' + std::to_string(numbers[i]));
    }
    std::string text(file.substr(0, begin));
    for (const std::vector<std::string>& record : records) {
        text += '\n';
        for (const std::string& piece : record) {
            const auto name = names.find(piece);
            text += name == names.end() ? piece : name->second;
        }
    }
    return text + '\n' + std::string(file.substr(end));
}
