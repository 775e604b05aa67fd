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

Command convertCommand() {
    const auto arguments = std::make_shared<ConvertArguments>();
    return {
        .name = "convert",
        .summary = "Read a file and write it anew",
        .operands = {inputFile(&arguments->input, "IN")},
        .options = saveOptions(arguments->saving),
        .text = "Everything that was read is written, also what could not be understood: byte for byte,\n"
                "or uniform with --normalise. What was done is told in one line on standard error.",
        .examples = {"kpifc convert house.ifc --normalise -o house_new.ifc", "kpifc convert house.ifc -o house.ifczip"},
        .run = [arguments] { return convert(*arguments); }};
}

} // namespace kpifc
