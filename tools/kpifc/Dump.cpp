#include "Commands.h"
#include "FileLabels.h"
#include "Files.h"
#include "InstanceJson.h"
#include "Output.h"

#include <memory>
#include <string>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

void dumpModel(const KpIfcModel& model, bool withInverses, const std::string& opening, Output& output) {
    std::string& text = output.text();
    InstanceJson instances(text, model.textIsUtf8(), withInverses, opening);
    for (const KpIfcEntityBase* instance : model.instances()) {
        instances.append(*instance);
        text += '\n';
        output.passOn();
    }
}

struct DumpArguments {
    std::vector<std::string> paths;
    bool withInverses = false;
};

ExitCode dump(const DumpArguments& arguments) {
    const FileLabels labels(arguments.paths);
    Output output;
    const ExitCode code = forEachFile(arguments.paths, [&](const std::string& path) {
        const KpIfcFile file = openFile(path);
        tellProblems(path, file.report());
        file.model()->mode(kReadOnly);
        dumpModel(*file.model(), arguments.withInverses, labels.opening(path), output);
        return exitCode(file.report());
    });
    output.finish();
    return code;
}

} // namespace

Command dumpCommand() {
    const auto arguments = std::make_shared<DumpArguments>();
    return {.name = "dump",
            .summary = "Print all instances as JSON, one a line",
            .operands = {inputFile(&arguments->paths)},
            .options = {{.name = "--inverse",
                         .place = &arguments->withInverses,
                         .help = "Inverse attributes too: the instances that refer to each"}},
            .text = "Instances come in ascending order of their names:\n"
                    "  {\"id\":15,\"type\":\"IfcPerson\",\"attributes\":{\"Id\":\"007\",...}}\n"
                    "No value is null; a reference {\"ref\":22}; an enumeration its literal; a logical\n"
                    "true, false or \"UNKNOWN\"; a value of a select {\"type\":\"IfcLabel\",\"value\":\"Oak\"};\n"
                    "an aggregate an array; a real has a point or an exponent, an integer has not.\n"
                    "Attributes that the entity redeclares as derived and records that are kept as\n"
                    "text are left out. --inverse adds, behind the attributes,\n"
                    "  ,\"inverse\":{\"EngagedIn\":[{\"ref\":22}],...}\n"
                    "with an array for every inverse attribute, whether it may hold one or many. With\n"
                    "several files the first key, \"file\", tells which one.",
            .examples = {"kpifc dump house.ifc | grep '\"type\":\"IfcWall'"},
            .run = [arguments] { return dump(*arguments); }};
}

} // namespace kpifc
