#include "Commands.h"
#include "Files.h"
#include "InstanceJson.h"
#include "Output.h"

#include <memory>
#include <string>

using namespace KP_SDAI;

namespace kpifc {

namespace {

void dumpModel(const KpIfcModel& model, bool withInverses, Output& output) {
    std::string& text = output.text();
    InstanceJson instances(text, model.textIsUtf8(), withInverses);
    for (const KpIfcEntityBase* instance : model.instances()) {
        instances.append(*instance);
        text += '\n';
        output.passOn();
    }
}

ExitCode dump(const std::string& path, bool withInverses) {
    const KpIfcFile file = openFile(path);
    tellProblems(path, file.report());
    Output output;
    file.model()->mode(kReadOnly);
    dumpModel(*file.model(), withInverses, output);
    output.finish();
    return exitCode(file.report());
}

} // namespace

void addDump(CLI::App& app, Action& action) {
    const auto path = std::make_shared<std::string>();
    const auto withInverses = std::make_shared<bool>(false);
    CLI::App* command = app.add_subcommand("dump", "Print all instances as JSON, one a line");
    command->add_option("FILE", *path, "STEP file")->required();
    command->add_flag("--inverse", *withInverses, "Inverse attributes too: the instances that refer to each");
    command->footer("Instances come in ascending order of their names:\n"
                    "  {\"id\":15,\"type\":\"IfcPerson\",\"attributes\":{\"Id\":\"007\",...}}\n"
                    "No value is null; a reference {\"ref\":22}; an enumeration its literal; a logical\n"
                    "true, false or \"UNKNOWN\"; a value of a select {\"type\":\"IfcLabel\",\"value\":\"Oak\"};\n"
                    "an aggregate an array; a real has a point or an exponent, an integer has not.\n"
                    "Attributes that the entity redeclares as derived and records that are kept as\n"
                    "text are left out. --inverse adds, behind the attributes,\n"
                    "  ,\"inverse\":{\"EngagedIn\":[{\"ref\":22}],...}\n"
                    "with an array for every inverse attribute, whether it may hold one or many.\n\n"
                    "Example: the walls\n"
                    "  kpifc dump house.ifc | grep '\"type\":\"IfcWall'");
    command->callback(
        [path, withInverses, &action] { action = [path, withInverses] { return dump(*path, *withInverses); }; });
}

} // namespace kpifc
