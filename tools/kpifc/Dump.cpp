#include "Commands.h"
#include "Files.h"
#include "InstanceJson.h"
#include "Output.h"

#include <memory>
#include <string>

using namespace KP_SDAI;

namespace kpifc {

namespace {

void dumpModel(const KpIfcModel& model, Output& output) {
    std::string& text = output.text();
    InstanceJson instances(text, model.textIsUtf8());
    for (const KpIfcEntityBase* instance : model.instances()) {
        instances.append(*instance);
        text += '\n';
        output.passOn();
    }
}

ExitCode dump(const std::string& path) {
    const KpIfcFile file = openFile(path);
    tellProblems(path, file.report());
    Output output;
    file.model()->mode(kReadOnly);
    dumpModel(*file.model(), output);
    output.finish();
    return exitCode(file.report());
}

} // namespace

void addDump(CLI::App& app, Action& action) {
    const auto path = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand("dump", "Print all instances as JSON, one a line");
    command->add_option("FILE", *path, "STEP file")->required();
    command->footer("Instances come in ascending order of their names:\n"
                    "  {\"id\":15,\"type\":\"IfcPerson\",\"attributes\":{\"Id\":\"007\",...}}\n"
                    "No value is null; a reference {\"ref\":22}; an enumeration its literal; a logical\n"
                    "true, false or \"UNKNOWN\"; a value of a select {\"type\":\"IfcLabel\",\"value\":\"Oak\"};\n"
                    "an aggregate an array; a real has a point or an exponent, an integer has not.\n"
                    "Attributes that the entity redeclares as derived and records that are kept as\n"
                    "text are left out.\n\n"
                    "Example: the walls\n"
                    "  kpifc dump house.ifc | grep '\"type\":\"IfcWall'");
    command->callback([path, &action] { action = [path] { return dump(*path); }; });
}

} // namespace kpifc
