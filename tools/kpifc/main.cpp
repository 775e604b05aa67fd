#include "Commands.h"
#include "Failure.h"
#include "HelpText.h"
#include "Interrupt.h"
#include "Output.h"

#include <KpIfcCore/KpIfcVersion.h>

#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <vector>

using namespace kpifc;

static ExitCode tellHelp(const std::string& text) {
    Output output;
    output.text() = text;
    output.finish();
    return kFine;
}

static ExitCode run(std::vector<std::string> words) {
    words.erase(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(parseProgramOptions(words)));
    const std::vector<Command> commands = allCommands();
    if (askedFor().version) {
        return tellHelp("kpifc " KPIFC_VERSION "\n");
    }
    if (askedFor().helpOfAll) {
        return tellHelp(helpOfAll(commands));
    }
    if (words.empty()) {
        if (askedFor().help) {
            return tellHelp(overview(commands));
        }
        throw UsageError("no command is given; kpifc help lists them");
    }
    const Command& command = findCommand(commands, words.front());
    parse(command, {words.begin() + 1, words.end()});
    return askedFor().help ? tellHelp(helpOf(command)) : command.run();
}

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // files that are being written are to be cleared away
    catchInterrupts();
    try {
        return run({argv + (argc > 0), argv + argc});
    } catch (const std::bad_alloc&) {
        tell("kpifc: out of memory"); // which needs none
    } catch (const Interrupted& interrupted) {
        tell("kpifc: interrupted");
        return interrupted.exitCode();
    } catch (const NobodyReads&) {
        return 128 + SIGPIPE; // as of programs that die of it
    } catch (const std::exception& failure) {
        tellFailure(failure.what());
    }
    return kFailed;
}
