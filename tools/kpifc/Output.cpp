#include "Output.h"

#include "Failure.h"
#include "Terminal.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace kpifc {

void tell(std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fputc('\n', stderr);
}

void tellFailure(std::string_view what) {
    tell(styledMessage(Style::red, "kpifc:") + ' ' + std::string(what));
}

bool Output::s_hasWritten = false;

static void require(bool done) {
    if (!done) {
        stopIfInterrupted();
        if (errno == EPIPE) {
            throw NobodyReads{};
        }
        throw Failure(std::string("cannot write to standard output: ") + std::strerror(errno));
    }
}

void Output::write() {
    s_hasWritten = s_hasWritten || !m_text.empty();
    require(std::fwrite(m_text.data(), 1, m_text.size(), stdout) == m_text.size());
    m_text.clear();
}

void Output::finish() {
    write();
    require(std::fflush(stdout) == 0);
}

} // namespace kpifc
