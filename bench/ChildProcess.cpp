#include "ChildProcess.h"

#if __has_include(<sys/wait.h>)

#include <sys/wait.h>
#include <unistd.h>

/// `ends`: of a pipe, reading and writing.
static bool receive(const int (&ends)[2], pid_t child, void* result, std::size_t size) {
    close(ends[1]);
    const bool received = read(ends[0], result, size) == static_cast<ssize_t>(size);
    close(ends[0]);
    int status = 0;
    return waitpid(child, &status, 0) == child && received && status == 0;
}

bool runInChild(const std::function<bool()>& work, void* result, std::size_t size) {
    int ends[2];
    if (pipe(ends) != 0) {
        return false;
    }
    const pid_t child = fork();
    if (child < 0) {
        close(ends[0]);
        close(ends[1]);
        return false;
    }
    if (child == 0) {
        const bool done = work() && write(ends[1], result, size) == static_cast<ssize_t>(size);
        _exit(done ? 0 : 1);
    }
    return receive(ends, child, result, size);
}

#else

bool runInChild(const std::function<bool()>&, void*, std::size_t) {
    return false;
}

#endif
