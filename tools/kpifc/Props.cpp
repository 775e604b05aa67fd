#include "Props.h"

#include "Commands.h"
#include "Files.h"

#include <memory>
#include <optional>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct PropsArguments {
    std::string file;
    std::optional<std::string> name;
    bool asJson = false;
    bool asCsv = false;
};

ExitCode tellProps(const PropsArguments& arguments) {
    const KpIfcFile file = openFile(arguments.file);
    KpIfcModel& model = *file.model();
    model.mode(kReadOnly);
    const props::Objects objects = propertyObjects(model, arguments.name);
    Output output;
    if (arguments.asCsv) {
        props::printCsv(output, model, objects, arguments.name.has_value());
    } else {
        KpIfcPropertySets sets(model);
        const bool isOne = arguments.name && objects.size() == 1; // told also where it has none
        for (const KpIfcEntityBase* object : objects) {
            const props::Values values = sets.of(*object);
            if (!values.empty() || isOne) {
                (arguments.asJson ? props::appendJson : props::appendTable)(output.text(), ObjectIdentity(*object),
                                                                            values);
                output.passOn();
            }
        }
    }
    tellProblems(arguments.file, file.report());
    output.finish();
    return exitCode(file.report());
}

} // namespace

void addProps(CLI::App& app, Action& action) {
    const auto arguments = std::make_shared<PropsArguments>();
    CLI::App* command = app.add_subcommand("props", "Print property sets and quantities of objects");
    command->add_option("FILE", arguments->file, "STEP file")->required();
    command->add_option("NAME", arguments->name, "#15, a GlobalId, or an entity, which includes its subtypes");
    CLI::Option* json = command->add_flag("--json", arguments->asJson, "A JSON object a line for each object");
    command->add_flag("--csv", arguments->asCsv, "A line for each object, a column for each property")->excludes(json);
    command->footer("Without NAME, prints all objects and types that have properties. Properties of an\n"
                    "object's type are its own unless it has them itself. Units are those of the values,\n"
                    "else those of the project.\n\n"
                    "Columns of the table: name, value, unit, type of measure, \"from type\".\n"
                    "Columns of CSV: id, GlobalId, type, name; then Set.Property in the order in which\n"
                    "they are first met. Every object that NAME stands for has a line.\n"
                    "Keys of JSON: id, type, global_id, name, properties[]: set, name, kind (single,\n"
                    "bounded, enumerated, list, table, reference, quantity, attribute), value, measure,\n"
                    "unit, unit_id, from_type, set_id, property_id; of tables defining_measure,\n"
                    "defining_unit, defining_unit_id, too.\n\n"
                    "Examples:\n"
                    "  kpifc props house.ifc '#15'\n"
                    "  kpifc props house.ifc IfcWall --csv > walls.csv");
    command->callback([arguments, &action] { action = [arguments] { return tellProps(*arguments); }; });
}

} // namespace kpifc
