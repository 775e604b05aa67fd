#include "Commands.h"
#include "Files.h"
#include "JsonText.h"
#include "Output.h"
#include "ValueJson.h"

#include <KpIfcCore/KpIfcEntityType.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

/// What the lines of one entity's instances have in common.
struct Layout {
    struct Field {
        const KpIfcAttributeFacts* facts;
        std::string key; ///< with what separates it from the value before
    };
    std::string type; ///< from behind the instance name to the attributes
    std::vector<Field> fields;
};

Layout layoutOf(const KpIfcEntityType& type) {
    Layout layout;
    layout.type = ",\"type\":";
    json::appendText(layout.type, type.displayName());
    layout.type += ",\"attributes\":{";
    for (const KpIfcAttributeFacts* facts : type.recordFields()) {
        if (facts->kind != KpIfcFieldKind::derived) {
            std::string key = layout.fields.empty() ? "" : ",";
            json::appendText(key, facts->name);
            layout.fields.push_back({facts, key + ':'});
        }
    }
    return layout;
}

void dumpModel(const KpIfcModel& model, Output& output) {
    std::string& text = output.text();
    ValueJson values(text, model.textIsUtf8());
    std::unordered_map<const KpIfcEntityType*, Layout> layouts;
    for (KpIfcEntityBase* instance : model.instances()) {
        const KpIfcEntityType* type = instance->getInstanceType();
        auto found = layouts.find(type);
        if (found == layouts.end()) {
            found = layouts.emplace(type, layoutOf(*type)).first;
        }
        text += "{\"id\":";
        json::appendNumber(text, instance->instanceName());
        text += found->second.type;
        for (const Layout::Field& field : found->second.fields) {
            text += field.key;
            values.attribute(*instance, *field.facts);
        }
        text += "}}\n";
        output.passOn();
    }
}

ExitCode dump(const std::string& path) {
    const KpIfcFile file = openFile(path);
    tellProblems(path, file.report());
    Output output;
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
