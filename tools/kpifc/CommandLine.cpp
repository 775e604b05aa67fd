#include "CommandLine.h"

#include "Files.h"
#include "Suggestions.h"
#include "Terminal.h"
#include "Utf8.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>

namespace kpifc {

std::vector<ExitMeaning> usualExitCodes() {
    return {{0, "done, and nothing was wrong"},
            {1, "done, but the file has problems, which kpifc info lists"},
            {2, "could not be done"}};
}

Operand inputFile(const Place& place, const char* name) {
    const bool areSeveral = std::holds_alternative<std::vector<std::string>*>(place);
    return {.name = name,
            .place = place,
            .help = areSeveral ? "STEP files; - for standard input" : "STEP file; - for standard input",
            .kind = WordKind::file};
}

AskedFor& askedFor() {
    static AskedFor asked;
    return asked;
}

namespace {

Option helpOption() {
    return {.name = "--help", .place = &askedFor().help, .help = "Print this help", .letter = 'h'};
}

Option colorOption() {
    return {.name = "--color",
            .place = &colorMode(),
            .help = "Colours: auto, always or never; by default auto: on terminals, unless NO_COLOR is set",
            .value = "WHEN",
            .choices = {"auto", "always", "never"}};
}

bool readsFiles(const Command& command) {
    return std::any_of(command.operands.begin(), command.operands.end(),
                       [](const Operand& operand) { return operand.kind == WordKind::file; });
}

bool takesSeveral(const Operand& operand) {
    return std::holds_alternative<std::vector<std::string>*>(operand.place);
}

bool isRequired(const Operand& operand) {
    return operand.isRequired && !std::holds_alternative<std::optional<std::string>*>(operand.place);
}

} // namespace

std::vector<Option> allOptions(const Command& command) {
    std::vector<Option> options = command.options;
    if (readsFiles(command)) {
        options.push_back({.name = "--strict",
                           .place = &openOptions().strict,
                           .help = "Fail where a file departs from the standard, however little"});
        options.push_back({.name = "--threads",
                           .place = &threadCount(),
                           .help = "Threads that read large files; by default as many as there are cores",
                           .value = "N"});
    }
    options.push_back(colorOption());
    options.push_back(helpOption());
    return options;
}

std::vector<Option> programOptions() {
    return {colorOption(),
            helpOption(),
            {.name = "--help-all", .place = &askedFor().helpOfAll, .help = "Print the help of all commands"},
            {.name = "--version", .place = &askedFor().version, .help = "Print the version"}};
}

std::string usageOf(const Command& command) {
    std::string line = fmt::format("kpifc {} [OPTION]...", command.name);
    for (const Operand& operand : command.operands) {
        line += fmt::format(fmt::runtime(isRequired(operand) ? " {}{}" : " [{}]{}"), operand.name,
                            takesSeveral(operand) ? "..." : "");
    }
    for (const Option& option : command.options) {
        if (option.isRequired) {
            line += option.letter ? fmt::format(" -{} {}", option.letter, option.value)
                                  : fmt::format(" {} {}", option.name, option.value);
        }
    }
    return line;
}

const Command& findCommand(const std::vector<Command>& commands, std::string_view name) {
    std::vector<std::string> names;
    for (const Command& command : commands) {
        if (command.name == name) {
            return command;
        }
        names.emplace_back(command.name);
    }
    const std::string near = didYouMean(suggestions(names, name));
    throw UsageError(
        fmt::format("there is no command \"{}\"{} kpifc help lists them", printable(name), near.empty() ? ";" : near));
}

namespace {

/// Takes the words of one command line apart. `subject` is whose options they are: "kpifc info".
class Parser {
public:
    Parser(std::string subject, std::vector<Option> options, const std::vector<std::string>& words)
        : m_subject(std::move(subject)), m_options(std::move(options)), m_words(words) {}

    /// Reads options up to the end or, where `stopsAtOperand`, up to the first word that is none; the others are
    /// operands. Returns the place behind what was read.
    std::size_t read(bool stopsAtOperand) {
        while (m_next < m_words.size()) {
            const std::string& word = m_words[m_next];
            if (word == "--") {
                m_operands.insert(m_operands.end(), m_words.begin() + static_cast<std::ptrdiff_t>(m_next) + 1,
                                  m_words.end());
                m_next = m_words.size();
            } else if (word.starts_with("--")) {
                longOption(word);
            } else if (word.starts_with('-') && word.size() > 1) {
                letters(word);
            } else if (stopsAtOperand) {
                break;
            } else {
                m_operands.push_back(word);
                ++m_next;
            }
        }
        return m_next;
    }

    void check() const {
        for (const Option& option : m_options) {
            if (option.isRequired && !has(option.name)) {
                refuse(fmt::format("needs {} {}", option.name, option.value));
            }
            if (*option.excludes && has(option.name) && has(option.excludes)) {
                refuse(fmt::format("{} excludes {}", option.name, option.excludes));
            }
        }
    }

