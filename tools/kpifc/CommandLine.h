#pragma once

#include "Failure.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

/// What commands take, as data: the parser, --help, shell completion and the manual pages all come from it.
namespace kpifc {

/// Where words of the command line go, which also tells how many there may be. Flags go to a bool.
using Place = std::variant<bool*, std::string*, std::optional<std::string>*, std::optional<std::size_t>*,
                           std::vector<std::string>*>;

/// What a word stands for; completion offers what fits.
enum class WordKind { text, file, entity, topic };

/// A word that is told by its place. One of a command may take several words: the others then get those before and
/// behind them. Where two do, the first gets all but one; the command knows how to tell them apart.
struct Operand {
    const char* name; ///< "FILE"
    Place place;
    const char* help;
    WordKind kind = WordKind::text;
    bool isRequired = true;                ///< of several: at least one. std::optional is never required.
    std::vector<const char*> choices = {}; ///< all that it can be; any where empty
};

/// A file that is read, or several, as the place has room for.
Operand inputFile(const Place& place, const char* name = "FILE");

/// A word that is told by its name, "--json", with a value behind it unless it is a flag.
struct Option {
    const char* name;
    Place place;
    const char* help;
    const char* value = ""; ///< what stands for the value in help, "FILE"; empty for flags
    char letter = 0;        ///< its short form
    WordKind kind = WordKind::text;
    std::vector<const char*> choices = {}; ///< all values that there are; any where empty
    const char* excludes = "";             ///< an option that it cannot stand beside
    bool isRequired = false;
    bool isHidden = false; ///< known, but not told

    bool isFlag() const { return std::holds_alternative<bool*>(place); }
};

/// What an exit code means.
using ExitMeaning = std::pair<int, const char*>;

/// Of commands that say nothing else.
std::vector<ExitMeaning> usualExitCodes();

/// A subcommand. Texts are paragraphs that are filled anew for the width there is; lines that begin with a blank stay
/// as they are.
struct Command {
    const char* name;
    const char* summary; ///< a sentence in the imperative, without its full stop
    std::vector<Operand> operands = {};
    std::vector<Option> options = {}; ///< its own; see allOptions()
    const char* text = "";
    std::vector<ExitMeaning> exitCodes = usualExitCodes();
    std::vector<const char*> examples; ///< at least one
    /// Does what was asked for. Throws Failure where that could not be done. Keeps the places alive.
    std::function<ExitCode()> run;
};

/// A command line that cannot be understood; the text tells what was expected.
struct UsageError : Failure {
    using Failure::Failure;
};

/// All options that a command takes: its own, --strict and --threads where it reads files, and what all commands take.
std::vector<Option> allOptions(const Command& command);
/// What stands before the name of a command.
std::vector<Option> programOptions();

/// Options that stand for themselves: whoever parses looks at them first.
struct AskedFor {
    bool help = false;
    bool helpOfAll = false;
    bool version = false;
};
AskedFor& askedFor();

/// Fills the places of a command with the words behind its name. Nothing is required where help is asked for. Throws
/// UsageError.
void parse(const Command& command, const std::vector<std::string>& words);
/// Fills the program's own options with the words before the command; returns how many words these are.
std::size_t parseProgramOptions(const std::vector<std::string>& words);

/// The command of a name; throws UsageError, with suggestions, where there is none.
const Command& findCommand(const std::vector<Command>& commands, std::string_view name);

/// "kpifc set [OPTION]... IN NAME=VALUE..."
std::string usageOf(const Command& command);

} // namespace kpifc
