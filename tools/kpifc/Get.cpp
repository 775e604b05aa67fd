#include "Commands.h"
#include "Files.h"
#include "HeldAttributes.h"
#include "InstanceJson.h"
#include "Output.h"
#include "Targets.h"
#include "ValueStep.h"

#include <KpIfcCore/KpIfcException.h>

#include <fmt/format.h>

#include <memory>
#include <string>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct GetArguments {
    std::string file;
    std::vector<std::string> names;
    bool asJson = false;
};

/// Prints values of one model, a line each.
class Printer {
public:
    Printer(std::string& out, const KpIfcModel& model, bool asJson)
        : m_out(out), m_asJson(asJson), m_step(out, model.textIsUtf8()), m_json(out, model.textIsUtf8()),
          m_instances(out, model.textIsUtf8()) {}

    void print(const Target& target) {
        if (target.attribute) {
            attribute(target);
        } else if (m_asJson) {
            m_instances.append(*target.instance);
            m_out += '\n';
        } else {
            for (const HeldAttribute& held : heldAttributes(*target.instance->getInstanceType())) {
                m_out += held.name.view();
                m_out += " = ";
                value(*target.instance, held);
            }
        }
    }

private:
    void attribute(const Target& target) {
        if (target.isDerived()) {
            throw Failure(target.text() + " is derived: the model holds no value of it");
        }
        if (!value(*target.instance, HeldAttribute(*target.attribute))) {
            throw Failure(target.text() + " cannot be read by its name");
        }
    }

    bool value(const KpIfcEntityBase& instance, const HeldAttribute& held) {
        KpIfcVariant value;
        const bool isKnown = instance.getAttr(held.name, value);
        m_asJson ? m_json.attribute(value, held.isNamedAggregation)
                 : m_step.attribute(value, held.isOptional, held.isBinary);
        m_out += '\n';
        return isKnown;
    }

    std::string& m_out;
    bool m_asJson;
    ValueStep m_step;
    ValueJson m_json;
    InstanceJson m_instances;
};

ExitCode get(const GetArguments& arguments) {
    const KpIfcFile file = openFileLazily(arguments.file);
    KpIfcModel& model = *file.model();
    model.mode(kReadOnly);
    Targets targets(model);
    Output output;
    Printer printer(output.text(), model, arguments.asJson);
    try {
        for (const std::string& name : arguments.names) {
            printer.print(targets.find(name));
        }
    } catch (const KpIfcException& failure) { // the file has changed meanwhile, or cannot be read
        throw Failure(arguments.file + ": " + failure.where());
    }
    tellProblems(arguments.file, file.report());
    output.finish();
    return exitCode(file.report());
}

} // namespace

Command getCommand() {
    const auto arguments = std::make_shared<GetArguments>();
    return {.name = "get",
            .summary = "Print values of attributes",
            .operands = {{.name = "FILE",
                          .place = &arguments->file,
                          .help = "STEP file; - for standard input",
                          .kind = WordKind::file},
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
                    "what is asked for is read, so problems elsewhere are not told; kpifc info tells all.",
            .examples = {"kpifc get house.ifc '#15.FamilyName'",
                         "kpifc get house.ifc '2O2Fr$t4X7Zf8NOew3FLOH.Name' '#15'", "kpifc get house.ifc '#15' --json"},
            .run = [arguments] { return get(*arguments); }};
}

} // namespace kpifc
