#include "Commands.h"
#include "Files.h"
#include "Save.h"

#include <memory>
#include <string>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct ConvertArguments {
    std::string input;
    SaveOptions saving;
};

ExitCode convert(const ConvertArguments& arguments) {
    checkTarget(arguments.input, arguments.saving);
    KpIfcFile file = openFile(arguments.input);
    return save(file, arguments.input, arguments.saving);
}

} // namespace

void addConvert(CLI::App& app, Action& action) {
    const auto arguments = std::make_shared<ConvertArguments>();
    CLI::App* command = app.add_subcommand("convert", "Read a file and write it anew");
    command->add_option("IN", arguments->input, "STEP file to read")->required();
    addSaveOptions(*command, arguments->saving);
    command->footer("Everything that was read is written, also what could not be understood: byte for byte,\n"
                    "or uniform with --normalise. What was done is told in one line on standard error.\n\n"
                    "Examples:\n"
                    "  kpifc convert house.ifc --normalise -o house_new.ifc\n"
                    "  kpifc convert house.ifc -o house.ifczip");
    command->callback([arguments, &action] { action = [arguments] { return convert(*arguments); }; });
}

} // namespace kpifc
