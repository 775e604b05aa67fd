#include "part21/StepValueText.h"

#include "part21/Lexer.h"

namespace KP_SDAI {

namespace {

constexpr int kDeepest = 100;

const char* readValues(const char* p, const char* end, std::vector<KpStepValue>& values, int depth, unsigned& issues);

const char* readValue(const char* p, const char* end, KpStepValue& value, int depth, unsigned& issues) {
    using Kind = KpStepValue::Kind;
    const char* const begin = p;
    if (*p == '\'') {
        p = KpStepText::stringEnd(p + 1, end);
        if (!p) return nullptr;
        value.kind = Kind::string;
        KpStepText::decode({begin + 1, static_cast<std::size_t>(p - begin - 2)}, value.text, issues);
        return p;
    }
    if (*p == '$' || *p == '*') {
        value.kind = *p == '$' ? Kind::unset : Kind::derived;
        return p + 1;
    }
    if (*p == '(') {
        value.kind = Kind::list;
        return depth < kDeepest ? readValues(p + 1, end, value.items, depth + 1, issues) : nullptr;
    }
    if (lexer::isKeywordStart(*p)) {
        p = lexer::keywordEnd(p);
        value.kind = Kind::typed;
        value.text.assign(begin, p);
        p = lexer::skipBlanks(p, end);
        return *p == '(' && depth < kDeepest ? readValues(p + 1, end, value.items, depth + 1, issues) : nullptr;
    }
    if (*p == '.' || *p == '"') {
        const char quote = *p;
        value.kind = quote == '.' ? Kind::enumeration : Kind::binary;
        for (++p; *p != quote; ++p)
            if (p == end || !lexer::isKeywordPart(*p)) return nullptr;
        value.text.assign(begin + 1, p);
        return p + 1;
    }
    value.kind = *p == '#' ? Kind::reference : Kind::number;
    if (*p == '#' || *p == '+' || *p == '-') ++p;
    if (!lexer::isDigit(*p)) return nullptr;
    while (lexer::isDigit(*p) || (value.kind == Kind::number && *p && std::strchr(".eE+-", *p))) ++p;
    value.text.assign(begin, p);
    return p;
}

const char* readValues(const char* p, const char* end, std::vector<KpStepValue>& values, int depth, unsigned& issues) {
    p = lexer::skipBlanks(p, end);
    if (*p == ')') return p + 1;
    for (;;) {
        p = readValue(p, end, values.emplace_back(), depth, issues);
        if (!p) return nullptr;
        p = lexer::skipBlanks(p, end);
        if (*p == ')') return p + 1;
        if (*p != ',') return nullptr;
        p = lexer::skipBlanks(p + 1, end);
    }
}

} // namespace

const char* readStepValues(const char* p, const char* end, std::vector<KpStepValue>& values, unsigned& textIssues) {
    return readValues(p, end, values, 0, textIssues);
}

static void writeStepValue(const KpStepValue& value, std::string& out) {
    using Kind = KpStepValue::Kind;
    switch (value.kind) {
    case Kind::unset: out += '$'; break;
    case Kind::derived: out += '*'; break;
    case Kind::string:
        out += '\'';
        KpStepText::encode(value.text, out);
        out += '\'';
        break;
    case Kind::enumeration: out += '.' + value.text + '.'; break;
    case Kind::binary: out += '"' + value.text + '"'; break;
    case Kind::number:
    case Kind::reference: out += value.text; break;
    case Kind::typed: out += value.text; [[fallthrough]];
    case Kind::list:
        out += '(';
        writeStepValues(value.items, out);
        out += ')';
        break;
    }
}

void writeStepValues(const std::vector<KpStepValue>& values, std::string& out) {
    bool next = false;
    for (const KpStepValue& value : values) {
        if (next) out += ',';
        next = true;
        writeStepValue(value, out);
    }
}

bool KpStepValue::read(std::string_view text, KpStepValue& value) {
    const std::string ended(text); // a zero stands behind it
    const char* const end = ended.c_str() + ended.size();
    value = {};
    unsigned issues = 0;
    const char* const p = readValue(lexer::skipBlanks(ended.c_str(), end), end, value, 0, issues);
    return p && lexer::skipBlanks(p, end) == end;
}

std::string KpStepValue::spelled() const {
    std::string out;
    writeStepValue(*this, out);
    return out;
}

} // namespace KP_SDAI
