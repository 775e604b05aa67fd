#pragma once

namespace kpifc {

/// Thrown where work stops because a signal asked for it; nothing but main() catches it.
struct Interrupted {
    int signal;
    /// What shells see of a program that a signal ended.
    int exitCode() const { return 128 + signal; }
};

/// From now on the first SIGINT, SIGTERM or SIGHUP is noted, and the next one ends the process at once. Signals that
/// whoever started the process has it ignore stay ignored.
void catchInterrupts();

/// Whether one was noted. Costs next to nothing.
bool isInterrupted();

/// Throws Interrupted where one was noted. Whatever walks over a model calls it for every instance or more often,
/// unless it calls Output::passOn(), which does.
void stopIfInterrupted();

} // namespace kpifc
