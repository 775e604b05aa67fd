#include "Assignments.h"
#include "Commands.h"
#include "Files.h"
#include "Output.h"
#include "Save.h"

#include <memory>
#include <string>
#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct SetArguments {
    std::string input;
    std::vector<std::string> assignments;
    SaveOptions saving;
};

ExitCode set(const SetArguments& arguments) {
    checkTarget(arguments.input, arguments.saving);
    KpIfcFile file = openFile(arguments.input);
    Targets targets(*file.model());
    std::vector<Assignment> assignments;
    for (const std::string& text : arguments.assignments) {
        assignments.push_back(parseAssignment(text, targets));
    }
    tellAll(applyAll(assignments, *file.model()));
    return save(file, arguments.input, arguments.saving, counted(assignments.size(), "attribute") + " set");
}

} // namespace

Command setCommand() {
    const auto arguments = std::make_shared<SetArguments>();
    return {.name = "set",
            .summary = "Change attributes and write the file anew",
            .operands = {inputFile(&arguments->input, "IN"),
                         {.name = "NAME=VALUE",
                          .place = &arguments->assignments,
                          .help = "#15.FamilyName='Meier'; a GlobalId may stand for #15"}},
            .options = saveOptions(arguments->saving),
            .text = "Values are in the notation of STEP files, as kpifc get prints them:\n"
                    "  1.5  7                 numbers; a real may be without its point\n"
                    "  'Oak'                  texts, encoded as in files or plain UTF-8; '' for an apostrophe\n"
                    "  .ELEMENT.  .T.         literals of enumerations; booleans .T. .F., logicals .U. too\n"
                    "  #22                    an instance\n"
                    "  (1.,2.)  (#22,#23)     aggregates\n"
                    "  IFCLABEL('Oak')        a value of a select, by its type\n"
                    "  \"0FF\"                  binaries\n"
                    "  $                      no value\n"
                    "Nothing is written unless every assignment fits its attribute. What the schema\n"
                    "does not want but files can hold (no value where one must be, too many members)\n"
                    "is stored and told on standard error. All other records stay byte for byte.",
            .examples = {"kpifc set house.ifc \"#15.FamilyName='Meier'\" '#15.GivenName=$' -o house_new.ifc"},
            .run = [arguments] { return set(*arguments); }};
}

} // namespace kpifc
