#include "Commands.h"
#include "CompletionScripts.h"
#include "Output.h"

#include <memory>

namespace kpifc {

Command completionCommand() {
    const auto shell = std::make_shared<std::string>();
    return {.name = "completion",
            .summary = "Print a script that lets a shell complete command lines of kpifc",
            .operands = {{.name = "SHELL",
                          .place = shell.get(),
                          .help = "bash, zsh or fish",
                          .choices = {"bash", "zsh", "fish"}}},
            .text = "For bash, a line of ~/.bashrc:\n"
                    "  source <(kpifc completion bash)\n"
                    "For zsh, in a folder that ~/.zshrc adds to fpath before it calls compinit:\n"
                    "  kpifc completion zsh >~/.zsh/completions/_kpifc\n"
                    "For fish:\n"
                    "  kpifc completion fish >~/.config/fish/completions/kpifc.fish",
            .exitCodes = {{0, "printed"}, {2, "there is no script for this shell"}},
            .examples = {"kpifc completion bash"},
            .run = [shell] {
                Output output;
                output.text() = (*shell == "bash"  ? bashCompletion
                                 : *shell == "zsh" ? zshCompletion
                                                   : fishCompletion)(allCommands());
                output.finish();
                return kFine;
            }};
}

} // namespace kpifc
