#include "Commands.h"
#include "Failure.h"
#include "Files.h"
#include "HeaderFields.h"
#include "Output.h"
#include "Save.h"
#include "Utf8.h"

#include <KpIfcCore/KpIfcVersion.h>

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

using namespace KP_SDAI;
using Json = nlohmann::ordered_json;

namespace kpifc {

namespace {

struct HeaderArguments {
    std::string file;
    std::vector<std::string> fields;
    SaveOptions saving;
    bool refresh = false;
    bool asJson = false;
};

/// A field and the texts that it is to have.
struct Change {
    const HeaderField* field;
    std::vector<std::string> texts;
};

/// Assignments of one field together make a list.
void assign(std::vector<Change>& changes, const HeaderField& field, std::string text) {
    for (Change& change : changes) {
        if (change.field == &field) {
            if (!field.isList) {
                throw Failure(fmt::format("{} is one text, not a list, and is given twice", field.name));
            }
            change.texts.push_back(std::move(text));
            return;
        }
    }
    if (std::string_view(field.record) == "FILE_SCHEMA") {
        throw Failure(fmt::format("{} cannot be changed: the instances are of that schema", field.name));
    }
    changes.push_back({&field, {std::move(text)}});
}

/// Now, in the extended format of ISO 8601.
std::string timeStamp() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    return fmt::format("{:%Y-%m-%dT%H:%M:%S}+00:00", fmt::gmtime(now));
}

std::vector<Change> changesOf(const HeaderArguments& arguments) {
    std::vector<Change> changes;
    for (const std::string& text : arguments.fields) {
        if (const std::size_t sign = text.find('='); sign != std::string::npos) {
            assign(changes, headerField(std::string_view(text).substr(0, sign)), text.substr(sign + 1));
        }
    }
    if (arguments.refresh) {
        assign(changes, headerField("time_stamp"), timeStamp());
        assign(changes, headerField("preprocessor_version"), "kpifc " KPIFC_VERSION);
    }
    return changes;
}

void print(const KpIfcHeader& header, const std::vector<const HeaderField*>& fields, std::string& out) {
    for (const HeaderField* field : fields) {
        const std::vector<std::string> texts = field->texts(header);
        for (const std::string& text : texts) {
            out += printable(text) + '\n';
        }
        if (texts.empty() && !field->isList) {
            out += '\n'; // so that each has its line
        }
    }
}

void printAll(const KpIfcHeader& header, std::string& out) {
    constexpr int width = 22;
    for (const HeaderField& field : kHeaderFields) {
        std::string_view label = field.name;
        for (const std::string& text : field.texts(header)) {
            out += text.empty() ? fmt::format("{}\n", label) : fmt::format("{:<{}}{}\n", label, width, printable(text));
            label = "";
        }
        if (!label.empty()) {
            out += fmt::format("{}\n", label);
        }
    }
    for (const auto& [keyword, text] : otherHeaderRecords(header)) {
        out += printable(text) + '\n';
    }
}

Json jsonOf(const KpIfcHeader& header, const std::vector<const HeaderField*>& fields) {
    Json object = Json::object();
    for (const HeaderField* field : fields) {
        const std::vector<std::string> texts = field->texts(header);
        object[field->name] = field->isList ? Json(texts) : Json(texts.empty() ? std::string() : texts.front());
    }
    return object;
}

ExitCode show(KpIfcFile& file, const HeaderArguments& arguments) {
    std::vector<const HeaderField*> fields;
    for (const std::string& name : arguments.fields) {
        fields.push_back(&headerField(name));
    }
    const bool isWhole = fields.empty();
    Output output;
    if (arguments.asJson) {
        for (const HeaderField& field : kHeaderFields) {
            if (isWhole) {
                fields.push_back(&field);
            }
        }
        Json object = jsonOf(file.header(), fields);
        if (isWhole) {
            object["other_records"] = Json::array();
            for (const auto& [keyword, text] : otherHeaderRecords(file.header())) {
                object["other_records"].push_back({{"keyword", keyword}, {"text", text}});
            }
        }
        output.text() = object.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
    } else if (isWhole) {
        printAll(file.header(), output.text());
    } else {
        print(file.header(), fields, output.text());
    }
    tellProblems(arguments.file, file.report());
    output.finish();
    return exitCode(file.report());
}

ExitCode header(const HeaderArguments& arguments) {
    const std::vector<Change> changes = changesOf(arguments);
    if (changes.empty()) {
        if (!arguments.saving.output.empty() || arguments.saving.inPlace || arguments.saving.normalise) {
            throw Failure("nothing is to be changed, so nothing is written; kpifc convert writes anew");
        }
        KpIfcFile file = openFile(arguments.file);
        return show(file, arguments);
    }
    for (const std::string& text : arguments.fields) {
        if (text.find('=') == std::string::npos) {
            throw Failure(fmt::format("\"{}\" is no assignment, such as name=house.ifc", printable(text)));
        }
    }
    if (arguments.asJson) {
        throw Failure("--json prints the header; it does not go with changes");
    }
    checkTarget(arguments.file, arguments.saving);
    KpIfcFile file = openFile(arguments.file);
    for (const Change& change : changes) {
        change.field->set(file.header(), change.texts);
    }
    return save(file, arguments.file, arguments.saving, counted(changes.size(), "header field") + " set");
}

} // namespace

Command headerCommand() {
    const auto arguments = std::make_shared<HeaderArguments>();
    std::vector<Option> options = saveOptions(arguments->saving);
    options.push_back({.name = "--refresh",
                       .place = &arguments->refresh,
                       .help = "Set time_stamp to now, preprocessor_version to this program"});
    options.push_back({.name = "--json", .place = &arguments->asJson, .help = "One JSON object, for programs"});
    return {.name = "header",
            .summary = "Print the header, or change it and write the file anew",
            .operands = {inputFile(&arguments->file),
                         {.name = "FIELD[=TEXT]",
                          .place = &arguments->fields,
                          .help = "time_stamp; name='house.ifc'",
                          .isRequired = false}},
            .options = options,
            .text = "Without FIELD prints all fields, then the header's other records as they stand in\n"
                    "the file; with some, their texts alone, a line each. Names of fields are those of the\n"
                    "standard, in any letter case; '-' may stand for '_', or nothing:\n"
                    "  description (a list), implementation_level,\n"
                    "  name, time_stamp, author (a list), organization (a list), preprocessor_version,\n"
                    "  originating_system, authorization,\n"
                    "  schema_identifiers (a list; cannot be changed)\n"
                    "Texts are given as they are, without apostrophes. A list that is given several times\n"
                    "gets all the texts; what it had before goes. All other records stay byte for byte.\n"
                    "time_stamp is changed only when asked.\n"
                    "\n"
                    "Keys of the JSON object: the fields, lists as arrays; other_records[] with keyword\n"
                    "and text as the file writes it, where no FIELD is named.",
            .examples = {"kpifc header house.ifc", "kpifc header house.ifc time_stamp",
                         "kpifc header house.ifc author='A. Meier' author='B. Roth' --refresh -o new.ifc"},
            .run = [arguments] { return header(*arguments); }};
}

} // namespace kpifc
