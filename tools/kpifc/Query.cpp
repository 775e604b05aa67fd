#include "Commands.h"
#include "Files.h"
#include "QueryEvaluation.h"
#include "QueryOutput.h"
#include "QueryParser.h"
#include "Suggestions.h"
#include "Utf8.h"

#include <KpIfcCore/KpIfcModule.h>

#include <fmt/format.h>

#include <memory>
#include <optional>

using namespace KP_SDAI;

namespace kpifc {

namespace {

using namespace query;

struct QueryArguments {
    std::vector<std::string> paths;
    std::string expression;
    std::optional<std::string> columns;
    bool asJson = false;
    bool asCsv = false;
    bool countsOnly = false;
};

/// What is asked, in terms of one schema.
struct Question {
    ParsedQuery parsed;
    std::vector<Path> columns;
};

Path pathOfOneStep(const char* text, Step::Kind kind) {
    Path path;
    path.text = text;
    Step& step = path.steps.emplace_back();
    step.kind = kind;
    if (kind == Step::Kind::attribute) step.name = text;
    return path;
}

/// What is shown of an instance where nobody says what. Instances without such an attribute have no value.
std::vector<Path> usualColumns() {
    return {pathOfOneStep("@id", Step::Kind::id), pathOfOneStep("@type", Step::Kind::type),
            pathOfOneStep("GlobalId", Step::Kind::attribute), pathOfOneStep("Name", Step::Kind::attribute)};
}

Question questionOf(const QueryArguments& arguments, const KpIfcSchema& schema) {
    const char* where = "the query";
    try {
        Question question{parseQuery(arguments.expression, schema), {}};
        where = "--columns";
        question.columns =
            arguments.columns ? parsePaths(*arguments.columns, question.parsed.types, schema) : usualColumns();
        return question;
    } catch (const QueryError& error) {
        throw Failure(fmt::format("{}, {}", where, error.what()));
    }
}

Heading headingOf(const QueryArguments& arguments, const std::vector<Path>& columns) {
    Heading heading{.columns = {}, .isShown = arguments.columns.has_value(), .withFile = arguments.paths.size() > 1};
    for (const Path& column : columns) {
        heading.columns.push_back(column.text.starts_with('@') ? column.text.substr(1) : column.text);
    }
    return heading;
}

/// Misspelt names of properties are no errors, for anything can be one; but they find nothing.
void tellMissing(const std::string& path, const std::vector<ValueReader::Missing>& missing, const Types& types) {
    for (const auto& [step, known] : missing) {
        std::vector<std::string> near = suggestions({known.begin(), known.end()}, step->set + '.' + step->name);
        if (near.empty()) {
            near = suggestions(attributeNames(types), step->set);
        }
        tell(fmt::format("kpifc: {}: nothing that was looked at has a property {}.{}{}", fileLabel(path),
                         printable(step->set), printable(step->name), printable(didYouMean(near))));
    }
}

class Search {
public:
    Search(const QueryArguments& arguments, Output& output) : m_arguments(arguments), m_output(output) {}

    /// How many instances one file has; throws Failure where it cannot be told.
    std::size_t count(const std::string& path) {
        const KpIfcFile file = openFile(path);
        KpIfcModel& model = *file.model();
        model.mode(kReadOnly);
        tellProblems(path, file.report());
        const Question question = questionOf(m_arguments, model.schema());
        Evaluation evaluation(model);
        std::size_t found = 0;
        evaluation.run(question.parsed.query, [&](const KpIfcEntityBase& instance) {
            ++found;
            if (!m_arguments.countsOnly) {
                std::vector<Values> cells;
                for (const Path& column : question.columns) {
                    cells.push_back(evaluation.valuesOf(instance, column));
                }
                rows(question).add(fileLabel(path), cells);
            }
        });
        tellMissing(path, evaluation.missingProperties(), question.parsed.types);
        if (m_arguments.countsOnly) {
            m_output.text() += m_arguments.paths.size() > 1 ? printable(fileLabel(path)) + ": " : "";
            m_output.text() += fmt::format("{}\n", found);
        } else {
            rows(question); // their heading, where there is one
        }
        if (!m_arguments.countsOnly && !m_arguments.asJson && !m_arguments.asCsv) {
            m_summary += fmt::format("{}{}: {} found in {}", m_summary.empty() ? "" : "\n", fileLabel(path),
                                     grouped(found), counted(model.count(), "instance"));
        }
        return found;
    }

    void end() {
        if (m_rows) {
            m_rows->end();
        }
        m_output.finish();
        if (!m_summary.empty()) {
            tell(m_summary);
        }
    }

private:
    Rows& rows(const Question& question) {
        if (!m_rows) {
            m_rows = (m_arguments.asJson  ? jsonRows
                      : m_arguments.asCsv ? csvRows
                                          : tableRows)(m_output, headingOf(m_arguments, question.columns));
        }
        return *m_rows;
    }

