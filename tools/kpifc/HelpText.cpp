#include "HelpText.h"

#include "Terminal.h"
#include "TextLayout.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace kpifc {

namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

/// Two columns; a left text that is too wide has its line to itself.
std::string table(const Rows& rows) {
    constexpr std::size_t kWidest = 24;
    std::size_t width = 0;
    for (const auto& [left, right] : rows) {
        width = std::max(width, left.size() <= kWidest ? left.size() : 0);
    }
    const std::size_t indent = width + 4;
    std::string out;
    for (const auto& [left, right] : rows) {
        std::string start = fmt::format("  {:<{}}  ", left, width);
        if (start.size() > indent) {
            out += "  " + left + '\n';
            start.assign(indent, ' ');
        }
        for (const std::string& line : wrapped(right, textColumns() - indent)) {
            out += start + line + '\n';
            start.assign(indent, ' ');
        }
    }
    return out;
}

std::string section(std::string_view heading, const std::string& text) {
    return text.empty() ? "" : fmt::format("\n{}\n{}", styled(Style::bold, heading), text);
}

std::string optionsTable(const std::vector<Option>& options) {
    Rows rows;
    const bool haveLetters =
        std::any_of(options.begin(), options.end(), [](const Option& option) { return option.letter != 0; });
    for (const Option& option : options) {
        if (!option.isHidden) {
            rows.emplace_back((haveLetters && !option.letter ? "    " : "") + spelling(option), option.help);
        }
    }
    return table(rows);
}

std::string examplesOf(const Command& command) {
    std::string out;
    for (const char* example : command.examples) {
        out += fmt::format("  {}\n", example);
    }
    return out;
}

std::string exitCodesOf(const std::vector<ExitMeaning>& codes) {
    Rows rows;
    for (const auto& [code, meaning] : codes) {
        rows.emplace_back(std::to_string(code), meaning);
    }
    return table(rows);
}

std::string exitCodesText(const std::vector<Command>& commands) {
    std::string text = "Scripts can rely on these codes. They are the same for all commands, but for those below:\n";
    const auto append = [&text](const std::vector<ExitMeaning>& codes) {
        for (const auto& [code, meaning] : codes) {
            text += fmt::format("  {:<3}  {}\n", code, meaning);
        }
    };
    append(usualExitCodes());
    append({{130, "stopped by Ctrl-C; files are as they were"},
            {143, "stopped by SIGTERM; files are as they were"},
            {141, "nobody reads the pipe that results go to"}});
    for (const Command& command : commands) {
        if (command.exitCodes != usualExitCodes()) {
            text += fmt::format("\nkpifc {}\n", command.name);
            append(command.exitCodes);
        }
    }
    return text +
           "\nOf several files the highest code counts, unless a command says otherwise. With --strict a file that\n"
           "departs from the standard, however little, is a failure: 2.\n"
           "Results go to standard output, messages to standard error, never one to the other.";
}

} // namespace

std::string spelling(const Option& option) {
    return (option.letter ? fmt::format("-{}, ", option.letter) : "") + option.name +
           (option.isFlag() ? "" : fmt::format(" {}", option.value));
}

std::vector<Topic> topics(const std::vector<Command>& commands) {
    return {
        {"exit-codes", "What exit codes mean", exitCodesText(commands)},
        {"files", "Files, compressed files, streams",
         "Files are STEP files (ISO 10303-21), schema IFC2X3. They may be compressed: gzip and zip archives with one\n"
         ".ifc file are read as they are, whatever their names; - stands for standard input. Written is what\n"
         "the name tells: .gz, .ifczip, .zip or plain; - stands for standard output, plain. A file is replaced\n"
         "only when all of the new one is on the disk; whatever goes wrong before, Ctrl-C too, leaves it as it\n"
         "was.\n\n"
         "Nothing that was read is lost: what fits no class or attribute keeps its text, is told by kpifc info,\n"
         "and is written back. What is not changed is written byte for byte.\n\n"
         "Work that takes longer than a second shows how far it has come, where standard error is a terminal."},
    };
}

std::string helpOf(const Command& command) {
    std::string out = fmt::format("{} {}\n\n{}.\n", styled(Style::bold, "Usage:"), usageOf(command), command.summary);
    Rows operands;
    for (const Operand& operand : command.operands) {
        operands.emplace_back(operand.name, operand.help);
    }
    out += section("Operands:", table(operands)) + section("Options:", optionsTable(allOptions(command)));
    if (*command.text) {
        out += '\n' + filled(command.text, textColumns());
    }
    out += section("Exit codes:", exitCodesOf(command.exitCodes)) + section("Examples:", examplesOf(command));
    return out;
}

std::string helpOf(const Topic& topic) {
    return styled(Style::bold, topic.summary) + "\n\n" + filled(topic.text, textColumns());
}

std::string helpOfAll(const std::vector<Command>& commands) {
    std::string out = overview(commands);
    for (const Command& command : commands) {
        out += '\n' + std::string(textColumns(), '-') + "\n\n" + helpOf(command);
    }
    return out;
}

std::string overview(const std::vector<Command>& commands) {
    Rows rows;
    for (const Command& command : commands) {
        rows.emplace_back(command.name, command.summary);
    }
    Rows topicRows;
    for (const Topic& topic : topics(commands)) {
        topicRows.emplace_back(topic.name, topic.summary);
    }
    return fmt::format("{} kpifc [OPTION]... COMMAND ...\n\n", styled(Style::bold, "Usage:")) +
           filled("Reads and writes building models in STEP files (ISO 10303-21), schema IFC2X3.", textColumns()) +
           section("Commands:", table(rows)) + section("Topics:", table(topicRows)) +
           section("Options:", optionsTable(programOptions())) + '\n' +
           filled("kpifc help COMMAND, or kpifc COMMAND --help, tells what a command takes, with examples.\n"
                  "Exit codes: 0 fine; 1 done, but the file has problems; 2 could not be done; kpifc help exit-codes\n"
                  "tells more.",
                  textColumns()) +
           section("Examples:", "  kpifc info house.ifc\n"
                                "  kpifc tree house.ifc\n"
                                "  kpifc show house.ifc '#15'\n"
                                "  kpifc set house.ifc \"#15.Name='North'\" -o house_new.ifc\n");
}

} // namespace kpifc
