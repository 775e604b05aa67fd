#include "Suggestions.h"

#include <KpIfcCore/KpTextCase.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstddef>
#include <utility>

using namespace KP_SDAI;

namespace kpifc {

namespace {

constexpr std::size_t kMostSuggestions = 5;

std::string lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lowerAscii);
    return result;
}

/// How many letters have to be put in, left out, replaced or swapped with their neighbour to make `b` of `a`.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> beforeLast(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] != b[j - 1])});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
    }
    return row[b.size()];
}

} // namespace

std::vector<std::string> suggestions(const std::vector<std::string>& names, std::string_view name) {
    constexpr std::string_view prefix = "ifc";
    const std::string asked = lower(name);
    const std::string_view letters = std::string_view(asked).substr(asked.starts_with(prefix) ? prefix.size() : 0);
    if (letters.empty() || letters.size() > 100) { // no name is nearly as long
        return {};
    }
    std::vector<std::pair<std::size_t, const std::string*>> near;
    std::vector<std::pair<std::size_t, const std::string*>> containing;
    for (const std::string& known : names) {
        std::string own = lower(known);
        own.erase(0, own.starts_with(prefix) ? prefix.size() : 0);
        if (const std::size_t distance = editDistance(letters, own); distance <= 1 + letters.size() / 4) {
            near.emplace_back(distance, &known);
        } else if (own.find(letters) != std::string::npos) {
            containing.emplace_back(own.size(), &known);
        }
    }
    auto& found = near.empty() ? containing : near;
    std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    found.resize(std::min(found.size(), kMostSuggestions));
    std::vector<std::string> result;
    for (const auto& [distance, known] : found) {
        result.push_back(*known);
    }
    return result;
}

std::string didYouMean(const std::vector<std::string>& suggestions) {
    return suggestions.empty() ? "" : fmt::format("; did you mean {}?", fmt::join(suggestions, ", "));
}

} // namespace kpifc
