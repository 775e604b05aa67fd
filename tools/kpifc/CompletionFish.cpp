#include "CompletionScripts.h"
#include "CompletionWords.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace kpifc {

using namespace completion;

namespace {

/// A line that adds something where a condition is true.
std::string line(std::string_view condition, std::string_view what) {
    return fmt::format("complete -c kpifc -n '{}' {}\n", condition, what);
}

std::string text(std::string_view help) {
    return quoted(help, "\\'");
}

std::string optionLine(std::string_view condition, const Option& option) {
    std::string what = fmt::format("-l {} -d {}", option.name + 2, text(option.help));
    what += option.letter ? fmt::format(" -s {}", option.letter) : "";
    if (!option.isFlag()) {
        what += option.kind == WordKind::file ? " -r -F" : " -x";
        what += option.choices.empty() ? "" : fmt::format(" -a '{}'", fmt::join(option.choices, " "));
    }
    return line(condition, what);
}

} // namespace

std::string fishCompletion(const std::vector<Command>& commands) {
    std::string out = "# fish completion of kpifc: kpifc completion fish >~/.config/fish/completions/kpifc.fish\n"
                      "complete -c kpifc -f\n";
    const std::string none = fmt::format("not __fish_seen_subcommand_from {}", fmt::join(namesOf(commands), " "));
    for (const Option& option : toldOptions(programOptions())) {
        out += optionLine(none, option);
    }
    for (const Command& command : commands) {
        const std::string seen = fmt::format("__fish_seen_subcommand_from {}", command.name);
        out += line(none, fmt::format("-a {} -d {}", command.name, text(command.summary)));
        for (const Option& option : toldOptions(allOptions(command))) {
            out += optionLine(seen, option);
        }
        if (hasOperand(command, WordKind::file)) {
            out += line(seen, "-F");
        }
        if (hasOperand(command, WordKind::entity)) {
            out += line(seen, fmt::format("-a '({})'", kEntities));
        }
        if (const Words words = choicesOf(command, commands); !words.empty()) {
            out += line(seen, fmt::format("-a '{}'", fmt::join(words, " ")));
        }
    }
    return out;
}

} // namespace kpifc
