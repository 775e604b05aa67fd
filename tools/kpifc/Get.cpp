#include "Commands.h"
#include "FileLabels.h"
#include "Files.h"
#include "HeldAttributes.h"
#include "InstanceJson.h"
#include "JsonText.h"
#include "Output.h"
#include "Targets.h"
#include "ValueStep.h"

#include <KpIfcCore/KpIfcException.h>
#include <KpIfcCore/KpTextCase.h>

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct GetArguments {
    std::vector<std::string> files; ///< names behind them as long as takeNames() has not taken them away
    std::vector<std::string> names;
    bool asJson = false;
};

/// Also of one that is missing, so that it is told as such: neither an instance name nor a GlobalId looks like that.
bool looksLikeFile(const std::string& word) {
    const std::string extension = std::filesystem::path(word).extension().string();
    const auto isExtension = [&](const char* each) { return compareNoCase(extension.c_str(), each) == 0; };
    return word.find('/') != std::string::npos || isExtension(".ifc") || isExtension(".ifczip") || isExtension(".gz") ||
           isExtension(".zip");
}

/// Of several operands names are those behind the last that is a file.
void takeNames(GetArguments& arguments) {
    const auto isFile = [](const std::string& word) {
        std::error_code none;
        return word == kStandardStream || std::filesystem::exists(word, none) || looksLikeFile(word);
    };
    std::vector<std::string>& files = arguments.files;
    const auto last = std::find_if(files.rbegin(), files.rend() - 1, isFile).base();
    arguments.names.insert(arguments.names.begin(), last, files.end());
    files.erase(last, files.end());
}

/// Prints values of one model, a line each.
class Printer {
public:
    Printer(std::string& out, const KpIfcModel& model, const std::string& path, const FileLabels& labels, bool asJson)
        : m_out(out), m_asJson(asJson), m_prefix(asJson ? "" : labels.prefix(path)), m_opening(labels.opening(path)),
          m_isLabelled(labels.areShown()), m_step(out, model.textIsUtf8()), m_json(out, model.textIsUtf8()),
          m_instances(out, model.textIsUtf8(), false, m_opening) {}

    void print(const Target& target) {
        if (target.attribute) {
            attribute(target);
        } else if (m_asJson) {
            m_instances.append(*target.instance);
            m_out += '\n';
        } else {
            for (const HeldAttribute& held : heldAttributes(*target.instance->getInstanceType())) {
                m_out += m_prefix;
                m_out += held.name.view();
                m_out += " = ";
                value(*target.instance, held);
                m_out += '\n';
            }
        }
    }

private:
    void attribute(const Target& target) {
        if (target.isDerived()) {
            throw Failure(target.text() + " is derived: the model holds no value of it");
        }
        m_out += m_prefix;
        if (m_asJson && m_isLabelled) {
            m_out += m_opening + "\"id\":";
            json::appendNumber(m_out, target.instance->instanceName());
            m_out += ",\"attribute\":";
            json::appendText(m_out, target.attribute->displayName());
            m_out += ",\"value\":";
        }
        if (!value(*target.instance, HeldAttribute(*target.attribute))) {
            throw Failure(target.text() + " cannot be read by its name");
        }
        m_out += m_asJson && m_isLabelled ? "}\n" : "\n";
    }

    bool value(const KpIfcEntityBase& instance, const HeldAttribute& held) {
        KpIfcVariant value;
        const bool isKnown = instance.getAttr(held.name, value);
        m_asJson ? m_json.attribute(value, held.isNamedAggregation)
                 : m_step.attribute(value, held.isOptional, held.isBinary);
        return isKnown;
    }

    std::string& m_out;
    bool m_asJson;
    std::string m_prefix;
    std::string m_opening; ///< of JSON objects
    bool m_isLabelled;
    ValueStep m_step;
    ValueJson m_json;
    InstanceJson m_instances;
};

ExitCode getFrom(const std::string& path, const GetArguments& arguments, const FileLabels& labels, Output& output) {
    const KpIfcFile file = openFileLazily(path);
    KpIfcModel& model = *file.model();
    model.mode(kReadOnly);
    Targets targets(model, labels.prefix(path));
    std::string text; // of a file all that is asked for, or nothing
    Printer printer(text, model, path, labels, arguments.asJson);
    try {
        for (const std::string& name : arguments.names) {
            printer.print(targets.find(name));
        }
    } catch (const KpIfcException& failure) { // the file has changed meanwhile, or cannot be read
        throw Failure(fileLabel(path) + ": " + failure.where());
    }
    output.text() += text;
    tellProblems(path, file.report());
    return exitCode(file.report());
}

ExitCode get(GetArguments& arguments) {
    takeNames(arguments);
    const FileLabels labels(arguments.files);
    Output output;
    const ExitCode code =
        forEachFile(arguments.files, [&](const std::string& path) { return getFrom(path, arguments, labels, output); });
    output.finish();
    return code;
}

} // namespace

Command getCommand() {
    const auto arguments = std::make_shared<GetArguments>();
    return {.name = "get",
            .summary = "Print values of attributes",
            .operands = {inputFile(&arguments->files),
                         {.name = "NAME",
                          .place = &arguments->names,
                          .help = "#15.FamilyName; #15 for all attributes of the instance"}},
            .options = {{.name = "--json",
                         .place = &arguments->asJson,
                         .help = "Values as kpifc dump prints them; instances as its lines"}},
            .text = "Prints a line for each attribute, in the notation of STEP files, as kpifc set takes\n"
                    "it: $ stands for no value. A GlobalId may stand for #15. Names of attributes are\n"
                    "known in any letter case. Attributes of a whole instance come as Name = value in\n"
                    "the order of its record, those that its entity derives left out. Of a sound file only\n"
                    "what is asked for is read, so problems elsewhere are not told; kpifc info tells all.\n"
                    "With several files each line begins with its file, in JSON as the key \"file\".",
            .examples = {"kpifc get house.ifc '#15.FamilyName'",
                         "kpifc get house.ifc '2O2Fr$t4X7Zf8NOew3FLOH.Name' '#15'", "kpifc get house.ifc '#15' --json"},
            .run = [arguments] { return get(*arguments); }};
}

} // namespace kpifc
