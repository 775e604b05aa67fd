#include "report/PageSummary.h"

#include "Files.h"
#include "HeaderFields.h"
#include "Labels.h"
#include "report/PageText.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

using namespace KP_SDAI;

namespace kpifc::page {

namespace {

using Counts = std::vector<std::pair<std::string, std::uint64_t>>;

constexpr std::size_t kShown = 12; ///< rows of a table of counts; those behind are folded

template <class Takes>
Counts countTypes(const KpIfcModel& model, Takes&& takes) {
    std::map<const KpIfcEntityType*, std::uint64_t> byType;
    for (const KpIfcEntityBase* instance : model.instances()) {
        if (takes(*instance)) {
            ++byType[instance->getInstanceType()];
        }
    }
    Counts counts;
    for (const auto& [type, count] : byType) {
        counts.emplace_back(type->displayName(), count);
    }
    std::sort(counts.begin(), counts.end(),
              [](const auto& a, const auto& b) { return std::tie(b.second, a.first) < std::tie(a.second, b.first); });
    return counts;
}

void appendRows(std::string& out, const Counts& counts, std::size_t from, std::size_t to, const char* caption,
                bool areLinks) {
    out += fmt::format("<table class=\"bars\"><caption class=\"unseen\">{}</caption>\n"
                       "<thead class=\"unseen\"><tr><th scope=\"col\">Entity</th><th scope=\"col\">Instances</th>"
                       "</tr></thead><tbody>\n",
                       caption);
    for (std::size_t i = from; i < to; ++i) {
        const auto& [type, count] = counts[i];
        const double share = static_cast<double>(count) / static_cast<double>(counts.front().second);
        out += fmt::format("<tr><th scope=\"row\">{0}</th><td><span class=\"bar\" style=\"--share:{1:.4f}\"></span>"
                           "<span class=\"number\">{2}</span></td></tr>\n",
                           areLinks ? fmt::format("<a href=\"#q={0}\">{0}</a>", type) : type, share, grouped(count));
    }
    out += "</tbody></table>\n";
}

void appendTable(std::string& out, const Counts& counts, const char* caption, bool areLinks) {
    const std::size_t shown = counts.size() <= kShown + 3 ? counts.size() : kShown; // a few more need no folding
    appendRows(out, counts, 0, shown, caption, areLinks);
    if (shown < counts.size()) {
        out += fmt::format("<details><summary>{} more</summary>\n", counts.size() - shown);
        appendRows(out, counts, shown, counts.size(), caption, areLinks);
        out += "</details>\n";
    }
}

void appendFact(std::string& out, std::string_view term, const std::string& description, const char* kind = "") {
    out += fmt::format("<div{}><dt>{}</dt><dd>{}</dd></div>\n", kind, html(term), description);
}

std::string sizeText(std::uint64_t bytes) {
    constexpr double kStep = 1000;
    const auto size = static_cast<double>(bytes);
    return size < kStep           ? counted(bytes, "byte")
           : size < kStep * kStep ? fmt::format("{:.1f} kB", size / kStep)
                                  : fmt::format("{:.1f} MB", size / kStep / kStep);
}

} // namespace

std::string title(const KpIfcModel& model, const std::string& path) {
    const Labels labels(model);
    for (const KpIfcEntityBase* project : model.instances("IfcProject")) {
        for (const auto& name : {labels.longName(*project), labels.name(*project)}) {
            if (name && name->find_first_not_of(' ') != std::string::npos) {
                return html(*name);
            }
        }
    }
    return html(std::filesystem::path(path).filename().string());
}

std::string subtitle(const KpIfcModel& model, const KpIfcHeader& header, const std::string& path, std::uint64_t size) {
    std::string text =
        fmt::format("<span>{}</span> <span>{}</span> <span>{}</span>",
                    html(std::filesystem::path(path).filename().string()), model.schema().name(), sizeText(size));
    if (!header.timeStamp().empty()) {
        text += fmt::format(" <span>written {}</span>", html(header.timeStamp()));
    }
    return text;
}

std::string headerFacts(const KpIfcHeader& header) {
    std::string out;
    for (const HeaderField& field : kHeaderFields) {
        std::string term(field.name);
        std::replace(term.begin(), term.end(), '_', ' ');
        term[0] = static_cast<char>(term[0] - 'a' + 'A');
        std::string lines;
        for (const std::string& text : field.texts(header)) {
            lines += (lines.empty() || text.empty() ? "" : "<br>") + html(text);
        }
        if (!lines.empty()) {
            appendFact(out, term, lines);
        }
    }
    for (const auto& [keyword, text] : otherHeaderRecords(header)) {
        appendFact(out, keyword, html(text));
    }
    return out;
}

std::string counts(const KpIfcModel& model, const KpIfcReport& findings, std::uint64_t properties) {
    const auto countOf = [&model](const char* entity) {
        const KpIfcModel::Range range = model.instances(entity);
        std::uint64_t count = 0;
        for (auto each = range.begin(); each != range.end(); ++each) {
            ++count;
        }
        return count;
    };
    std::string out;
    const auto append = [&out](const char* term, std::uint64_t count, const char* kind = "") {
        appendFact(out, term, grouped(count), kind);
    };
    append("Elements", countOf("IfcElement") - countOf("IfcFeatureElement"));
    append("Spaces", countOf("IfcSpace"));
    append("Storeys", countOf("IfcBuildingStorey"));
    append("Types", countOf("IfcTypeObject"));
    append("Property values", properties);
    append("Instances", model.count());
    if (model.keptRecordCount()) {
        append("Records kept as text", model.keptRecordCount(), " class=\"error\"");
    }
    for (const KpIfcSeverity severity : {KpIfcSeverity::error, KpIfcSeverity::warning, KpIfcSeverity::note}) {
        if (const std::size_t count = findings.count(severity)) {
            std::string term = std::string(severityName(severity)) + (count == 1 ? "" : "s");
            term[0] = static_cast<char>(term[0] - 'a' + 'A');
            append(term.c_str(), count, fmt::format(" class=\"{}\"", severityName(severity)).c_str());
        }
    }
    return out;
}

std::string contents(const KpIfcModel& model) {
    const KpIfcEntityType* const object = model.schema().findEntity("IfcObject");
    const Counts objects = countTypes(model, [object](const KpIfcEntityBase& each) { return each.isKindOf(object); });
    const Counts all = countTypes(model, [](const KpIfcEntityBase&) { return true; });
    std::string out;
    if (objects.empty()) {
        out += "<p class=\"none\">There are no objects.</p>\n";
    } else {
        appendTable(out, objects, "Objects by entity", true);
    }
    if (!all.empty()) {
        out += fmt::format("<details><summary>All {} of {}</summary>\n", counted(model.count(), "instance"),
                           all.size() == 1 ? "one entity" : grouped(all.size()) + " entities");
        appendRows(out, all, 0, all.size(), "Instances by entity", false);
        out += "</details>\n";
    }
    return out;
}

} // namespace kpifc::page
