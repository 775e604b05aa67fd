#include "Props.h"

#include "Commands.h"
#include "FileLabels.h"
#include "Files.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <utility>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct PropsArguments {
    std::vector<std::string> files; ///< NAME behind them as long as nameOf() has not taken it away
    std::optional<std::string> name;
    bool asJson = false;
    bool asCsv = false;
};

/// The last of several operands, where it is no file: names of objects have neither points nor slashes.
std::optional<std::string> nameOf(std::vector<std::string>& files) {
    std::error_code none;
    if (files.size() < 2 || files.back().find_first_of("./") != std::string::npos || files.back() == kStandardStream ||
        std::filesystem::exists(files.back(), none)) {
        return std::nullopt;
    }
    std::string name = std::move(files.back());
    files.pop_back();
    return name;
}

ExitCode tellPropsOf(const std::string& path, const PropsArguments& arguments, FileLabels& labels, Output& output) {
    const KpIfcFile file = openFile(path);
    KpIfcModel& model = *file.model();
    model.mode(kReadOnly);
    const props::Objects objects = propertyObjects(model, arguments.name);
    if (arguments.asCsv) {
        props::printCsv(output, model, objects, arguments.name.has_value());
    } else {
        KpIfcPropertySets sets(model);
        const bool isOne = arguments.name && objects.size() == 1; // told also where it has none
        const std::string opening = labels.opening(path);
        bool isHeaded = false;
        for (const KpIfcEntityBase* object : objects) {
            const props::Values values = sets.of(*object);
            if (!values.empty() || isOne) {
                if (arguments.asJson) {
                    props::appendJson(output.text(), ObjectIdentity(*object), values, opening);
                } else {
                    output.text() += std::exchange(isHeaded, true) ? "" : labels.heading(path);
                    props::appendTable(output.text(), ObjectIdentity(*object), values);
                }
                output.passOn();
            }
        }
    }
    tellProblems(path, file.report());
    return exitCode(file.report());
}

ExitCode tellProps(PropsArguments& arguments) {
    arguments.name = nameOf(arguments.files);
    if (arguments.asCsv && arguments.files.size() > 1) {
        throw Failure("--csv takes one file, for what columns there are follows from it");
    }
    FileLabels labels(arguments.files);
    Output output;
    const ExitCode code = forEachFile(
        arguments.files, [&](const std::string& path) { return tellPropsOf(path, arguments, labels, output); });
    output.finish();
    return code;
}

} // namespace

Command propsCommand() {
    const auto arguments = std::make_shared<PropsArguments>();
    return {.name = "props",
            .summary = "Print property sets and quantities of objects",
            .operands = {inputFile(&arguments->files),
                         {.name = "NAME",
                          .place = &arguments->name,
                          .help = "#15, a GlobalId, or an entity, which includes its subtypes",
                          .kind = WordKind::entity}},
            .options = {{.name = "--json", .place = &arguments->asJson, .help = "A JSON object a line for each object"},
                        {.name = "--csv",
                         .place = &arguments->asCsv,
                         .help = "A line for each object, a column for each property",
                         .excludes = "--json"}},
            .text = "Of several words the last one is NAME unless it is a file. Without NAME, prints all\n"
                    "objects and types that have properties. Properties of an object's type are its own\n"
                    "unless it has them itself. Units are those of the values, else those of the project.\n"
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
