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

Command propsCommand() {
    const auto arguments = std::make_shared<PropsArguments>();
    return {.name = "props",
            .summary = "Print property sets and quantities of objects",
            .operands = {{.name = "FILE",
                          .place = &arguments->file,
                          .help = "STEP file; - for standard input",
                          .kind = WordKind::file},
                         {.name = "NAME",
                          .place = &arguments->name,
                          .help = "#15, a GlobalId, or an entity, which includes its subtypes",
                          .kind = WordKind::entity}},
            .options = {{.name = "--json", .place = &arguments->asJson, .help = "A JSON object a line for each object"},
                        {.name = "--csv",
                         .place = &arguments->asCsv,
                         .help = "A line for each object, a column for each property",
                         .excludes = "--json"}},
            .text = "Without NAME, prints all objects and types that have properties. Properties of an\n"
                    "object's type are its own unless it has them itself. Units are those of the values,\n"
                    "else those of the project.\n"
                    "\n"
                    "Columns of the table: name, value, unit, type of measure, \"from type\".\n"
                    "Columns of CSV: id, GlobalId, type, name; then Set.Property in the order in which\n"
                    "they are first met. Every object that NAME stands for has a line.\n"
                    "Keys of JSON: id, type, global_id, name, properties[]: set, name, kind (single,\n"
                    "bounded, enumerated, list, table, reference, quantity, attribute), value, measure,\n"
                    "unit, unit_id, from_type, set_id, property_id; of tables defining_measure,\n"
                    "defining_unit, defining_unit_id, too.",
            .examples = {"kpifc props house.ifc '#15'", "kpifc props house.ifc IfcWall --csv > walls.csv"},
            .run = [arguments] { return tellProps(*arguments); }};
}

} // namespace kpifc