    void assignOperands(const std::vector<Operand>& operands) const {
        std::size_t required = 0;
        for (const Operand& operand : operands) {
            required += isRequired(operand);
        }
        std::size_t next = 0;
        std::size_t spare = m_operands.size() - std::min(m_operands.size(), required);
        for (const Operand& operand : operands) {
            if (isRequired(operand) && next == m_operands.size()) {
                refuse(fmt::format("needs {}", operand.name));
            }
            std::size_t count = isRequired(operand) ? 1 : 0;
            if (takesSeveral(operand) || (count == 0 && spare > 0)) {
                const std::size_t more = takesSeveral(operand) ? spare : 1;
                count += more;
                spare -= more;
            }
            for (; count > 0; --count) {
                checkChoice(operand.name, operand.choices, m_operands[next]);
                assign(operand.place, m_operands[next++]);
            }
        }
        if (next < m_operands.size()) {
            refuse(fmt::format("takes no further operand \"{}\"", printable(m_operands[next])));
        }
    }

private:
    [[noreturn]] void refuse(const std::string& what) const { throw UsageError(m_subject + ": " + what); }

    bool has(std::string_view name) const { return std::find(m_given.begin(), m_given.end(), name) != m_given.end(); }

    void longOption(const std::string& word) {
        const std::string name = word.substr(0, word.find('='));
        std::vector<std::string> names;
        for (const Option& option : m_options) {
            if (option.name == name) {
                ++m_next;
                return take(option, name,
                            name.size() < word.size() ? std::optional(word.substr(name.size() + 1)) : std::nullopt);
            }
            if (!option.isHidden) {
                names.emplace_back(option.name);
            }
        }
        refuse(fmt::format("there is no option {}{}", printable(name), didYouMean(suggestions(names, name))));
    }

    /// "-h", "-o FILE", "-oFILE"; several flags may share a word.
    void letters(const std::string& word) {
        ++m_next;
        for (std::size_t i = 1; i < word.size(); ++i) {
            const auto option = std::find_if(m_options.begin(), m_options.end(),
                                             [&](const Option& each) { return each.letter && each.letter == word[i]; });
            if (option == m_options.end()) {
                refuse(fmt::format("there is no option {}", printable(word)));
            }
            const std::string rest = word.substr(i + 1);
            if (!option->isFlag()) {
                return take(*option, fmt::format("-{}", word[i]), rest.empty() ? std::nullopt : std::optional(rest));
            }
            take(*option, option->name, std::nullopt);
        }
    }

    void take(const Option& option, const std::string& spelt, std::optional<std::string> value) {
        m_given.emplace_back(option.name);
        if (bool* const* flag = std::get_if<bool*>(&option.place)) {
            if (value) {
                refuse(fmt::format("{} takes no value", option.name));
            }
            **flag = true;
            return;
        }
        if (!value) {
            if (m_next == m_words.size()) {
                refuse(fmt::format("{} needs a value, {}", spelt, option.value));
            }
            value = m_words[m_next++];
        }
        checkChoice(option.name, option.choices, *value);
        if (!assign(option.place, *value)) {
            refuse(fmt::format("{}: found \"{}\", expected a number that is not negative", option.name,
                               printable(*value)));
        }
    }

    void checkChoice(std::string_view what, const std::vector<const char*>& choices, const std::string& word) const {
        const std::vector<std::string> known(choices.begin(), choices.end());
        if (!known.empty() && std::find(known.begin(), known.end(), word) == known.end()) {
            refuse(fmt::format("{}: found \"{}\", expected {}{}", what, printable(word), fmt::join(known, ", "),
                               didYouMean(suggestions(known, word))));
        }
    }

    /// False where the word is not of the kind that the place wants.
    static bool assign(const Place& place, const std::string& word) {
        if (std::string* const* text = std::get_if<std::string*>(&place)) {
            **text = word;
        } else if (std::optional<std::string>* const* maybe = std::get_if<std::optional<std::string>*>(&place)) {
            **maybe = word;
        } else if (std::vector<std::string>* const* texts = std::get_if<std::vector<std::string>*>(&place)) {
            (*texts)->push_back(word);
        } else if (std::optional<std::size_t>* const* number = std::get_if<std::optional<std::size_t>*>(&place)) {
            std::size_t value = 0;
            const char* const end = word.data() + word.size();
            const auto [behind, error] = std::from_chars(word.data(), end, value);
            **number = value;
            return error == std::errc() && behind == end && !word.empty();
        }
        return true;
    }

    const std::string m_subject;
    const std::vector<Option> m_options;
    const std::vector<std::string>& m_words;
    std::size_t m_next = 0;
    std::vector<std::string> m_operands;
    std::vector<std::string> m_given; ///< names of options
};

} // namespace

void parse(const Command& command, const std::vector<std::string>& words) {
    Parser parser(command.name, allOptions(command), words);
    try {
        parser.read(false);
        if (!askedFor().help) {
            parser.check();
            parser.assignOperands(command.operands);
        }
    } catch (const UsageError& error) {
        throw UsageError(
            fmt::format("{}\nUsage: {}\nkpifc {} --help tells more", error.what(), usageOf(command), command.name));
    }
}

std::size_t parseProgramOptions(const std::vector<std::string>& words) {
    return Parser("kpifc", programOptions(), words).read(true);
}

} // namespace kpifc
