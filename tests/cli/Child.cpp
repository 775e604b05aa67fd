#include "Child.h"

#include "Runner.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

Child::Child(const std::filesystem::path& folder, std::vector<std::string> arguments, Messages messages,
             const std::string& output)
    : m_folder(folder) {
    const std::string program = programPath();
    std::vector<char*> argv{const_cast<char*>("kpifc")};
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    winsize size = {};
    size.ws_row = 24;
    size.ws_col = 60;
    m_process = forkpty(&m_terminal, nullptr, nullptr, &size);
    if (m_process != 0) {
        EXPECT_GT(m_process, 0);
        fcntl(m_terminal, F_SETFL, O_NONBLOCK);
        return;
    }
    bool isReady = chdir(folder.c_str()) == 0 && setenv("TERM", "xterm", 1) == 0;
    const int results = open(output.c_str(), O_WRONLY | O_CREAT, 0600);
    isReady = isReady && dup2(results, STDOUT_FILENO) >= 0;
    if (messages == Messages::toFile) {
        isReady = isReady && dup2(open("messages", O_WRONLY | O_CREAT, 0600), STDERR_FILENO) >= 0;
    }
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        std::signal(signal, SIG_DFL);
    }
    if (isReady) {
        execv(program.c_str(), argv.data());
    }
    _exit(99);
}

Child::~Child() {
    if (m_process > 0) {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
    close(m_terminal);
}

void Child::send(int signal) const {
    kill(m_process, signal);
}

void Child::read() {
    char piece[4096];
    for (ssize_t got = 0; (got = ::read(m_terminal, piece, sizeof piece)) > 0;) {
        m_messages.append(piece, static_cast<std::size_t>(got));
    }
}

int Child::wait() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    int status = -1;
    while (waitpid(m_process, &status, WNOHANG) == 0) {
        read();
        if (std::chrono::steady_clock::now() > deadline) {
            return -1;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    m_process = -1;
    read();
    if (std::filesystem::exists(m_folder / "messages")) {
        m_messages += contentOf(m_folder / "messages");
    }
    return status;
}
