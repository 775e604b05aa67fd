#include "emit/Printer.h"

#include <algorithm>
#include <vector>

namespace kpifcgen::emit {

namespace {

class Printer {
public:
    Printer(std::string_view skeleton, std::initializer_list<Value> values)
        : m_skeleton(skeleton), m_values(values), m_used(values.size(), false) {}

    std::string run() {
        checkValues();
        std::string_view rest = m_skeleton;
        if (rest.starts_with('\n')) {
            rest.remove_prefix(1);
        }
        while (!rest.empty()) {
            const auto end = rest.find('\n');
            const auto length = end == std::string_view::npos ? rest.size() : end + 1;
            printLine(rest.substr(0, length));
            rest.remove_prefix(length);
        }
        for (std::size_t i = 0; i < m_used.size(); ++i) {
            if (!m_used[i]) {
                fail("no hole is named", std::data(m_values)[i].hole);
            }
        }
        return std::move(m_result);
    }

private:
    /// `line` includes its line feed, which only the last line may lack.
    void printLine(std::string_view line) {
        const auto indentation = line.substr(0, line.find_first_not_of(' '));
        const auto content = trim(line);
        if (content.size() > 2 && content.front() == '$' && content.find('$', 1) == content.size() - 1) {
            printBlock(indentation, valueOf(content.substr(1, content.size() - 2)), line.ends_with('\n'));
            return;
        }
        while (!line.empty()) {
            const auto begin = line.find('$');
            m_result += line.substr(0, begin);
            if (begin == std::string_view::npos) {
                return;
            }
            const auto end = line.find('$', begin + 1);
            if (end == std::string_view::npos) {
                fail("a hole does not end", trim(line.substr(begin)));
            }
            const auto hole = line.substr(begin + 1, end - begin - 1);
            if (hole.empty()) {
                m_result += '$';
            } else {
                appendIndented(valueOf(hole), indentation);
            }
            line.remove_prefix(end + 1);
        }
    }

    void printBlock(std::string_view indentation, std::string_view text, bool endLine) {
        if (text.ends_with('\n')) {
            text.remove_suffix(1);
        }
        if (!text.empty()) {
            if (!text.starts_with('\n')) {
                m_result += indentation;
            }
            appendIndented(text, indentation);
            m_result += endLine ? "\n" : "";
        }
    }

    void appendIndented(std::string_view text, std::string_view indentation) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            m_result += text[i];
            if (text[i] == '\n' && i + 1 < text.size() && text[i + 1] != '\n') {
                m_result += indentation;
            }
        }
    }

    std::string_view valueOf(std::string_view hole) {
        const auto found = std::ranges::find(m_values, hole, &Value::hole);
        if (found == m_values.end()) {
            fail("no text is given for the hole", hole);
        }
        m_used[static_cast<std::size_t>(found - m_values.begin())] = true;
        return found->text;
    }

    void checkValues() const {
        for (auto value = m_values.begin(); value != m_values.end(); ++value) {
            if (std::find_if(m_values.begin(), value, [&](const Value& one) { return one.hole == value->hole; }) !=
                value) {
                fail("two texts are given for the hole", value->hole);
            }
        }
    }

    static std::string_view trim(std::string_view text) {
        const auto begin = text.find_first_not_of(" \n");
        if (begin == std::string_view::npos) {
            return {};
        }
        return text.substr(begin, text.find_last_not_of(" \n") - begin + 1);
    }

    [[noreturn]] void fail(std::string_view what, std::string_view name) const {
        throw PrinterError(std::string(what) + " '" + std::string(name) + "' in the skeleton:\n" +
                           std::string(m_skeleton));
    }

    std::string_view m_skeleton;
    std::initializer_list<Value> m_values;
    std::vector<bool> m_used;
    std::string m_result;
};

} // namespace

std::string print(std::string_view skeleton, std::initializer_list<Value> values) {
    return Printer(skeleton, values).run();
}

} // namespace kpifcgen::emit
