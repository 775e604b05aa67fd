#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

/// The program just built, running beside the test, with a terminal or a file for its messages.
class Child {
public:
    enum class Messages { toFile, toTerminal };
    /// Runs it in a folder. Results go to `output`, a path there.
    Child(const std::filesystem::path& folder, std::vector<std::string> arguments, Messages messages,
          const std::string& output = "results");
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    /// Kills it where it still runs.
    ~Child();

    void send(int signal) const;
    /// Waits for its end, as waitpid() tells it, for so long that nothing but a hang takes longer; -1 then.
    int wait();
    /// What it wrote to standard error, after its end.
    const std::string& messages() const { return m_messages; }

private:
    void read();

    std::filesystem::path m_folder;
    pid_t m_process = -1;
    int m_terminal = -1; ///< our end of it
    std::string m_messages;
};
