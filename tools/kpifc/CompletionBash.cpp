#include "CompletionScripts.h"
#include "CompletionWords.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace kpifc {

using namespace completion;

namespace {

/// COMMAND:OPTION and COMMAND:WORD choose what is offered; behind = bash begins a new word.
constexpr std::string_view kScript = R"sh(# bash completion of kpifc: source <(kpifc completion bash)
_kpifc() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]} command= words= files= i
  if [[ $prev == = && $COMP_CWORD -ge 2 ]]; then prev=${COMP_WORDS[COMP_CWORD-2]}; fi
  if [[ $cur == = ]]; then cur=; fi
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
    -* | =) ;;
    *) if [[ ${COMP_WORDS[i-1]} != = && ${COMP_WORDS[i-1]} != --color ]]; then
        command=${COMP_WORDS[i]}
        break
      fi ;;
    esac
  done
  case $command:$prev in
@VALUES@  *)
    case $command:$cur in
    :-*) words='@OPTIONS@' ;;
    :*) words='@COMMANDS@' ;;
@OPERANDS@    esac ;;
  esac
  COMPREPLY=($(compgen -W "$words" -- "$cur"))
  if [[ $files ]]; then
    compopt -o filenames 2>/dev/null
    local IFS=$'\n'
    COMPREPLY+=($(compgen -f -- "$cur"))
  fi
}
complete -F _kpifc kpifc
)sh";

std::string spellings(const std::vector<Option>& options) {
    Words words;
    for (const Option& option : toldOptions(options)) {
        words.emplace_back(option.name);
        if (option.letter) {
            words.push_back(fmt::format("-{}", option.letter));
        }
    }
    return fmt::format("{}", fmt::join(words, " "));
}

std::string valuesOf(std::string_view command, const std::vector<Option>& options) {
    std::string out;
    for (const Option& option : toldOptions(options)) {
        if (!option.isFlag()) {
            const std::string letter = option.letter ? fmt::format(" | {}:-{}", command, option.letter) : "";
            out += fmt::format("  {}:{}{}) words='{}' files={} ;;\n", command, option.name, letter,
                               fmt::join(option.choices, " "), option.kind == WordKind::file ? "1" : "");
        }
    }
    return out;
}

} // namespace

std::string bashCompletion(const std::vector<Command>& commands) {
    std::string values = valuesOf("", programOptions());
    std::string operands;
    for (const Command& command : commands) {
        const std::vector<Option> options = allOptions(command);
        values += valuesOf(command.name, options);
        operands += fmt::format("    {}:-*) words='{}' ;;\n", command.name, spellings(options));
        const std::string words = hasOperand(command, WordKind::entity)
                                      ? fmt::format("$({})", kEntities)
                                      : fmt::format("'{}'", fmt::join(choicesOf(command, commands), " "));
        operands += fmt::format("    {}:*) words={} files={} ;;\n", command.name, words,
                                hasOperand(command, WordKind::file) ? "1" : "");
    }
    return withTexts(kScript, {{"VALUES", values},
                               {"OPTIONS", spellings(programOptions())},
                               {"COMMANDS", fmt::format("{}", fmt::join(namesOf(commands), " "))},
                               {"OPERANDS", operands}});
}

} // namespace kpifc
