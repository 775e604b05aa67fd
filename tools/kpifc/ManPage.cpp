#include "ManPage.h"

#include "HelpText.h"
#include "TextLayout.h"

#include <KpIfcCore/KpIfcVersion.h>

#include <fmt/format.h>

#include <algorithm>

namespace kpifc {

namespace {

/// Text as it is, with no character that roff takes for something else.
std::string escaped(std::string_view text) {
    std::string out;
    bool isLineStart = true;
    for (const char c : text) {
        if (isLineStart && (c == '.' || c == '\'')) {
            out += "\\&";
        }
        out += c == '\\'   ? "\\e"
               : c == '-'  ? "\\-"
               : c == '\'' ? "\\(aq"
               : c == '^'  ? "\\(ha"
               : c == '~'  ? "\\(ti"
                           : std::string(1, c);
        isLineStart = c == '\n';
    }
    return out;
}

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return text;
}

std::string start(const std::string& page, std::string_view summary) {
    std::string phrase(summary);
    phrase[0] = phrase[0] >= 'A' && phrase[0] <= 'Z' ? static_cast<char>(phrase[0] + 32) : phrase[0];
    return fmt::format(".TH {} 1 {} \"kpifc {}\" \"User Commands\"\n.SH NAME\n{} \\- {}\n", escaped(upper(page)),
                       KPIFC_VERSION_DATE, KPIFC_VERSION, escaped(page), escaped(phrase));
}

std::string entry(std::string_view what, std::string_view text) {
    return fmt::format(".TP\n.B {}\n{}\n", escaped(what), escaped(text));
}

std::string fixed(std::string_view lines) {
    return fmt::format(".PP\n.nf\n{}.fi\n", escaped(lines));
}

std::string paragraphs(std::string_view text) {
    std::string out;
    for (const TextBlock& block : blocksOf(text)) {
        out += block.isFixed ? fixed(block.text) : fmt::format(".PP\n{}\n", escaped(block.text));
    }
    return out;
}

/// A section's first paragraph needs no macro, and linters say so.
std::string section(std::string_view heading, std::string text) {
    constexpr std::string_view kParagraph = ".PP\n";
    if (text.starts_with(kParagraph)) {
        text.erase(0, kParagraph.size());
    }
    return text.empty() ? "" : fmt::format(".SH {}\n{}", heading, text);
}

std::string optionsText(const std::vector<Option>& options) {
    std::string out;
    for (const Option& option : options) {
        out += option.isHidden ? "" : entry(spelling(option), option.help);
    }
    return out;
}

std::string exitStatus(const std::vector<ExitMeaning>& codes) {
    std::string out;
    for (const auto& [code, meaning] : codes) {
        out += entry(std::to_string(code), meaning);
    }
    return out;
}

} // namespace

std::string manPage(const Command& command) {
    const std::string page = fmt::format("kpifc-{}", command.name);
    std::string operands;
    for (const Operand& operand : command.operands) {
        operands += entry(operand.name, operand.help);
    }
    std::string examples;
    for (const char* example : command.examples) {
        examples += fmt::format("{}\n", example);
    }
    return start(page, command.summary) + section("SYNOPSIS", escaped(usageOf(command)) + '\n') +
           section("DESCRIPTION", fmt::format("{}.\n", escaped(command.summary)) + paragraphs(command.text)) +
           section("OPERANDS", operands) + section("OPTIONS", optionsText(allOptions(command))) +
           section("EXIT STATUS", exitStatus(command.exitCodes)) + section("EXAMPLES", fixed(examples)) +
           section("SEE ALSO", ".BR kpifc (1)\n");
}

std::string manPage(const std::vector<Command>& commands) {
    std::string list;
    std::string others;
    for (const Command& command : commands) {
        const std::string page = escaped(fmt::format("kpifc-{}", command.name));
        list += fmt::format(".TP\n.BR {} (1)\n{}.\n", page, escaped(command.summary));
        others += fmt::format("{}.BR {} (1)", others.empty() ? "" : " ,\n", page);
    }
    std::string text = start("kpifc", "reads and writes building models in STEP files") +
                       section("SYNOPSIS", "kpifc [OPTION]... COMMAND ...\n") +
                       section("DESCRIPTION", "Reads and writes building models in STEP files (ISO 10303\\-21), schema "
                                              "IFC2X3.\n") +
                       section("COMMANDS", list) + section("OPTIONS", optionsText(programOptions()));
    for (const Topic& topic : topics(commands)) {
        text += section(std::string_view(topic.name) == "exit-codes" ? "EXIT STATUS" : upper(topic.name),
                        paragraphs(topic.text));
    }
    return text + section("SEE ALSO", others + '\n');
}

} // namespace kpifc
