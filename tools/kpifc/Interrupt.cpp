#include "Interrupt.h"

#include <csignal>

#include <unistd.h>

namespace kpifc {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
volatile std::sig_atomic_t noted = 0;

void handle(int signal, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    for (const int each : kSignals) {
        sigaddset(&action.sa_mask, each); // none is noted while another one is
    }
    action.sa_flags = 0; // calls that wait are interrupted, so that somebody looks
    sigaction(signal, &action, nullptr);
}

/// A signal that comes just before a call that waits does not interrupt it; the next alarm does.
void alarmAgain(int) {
    alarm(1);
}

void note(int signal) {
    noted = signal;
    for (const int each : kSignals) {
        handle(each, SIG_DFL);
    }
    handle(SIGALRM, alarmAgain);
    alarm(1);
}

} // namespace

void catchInterrupts() {
    for (const int signal : kSignals) {
        struct sigaction former = {};
        if (sigaction(signal, nullptr, &former) == 0 && former.sa_handler != SIG_IGN) {
            handle(signal, note);
        }
    }
}

bool isInterrupted() {
    return noted != 0;
}

void stopIfInterrupted() {
    if (noted != 0) {
        throw Interrupted{noted};
    }
}

} // namespace kpifc
