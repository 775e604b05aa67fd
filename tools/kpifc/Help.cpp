#include "Commands.h"
#include "HelpText.h"
#include "ManPage.h"
#include "Output.h"
#include "Suggestions.h"
#include "Utf8.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <memory>

namespace kpifc {

namespace {

struct HelpArguments {
    std::optional<std::string> about;
    bool asManPage = false;
    std::string manFolder;
};

std::string helpAbout(const std::string& name, bool asManPage) {
    const std::vector<Command> commands = allCommands();
    std::vector<std::string> known;
    for (const Command& command : commands) {
        if (command.name == name) {
            return asManPage ? manPage(command) : helpOf(command);
        }
        known.emplace_back(command.name);
    }
    for (const Topic& topic : topics(commands)) {
        if (topic.name == name && !asManPage) {
            return helpOf(topic);
        }
        known.emplace_back(topic.name);
    }
    const std::string near = didYouMean(suggestions(known, name));
    throw UsageError(fmt::format("there is neither a command nor a topic \"{}\"{} kpifc help lists them",
                                 printable(name), near.empty() ? ";" : near));
}

void writePage(const std::filesystem::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        throw Failure(path.string() + ": cannot be written");
    }
}

/// kpifc.1, and kpifc-COMMAND.1 of every command.
void writePages(const std::filesystem::path& folder) {
    const std::vector<Command> commands = allCommands();
    writePage(folder / "kpifc.1", manPage(commands));
    for (const Command& command : commands) {
        writePage(folder / fmt::format("kpifc-{}.1", command.name), manPage(command));
    }
}

ExitCode help(const HelpArguments& arguments) {
    if (!arguments.manFolder.empty()) {
        writePages(arguments.manFolder);
        return kFine;
    }
    Output output;
    output.text() = arguments.about       ? helpAbout(*arguments.about, arguments.asManPage)
                    : arguments.asManPage ? manPage(allCommands())
                                          : overview(allCommands());
    output.finish();
    return kFine;
}

} // namespace

Command helpCommand() {
    const auto arguments = std::make_shared<HelpArguments>();
    return {.name = "help",
            .summary = "Tell what a command takes, or about a topic",
            .operands = {{.name = "ABOUT",
                          .place = &arguments->about,
                          .help = "A command, exit-codes or files",
                          .kind = WordKind::topic}},
            .options = {{.name = "--man",
                         .place = &arguments->asManPage,
                         .help = "As a page for man(1), of the command or of kpifc",
                         .isHidden = true},
                        {.name = "--man-pages",
                         .place = &arguments->manFolder,
                         .help = "Write all these pages into a folder",
                         .value = "FOLDER",
                         .isHidden = true}},
            .exitCodes = {{0, "told"}, {2, "there is no such command or topic"}},
            .examples = {"kpifc help set", "kpifc help exit-codes"},
            .run = [arguments] { return help(*arguments); }};
}

} // namespace kpifc
