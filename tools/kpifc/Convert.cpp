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
    std::string output;
};

ExitCode convert(const ConvertArguments& arguments) {
    refuseToOverwrite(arguments.input, arguments.output);
    KpIfcFile file = openFile(arguments.input);
    return save(file, arguments.input, arguments.output);
}

} // namespace

void addConvert(CLI::App& app, Action& action) {
    const auto arguments = std::make_shared<ConvertArguments>();
    CLI::App* command = app.add_subcommand("convert", "Read a file and write it anew");
    command->add_option("IN", arguments->input, "STEP file to read")->required();
    command->add_option("-o,--output", arguments->output, "File to write; not the input")->required();
    command->footer("Everything that was read is written, also what could not be understood. What was\n"
                    "done is told in one line on standard error.\n\n"
                    "Example:\n"
                    "  kpifc convert house.ifc -o house_new.ifc");
    command->callback([arguments, &action] { action = [arguments] { return convert(*arguments); }; });
}

} // namespace kpifc
