#include "check/HeaderForms.h"

#include <algorithm>

namespace KP_SDAI {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Takes what stands at the start of a text off it.
class Taker {
public:
    explicit Taker(std::string_view text) : m_rest(text) {}

    bool isEmpty() const { return m_rest.empty(); }
    bool take(char c) {
        const bool found = m_rest.starts_with(c);
        if (found) m_rest.remove_prefix(1);
        return found;
    }
    /// A number of so many digits; -1 where there is none.
    int number(std::size_t digits) {
        if (m_rest.size() < digits) return -1;
        int number = 0;
        for (const char c : m_rest.substr(0, digits)) {
            if (!isDigit(c)) return -1;
            number = number * 10 + (c - '0');
        }
        m_rest.remove_prefix(digits);
        return number;
    }
    bool number(std::size_t digits, int least, int most) {
        const int found = number(digits);
        return least <= found && found <= most;
    }
    bool digits() {
        const std::size_t before = m_rest.size();
        while (!m_rest.empty() && isDigit(m_rest.front())) m_rest.remove_prefix(1);
        return m_rest.size() < before;
    }

private:
    std::string_view m_rest;
};

int daysOf(int year, int month) {
    if (month == 2) return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

} // namespace

bool isImplementationLevel(std::string_view text) {
    Taker rest(text);
    if (!rest.number(1, 1, 4)) return false;
    return text == "1" || (rest.take(';') && rest.number(1, 1, 3) && rest.isEmpty());
}

bool isTimeStamp(std::string_view text) {
    Taker rest(text);
    const int year = rest.number(4);
    if (year < 0 || !rest.take('-')) return false;
    const int month = rest.number(2);
    if (month < 1 || month > 12 || !rest.take('-')) return false;
    if (!rest.number(2, 1, daysOf(year, month)) || !rest.take('T')) return false;
    if (!rest.number(2, 0, 24) || !rest.take(':') || !rest.number(2, 0, 59)) return false;
    if (!rest.take(':') || !rest.number(2, 0, 60)) return false;
    if ((rest.take('.') || rest.take(',')) && !rest.digits()) return false;
    if (rest.isEmpty() || rest.take('Z')) return rest.isEmpty();
    if (!rest.take('+') && !rest.take('-')) return false;
    if (!rest.number(2, 0, 24)) return false;
    return rest.isEmpty() || (rest.take(':') && rest.number(2, 0, 59) && rest.isEmpty());
}

std::string_view schemaNameOf(std::string_view identifier) {
    std::string_view name = identifier.substr(0, identifier.find('{'));
    while (name.ends_with(' ')) name.remove_suffix(1);
    return name;
}

bool isSchemaIdentifier(std::string_view text) {
    const std::string_view name = schemaNameOf(text);
    const bool isName = !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || isDigit(c) || c == '_';
    });
    const std::size_t brace = text.find('{');
    return isName &&
           (brace == std::string_view::npos ? text.size() == name.size() : text.find('}', brace) + 1 == text.size());
}

} // namespace KP_SDAI