    const QueryArguments& m_arguments;
    Output& m_output;
    std::unique_ptr<Rows> m_rows;
    std::string m_summary;
};

/// The files tell their schema, but who mistyped need not wait for them: throws Failure where the question makes no
/// sense in terms of any schema that there is.
void tryAllSchemas(const QueryArguments& arguments) {
    std::optional<Failure> first;
    for (const std::string& name : KpIfcModule::available()) {
        std::string error;
        try {
            if (const std::shared_ptr<KpIfcModule> module = KpIfcModule::load(name, error)) {
                questionOf(arguments, module->schema());
                return;
            }
        } catch (const Failure& failure) {
            first = first ? first : failure;
        }
    }
    if (first) {
        throw *first;
    }
}

ExitCode find(const QueryArguments& arguments) {
    tryAllSchemas(arguments);
    Output output;
    Search search(arguments, output);
    std::size_t found = 0;
    const ExitCode code = forEachFile(arguments.paths, [&](const std::string& path) {
        found += search.count(path);
        return kFine;
    });
    search.end();
    return code == kFine && found == 0 ? kNothingFound : code;
}

} // namespace

Command queryCommand() {
    const auto arguments = std::make_shared<QueryArguments>();
    return {.name = "query",
            .summary = "Find instances by what they are, have and are related to",
            .operands = {inputFile(&arguments->paths),
                         {.name = "EXPRESSION",
                          .place = &arguments->expression,
                          .help = "What to find, as told below; in quotes for the shell",
                          .kind = WordKind::entity}},
            .options = {{.name = "--columns",
                         .place = &arguments->columns,
                         .help = "What to show of each instance: paths with commas between them, instead of "
                                 "@id,@type,GlobalId,Name",
                         .value = "PATHS"},
                        {.name = "--count",
                         .place = &arguments->countsOnly,
                         .help = "Print how many there are, nothing else",
                         .excludes = "--csv"},
                        {.name = "--json",
                         .place = &arguments->asJson,
                         .help = "A JSON object a line for each instance, a key for each column",
                         .excludes = "--count"},
                        {.name = "--csv",
                         .place = &arguments->asCsv,
                         .help = "A line for each instance, behind one of names",
                         .excludes = "--json"}},
            .text =
                "An expression names a type and, in brackets, what has to be true:\n"
                "  IfcWall                           walls, those of subtypes too\n"
                "  =IfcWall                          without those of subtypes\n"
                "  *  #15  2O2Fr$t4X7Zf8NOew3FLOH    everything; one instance\n"
                "  IfcWall[Name = \"North\"]           an attribute has a value\n"
                "  IfcWall[OwnerHistory.OwningUser = #12]\n"
                "                                    a path through references\n"
                "  IfcWall[Pset_WallCommon.IsExternal = true]\n"
                "                                    a property or quantity, own or the type's;\n"
                "                                    *.IsExternal in any set\n"
                "  IfcBuildingStorey[Name=\"EG\"]/ContainsElements/RelatedElements\n"
                "                                    on to other instances, also inverse attributes\n"
                "  IfcMaterial/^IfcRelAssociatesMaterial/RelatedObjects\n"
                "                                    ^: to what refers to it\n"
                "  IfcDoor, IfcWindow                one or the other\n"
                "Names of entities, attributes and properties are known in any letter case. A name with blanks\n"
                "or signs stands in quotes (\"My set\".\"Fire rating\") and is then that of a property set.\n\n"
                "Comparisons:\n"
                "  = !=            numbers; texts in quotes, \"x\" or 'x'; true, false, unknown; literals\n"
                "                  of enumerations, ELEMENT or .ELEMENT.; #15; unset or $\n"
                "  < <= > >=       numbers, and texts by their characters\n"
                "  ~ !~            a regular expression that is found in the value: \"^EG \"; \"north\"i\n"
                "                  ignores letter case\n"
                "  in (A, B)       one of several\n"
                "  is TYPE         the instance is of that type\n"
                "  PATH alone      has any value; count(PATH) is how many there are\n"
                "with not, and, or between them (in this order) and parentheses. Of an aggregate any member\n"
                "has to do. != and !~ are the opposite of = and ~, so they are true where there is no value.\n"
                "Numbers are compared with numbers, in the units of the file, texts with texts.\n\n"
                "Grammar:\n"
                "  expression  = selection { \",\" selection }\n"
                "  selection   = ( type | #15 | GlobalId ) { filter } { \"/\" step }\n"
                "  type        = \"*\" | [ \"=\" ] ENTITY\n"
                "  filter      = \"[\" condition \"]\"\n"
                "  condition   = conjunction { \"or\" conjunction }\n"
                "  conjunction = negation { \"and\" negation }\n"
                "  negation    = \"not\" negation | \"(\" condition \")\" | \"is\" type | comparison\n"
                "  comparison  = path [ sign value | \"in\" \"(\" value { \",\" value } \")\" ]\n"
                "  path        = \"count\" \"(\" path \")\" | step { \".\" step }\n"
                "  step        = ( ATTRIBUTE | set \".\" PROPERTY | \"^\" type | \"@id\" | \"@type\" ) { filter }\n"
                "  set         = NAME | TEXT | \"*\"\n"
                "\".\" and \"/\" mean the same.\n\n"
                "Columns: @id is the instance name, @type the entity. Several values have \"; \" between them, in\n"
                "JSON they are an array; no value is - in tables, empty in CSV, null in JSON. With several files the\n"
                "first column, \"file\", tells which one.\n\n"
                "How many were found is told on standard error, and so is a property that nothing has.",
            .exitCodes = {{0, "something was found"},
                          {1, "nothing was found"},
                          {2, "a file could not be read, or the expression is wrong"}},
            .examples = {"kpifc query house.ifc 'IfcWall[Name ~ \"^EG\"]'",
                         "kpifc query house.ifc 'IfcWall[*.IsExternal = true and not *.FireRating]' --count",
                         "kpifc query a.ifc b.ifc 'IfcDoor[OverallWidth < 0.9]' --columns @id,Name,OverallWidth",
                         "kpifc query house.ifc IfcSpace --columns 'Name,Decomposes.RelatingObject.Name' --csv",
                         "kpifc query house.ifc '#15/IsDefinedBy[is IfcRelDefinesByType]/RelatingType'"},
            .run = [arguments] { return find(*arguments); }};
}

} // namespace kpifc
