#include "CompletionScripts.h"
#include "CompletionWords.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace kpifc {

using namespace completion;

namespace {

/// Works as a file of the function path and as a script to source.
constexpr std::string_view kScript = R"sh(#compdef kpifc
# zsh completion of kpifc: kpifc completion zsh >_kpifc, in a folder of $fpath
_kpifc_entities() {
  local -a names=(${(f)"$(@ENTITIES@)"})
  compadd -a names
}
_kpifc_files_entities() {
  _alternative 'files:file:_files' 'entities:entity:_kpifc_entities'
}
_kpifc() {
  local curcontext=$curcontext state line
  local -a commands=(
@COMMANDS@  )
  _arguments -C @OPTIONS@ \
    '1:command:->command' '*::argument:->arguments'
  case $state in
  command) _describe command commands ;;
  arguments)
    case $words[1] in
@CASES@    esac ;;
  esac
}
if [[ $funcstack[1] == _kpifc ]]; then _kpifc "$@"; else compdef _kpifc kpifc; fi
)sh";

/// For the texts in brackets and behind colons of _arguments.
std::string plain(std::string_view text) {
    std::string out;
    for (const char c : text) {
        out += std::string_view("[]:\\").find(c) != std::string_view::npos ? std::string{'\\', c} : std::string(1, c);
    }
    return out;
}

std::string optionSpecs(const std::vector<Option>& options) {
    Words specs;
    for (const Option& option : toldOptions(options)) {
        const std::string action = option.choices.empty() ? option.kind == WordKind::file ? "_files" : ""
                                                          : fmt::format("({})", fmt::join(option.choices, " "));
        const std::string value = option.isFlag() ? "" : fmt::format(":{}:{}", plain(option.value), action);
        specs.push_back(
            quoted(fmt::format("{}{}[{}]{}", option.name, option.isFlag() ? "" : "=", plain(option.help), value)));
        if (option.letter) {
            specs.push_back(quoted(fmt::format("-{}[{}]{}", option.letter, plain(option.help), value)));
        }
    }
    return fmt::format("{}", fmt::join(specs, " \\\n        "));
}

std::string operandSpec(const Command& command, const std::vector<Command>& commands) {
    const bool files = hasOperand(command, WordKind::file);
    const bool entities = hasOperand(command, WordKind::entity);
    const Words choices = choicesOf(command, commands);
    const std::string action = files && entities  ? "_kpifc_files_entities"
                               : files            ? "_files"
                               : entities         ? "_kpifc_entities"
                               : !choices.empty() ? fmt::format("({})", fmt::join(choices, " "))
                                                  : "";
    return quoted("*:operand:" + action);
}

} // namespace

std::string zshCompletion(const std::vector<Command>& commands) {
    std::string names;
    std::string cases;
    for (const Command& command : commands) {
        names += fmt::format("    {}\n", quoted(fmt::format("{}:{}", command.name, plain(command.summary))));
        cases += fmt::format("    {})\n      _arguments -s {} \\\n        {} ;;\n", command.name,
                             optionSpecs(allOptions(command)), operandSpec(command, commands));
    }
    return withTexts(kScript, {{"ENTITIES", std::string(kEntities)},
                               {"COMMANDS", names},
                               {"OPTIONS", optionSpecs(programOptions())},
                               {"CASES", cases}});
}

} // namespace kpifc
