#include "part21/RecordText.h"

#include "part21/Lexer.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpStepText.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>
#include <vector>

namespace KP_SDAI {

namespace {

/// A number by its value, whatever its spelling; false where it is none.
bool appendNumber(const char*& p, const char* end, std::string& out) {
    const char* const begin = *p == '+' ? p + 1 : p;
    double value;
    const auto [behind, failure] = std::from_chars(begin, end, value);
    if (failure != std::errc() || behind == begin) return false;
    if (value == 0 && !std::memchr(begin, '.', static_cast<std::size_t>(behind - begin)))
        value = 0; // integers have one
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
    p = behind;
    return true;
}

/// A text by what it says; false where it has characters that do not exist, for these all decode to the same.
bool appendText(std::string_view encoded, std::string& out) {
    std::string text;
    unsigned issues = KpStepText::kNone;
    KpStepText::decode(encoded, text, issues);
    out += '\'';
    for (const char c : text) {
        if (c == '\'') out += c; // so that one text does not look like several
        out += c;
    }
    out += '\'';
    return (issues & KpStepText::kBadCodePoint) == 0;
}

/// Brings a piece of a record into a form that is equal for pieces that say the same; false where it is not well
/// formed.
bool appendUniform(const char* p, const char* end, std::string& out) {
    for (;;) {
        p = lexer::skipBlanks(p, end);
        if (p >= end) return true;
        const char c = *p;
        if (c == '\'') {
            const char* const behind = KpStepText::stringEnd(p + 1, end);
            if (!behind || !appendText({p + 1, static_cast<std::size_t>(behind - p - 2)}, out)) return false;
            p = behind;
        } else if (c == '#') {
            out += *p++;
            while (*p == '0' && lexer::isDigit(p[1])) ++p;
            while (lexer::isDigit(*p)) out += *p++;
        } else if (lexer::isDigit(c) || c == '-' || c == '+') {
            out += ' ';
            if (!appendNumber(p, end, out)) return false;
        } else if (c == '"') {
            const auto* const close =
                static_cast<const char*>(std::memchr(p + 1, '"', static_cast<std::size_t>(end - p - 1)));
            if (!close) return false;
            out.append(p, close + 1);
            p = close + 1;
        } else {
            out += upperAscii(c);
            ++p;
            while (lexer::isKeywordPart(c) && lexer::isKeywordPart(*p)) out += upperAscii(*p++);
        }
    }
}

bool appendUniform(std::string_view text, std::string& out) {
    return appendUniform(text.data(), text.data() + text.size(), out);
}

/// The parenthesis that closes the one at `p`; null where there is none.
const char* closing(const char* p, const char* end) {
    int depth = 0;
    while (p && p < end) {
        if (*p == '\'') {
            p = KpStepText::stringEnd(p + 1, end);
        } else if (lexer::isComment(p)) {
            p = lexer::commentEnd(p, end);
        } else {
            depth += *p == '(' ? 1 : *p == ')' ? -1 : 0;
            if (depth == 0) return p;
            ++p;
        }
    }
    return nullptr;
}

/// What stands between commas that are in no text, comment or parentheses.
std::vector<std::string_view> split(std::string_view text) {
    std::vector<std::string_view> parts;
    const char* const end = text.data() + text.size();
    const char* begin = text.data();
    int depth = 0;
    for (const char* p = begin; p < end;) {
        const char* behind = p + 1;
        if (*p == '\'')
            behind = KpStepText::stringEnd(p + 1, end);
        else if (lexer::isComment(p))
            behind = lexer::commentEnd(p, end);
        else if (*p == '(')
            ++depth;
        else if (*p == ')')
            --depth;
        if (*p == ',' && depth == 0) {
            parts.emplace_back(begin, static_cast<std::size_t>(p - begin));
            begin = behind;
        }
        p = behind ? behind : end;
    }
    parts.emplace_back(begin, static_cast<std::size_t>(end - begin));
    return parts;
}

/// The same as appendUniform() for the members of a set, in an order of their own and each once.
bool appendUniformSet(std::string_view text, std::string& out) {
    const char* const end = text.data() + text.size();
    const char* const open = lexer::skipBlanks(text.data(), end);
    if (open == end || *open != '(') return appendUniform(text, out);
    const char* const close = closing(open, end);
    if (!close || lexer::skipBlanks(close + 1, end) != end) return false;
    std::vector<std::string> members;
    for (const std::string_view member : split({open + 1, static_cast<std::size_t>(close - open - 1)}))
        if (!appendUniform(member, members.emplace_back())) return false;
    std::sort(members.begin(), members.end());
    members.erase(std::unique(members.begin(), members.end()), members.end());
    for (const std::string& member : members) (out += member) += ',';
    return true;
}

/// The keyword and the parameters of a record: what stands before and between its outer parentheses.
bool takeApart(std::string_view record, std::string& before, std::string_view& parameters) {
    const char* const end = record.data() + record.size();
    const char* p = record.data();
    while (p < end && *p != '(') {
        const char* const behind = lexer::skipBlanks(p, end);
        p = behind == p ? p + 1 : behind;
    }
    const char* const close = p < end ? closing(p, end) : nullptr;
    if (!close) return false;
    const char* const behind = lexer::skipBlanks(close + 1, end);
    if (behind != end && *behind != ';') return false;
    parameters = {p + 1, static_cast<std::size_t>(close - p - 1)};
    return appendUniform({record.data(), static_cast<std::size_t>(p - record.data())}, before);
}

std::string_view withoutBlanksBefore(std::string_view text) {
    const char* const end = text.data() + text.size();
    const char* const begin = lexer::skipBlanks(text.data(), end);
    return {begin, static_cast<std::size_t>(end - begin)};
}

} // namespace

bool saysTheSame(std::string_view source, std::string_view written, const KpIfcEntityType& type) {
    if (source == written) return true;
    std::string before[2];
    std::string_view parameters[2];
    if (!takeApart(source, before[0], parameters[0]) || !takeApart(written, before[1], parameters[1])) return false;
    if (before[0] != before[1]) return false;
    const std::vector<std::string_view> a = split(parameters[0]);
    const std::vector<std::string_view> b = split(parameters[1]);
    if (a.size() != b.size()) return false;
    const auto& fields = type.recordFields();
    std::string x;
    std::string y;
    for (std::size_t i = 0; i < a.size(); ++i) {
        // Equal texts say the same, well formed or not.
        if (withoutBlanksBefore(a[i]) == withoutBlanksBefore(b[i]) ||
            (i < fields.size() && fields[i]->kind == KpIfcFieldKind::notKept))
            continue;
        x.clear();
        y.clear();
        const bool isSet = i < fields.size() && fields[i]->aggregate && fields[i]->aggregate->isSet;
        const auto append =
            isSet ? appendUniformSet : static_cast<bool (*)(std::string_view, std::string&)>(appendUniform);
        if (!append(a[i], x) || !append(b[i], y) || x != y) return false;
    }
    return true;
}

} // namespace KP_SDAI
