#include "Schema.h"

#include "Commands.h"
#include "Output.h"
#include "SchemaNames.h"
#include "Utf8.h"

#include <KpIfcCore/KpIfcModule.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <memory>
#include <optional>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct SchemaArguments {
    std::optional<std::string> name;
    std::string schema = "IFC2X3";
    bool asJson = false;
    bool namesOnly = false;
};

std::string unknownText(const KpIfcSchema& schema, const std::string& name) {
    return fmt::format("{} declares no \"{}\"{}", schema.name(), printable(name),
                       didYouMean(suggestions(SchemaNames(schema), name)));
}

std::string answer(const KpIfcSchema& schema, const SchemaArguments& arguments) {
    if (arguments.namesOnly) {
        return fmt::format("{}\n", fmt::join(SchemaNames(schema).entities, "\n"));
    }
    if (!arguments.name) {
        return arguments.asJson ? schema_json::overview(schema) : schema_text::overview(schema);
    }
    if (const KpIfcEntityType* entity = schema.findEntity(*arguments.name)) {
        return arguments.asJson ? schema_json::entity(*entity) : schema_text::entity(*entity);
    }
    if (const KpIfcDefinedType* type = schema.findType(*arguments.name)) {
        return arguments.asJson ? schema_json::type(schema, *type) : schema_text::type(schema, *type);
    }
    throw Failure(unknownText(schema, *arguments.name));
}

ExitCode tellSchema(const SchemaArguments& arguments) {
    std::string error;
    const std::shared_ptr<KpIfcModule> module = KpIfcModule::load(arguments.schema, error);
    if (!module) {
        throw Failure(error);
    }
    Output output;
    output.text() = answer(module->schema(), arguments);
    output.finish();
    return kFine;
}

} // namespace

Command schemaCommand() {
    const auto arguments = std::make_shared<SchemaArguments>();
    return {.name = "schema",
            .summary = "Tell what a schema declares",
            .operands = {{.name = "NAME",
                          .place = &arguments->name,
                          .help = "Entity or type, in any letter case",
                          .kind = WordKind::entity}},
            .options = {{.name = "--schema",
                         .place = &arguments->schema,
                         .help = "The schema; IFC2X3 by default",
                         .value = "NAME"},
                        {.name = "--json", .place = &arguments->asJson, .help = "One JSON object, for programs"},
                        {.name = "--names",
                         .place = &arguments->namesOnly,
                         .help = "The names of all entities, a line each, as completion wants them",
                         .isHidden = true}},
            .text = "NAME is that of an entity, defined type, enumeration or select; without one,\n"
                    "tells how much the schema declares. Attributes of an entity are numbered by\n"
                    "their places in its records.\n"
                    "\n"
                    "Keys of the JSON object:\n"
                    "  schema, version         name of the schema; version without NAME only\n"
                    "  counts                  entities, abstract_entities, explicit_attributes,\n"
                    "                          derived_attributes, inverse_attributes, defined_types,\n"
                    "                          enumerations, literals, selects,\n"
                    "                          anonymous_aggregations: numbers\n"
                    "  names                   entities[], defined_types[], enumerations[], selects[]\n"
                    "of an entity\n"
                    "  name, kind, abstract    kind is \"entity\"\n"
                    "  supertypes[]            nearest first\n"
                    "  subtypes[]              direct ones\n"
                    "  attributes[]            name, kind (explicit, derived, inverse), declared_in,\n"
                    "                          type, optional; redeclares or inverts: the other\n"
                    "                          attribute as ENTITY.NAME; inherited ones come first\n"
                    "  unique_rules[]          label, declared_in, attributes[]\n"
                    "of a type\n"
                    "  name, kind, definition  kind is \"defined_type\", \"enumeration\" or \"select\"\n"
                    "  literals[]              of an enumeration\n"
                    "  members[]               of a select, as declared\n"
                    "  flattened_members[]     of a select, nested selects replaced by their members\n"
                    "of both\n"
                    "  used_by                 types[], selects[], attributes[] (entity, name, kind)",
            .exitCodes = {{0, "told"}, {2, "the schema declares no such thing, or has no module"}},
            .examples = {"kpifc schema ifcwall", "kpifc schema IfcTrimmingSelect --json"},
            .run = [arguments] { return tellSchema(*arguments); }};
}

} // namespace kpifc
