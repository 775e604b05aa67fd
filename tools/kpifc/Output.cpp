#include "Output.h"

#include "Failure.h"
#include "Terminal.h"
#include "Utf8.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace kpifc {

void tell(std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fputc('\n', stderr);
}

void tellFailure(std::string_view what) {
    std::string text = styledMessage(Style::red, "kpifc:") + ' ';
    for (std::size_t end = what.find('\n'); end != std::string_view::npos; end = what.find('\n')) {
        text += printable(what.substr(0, end)) + '\n';
        what.remove_prefix(end + 1);
    }
    tell(text + printable(what));
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
