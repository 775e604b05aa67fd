#include "HeaderFields.h"

#include "Failure.h"
#include "SchemaNames.h"
#include "Utf8.h"

#include <KpIfcCore/KpTextCase.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

using namespace KP_SDAI;

namespace kpifc {

std::vector<std::string> HeaderField::texts(const KpIfcHeader& header) const {
    std::vector<std::string> found = header.texts(record, place);
    if (!isList && found.size() > 1) {
        found.resize(1);
    }
    return found;
}

void HeaderField::set(KpIfcHeader& header, const std::vector<std::string>& texts) const {
    if (isList) {
        header.setTexts(record, place, texts);
    } else {
        header.setText(record, place, texts.empty() ? std::string() : texts.front());
    }
}

/// What matters of a name.
static std::string bareName(std::string_view name) {
    std::string bare;
    for (const char c : name) {
        if (c != '_' && c != '-') {
            bare += lowerAscii(c);
        }
    }
    return bare;
}

const HeaderField& headerField(std::string_view name) {
    std::vector<std::string> known;
    for (const HeaderField& field : kHeaderFields) {
        if (bareName(field.name) == bareName(name)) {
            return field;
        }
        known.emplace_back(field.name);
    }
    throw Failure(fmt::format("the header has no field \"{}\"{}; it has {}", printable(name),
                              didYouMean(suggestions(known, name)), fmt::join(known, ", ")));
}

std::vector<std::pair<std::string, std::string>> otherHeaderRecords(const KpIfcHeader& header) {
    std::vector<std::pair<std::string, std::string>> others;
    for (std::size_t i = 0; i < header.records().size(); ++i) {
        const std::string& keyword = header.records()[i].keyword;
        if (keyword != "FILE_DESCRIPTION" && keyword != "FILE_NAME" && keyword != "FILE_SCHEMA") {
            others.emplace_back(keyword, header.source(i));
        }
    }
    return others;
}

} // namespace kpifc
