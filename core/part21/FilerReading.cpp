#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcGUID.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include "model/ModelData.h"
#include "part21/Lexer.h"

#include <charconv>
#include <cstring>
#include <limits>

using namespace KP_SDAI;

/// Short texts recur; equal ones share one place. A direct-mapped cache finds nearly all of them at no growing cost.
struct KpSpfFilerBase::TextCache {
    const char* text;
};

namespace {

constexpr std::size_t kCacheSize = 1 << 14;
constexpr std::size_t kLongestShared = 48;

std::size_t hashOf(std::string_view text) {
    std::uint64_t hash = text.size() * 0x9E3779B97F4A7C15u;
    const char* p = text.data();
    std::size_t left = text.size();
    for (; left >= 8; left -= 8, p += 8) {
        std::uint64_t word;
        std::memcpy(&word, p, 8);
        hash = (hash ^ word) * 0xFF51AFD7ED558CCDu;
        hash ^= hash >> 32;
    }
    std::uint64_t word = 0;
    std::memcpy(&word, p, left);
    hash = (hash ^ word) * 0xFF51AFD7ED558CCDu;
    return (hash ^ (hash >> 29)) & (kCacheSize - 1);
}

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

bool endsParameter(char c) {
    return c == ',' || c == ')';
}

} // namespace

KpSpfFilerBase::KpSpfFilerBase(ModelData& data) : m_data(data) {}
KpSpfFilerBase::~KpSpfFilerBase() = default;

KpArena& KpSpfFilerBase::arena() {
    return m_data.arena;
}

void KpSpfFilerBase::skipBlanks() {
    if (static_cast<unsigned char>(*m_cur) > ' ' && *m_cur != '/' && *m_cur != '\\') return;
    m_cur = lexer::skipBlanks(m_cur, m_end);
}

void KpSpfFilerBase::broken(const char* expected) {
    if (m_broken) return;
    m_broken = true;
    m_brokenExpected = expected;
}

/// Goes to the start of the next parameter; false where the record has no more or cannot be parsed.
bool KpSpfFilerBase::beginField(bool separator) {
    if (m_nested) return !m_broken;
    ++m_field;
    m_fieldFailed = false;
    if (m_broken) return false;
    skipBlanks();
    if (separator && *m_cur == ',') {
        ++m_cur;
        skipBlanks();
    } else if (*m_cur == ')') {
        m_missing = true;
        return false;
    } else if (separator) {
        broken("',' or ')'");
        return false;
    }
    m_fieldStart = m_cur;
    if (*m_cur == ')' || *m_cur == ',') {
        broken("a parameter");
        return false;
    }
    return true;
}

bool KpSpfFilerBase::beginMember(bool separator) {
    if (m_broken || m_fieldFailed) return false;
    skipBlanks();
    if (!separator) return true;
    if (*m_cur != ',') {
        wrongValue("',' or ')' behind a member");
        return false;
    }
    ++m_cur;
    skipBlanks();
    return true;
}

/// True where the parameter ends behind the value that was just read.
bool KpSpfFilerBase::endField(const char* expected) {
    if (endsParameter(*m_cur)) return true;
    skipBlanks();
    if (endsParameter(*m_cur)) return true;
    wrongValue(expected);
    return false;
}

void KpSpfFilerBase::issue(KpIfcFinding finding, KpIfcSeverity severity, bool keep, const char* expected) {
    if (m_broken) return;
    m_issues.push_back({finding, severity, keep, m_field - 1, m_fieldStart, m_cur, expected});
}

/// Goes to the end of the parameter from its start.
bool KpSpfFilerBase::skipParameter() {
    const char* end = lexer::parameterEnd(m_fieldStart, m_end);
    if (!end) {
        broken("the end of a parameter");
        return false;
    }
    m_cur = end;
    return true;
}

/// The parameter cannot be held by its member: its text is kept, reading goes on behind it.
KP::ErrorStatus KpSpfFilerBase::wrongValue(const char* expected, KpIfcFinding finding) {
    m_fieldFailed = true;
    if (!m_broken && skipParameter()) issue(finding, KpIfcSeverity::warning, true, expected);
    return KP::eInvalidInput;
}

bool KpSpfFilerBase::atUnset() {
    if (*m_cur != '$') return false;
    ++m_cur;
    return true;
}

// -- tokens ----------------------------------------------------------------------------------------------------------

/// A number; integers are numbers too. The common short decimal is converted exactly without the general algorithm.
bool KpSpfFilerBase::readReal(double& value) {
    const char* p = m_cur;
    const bool negative = *p == '-';
    if (negative || *p == '+') ++p;
    if (!lexer::isDigit(*p)) return false;
    const char* const digits = p;
    std::uint64_t mantissa = 0;
    while (lexer::isDigit(*p)) mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0');
    std::ptrdiff_t count = p - digits;
    std::ptrdiff_t fraction = 0;
    if (*p == '.') {
        const char* const point = ++p;
        while (lexer::isDigit(*p)) mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0');
        fraction = p - point;
        count += fraction;
    }
    if (count <= 19 && *p != 'E' && *p != 'e' && fraction <= 22 && mantissa <= (std::uint64_t{1} << 53)) {
        const double exact = static_cast<double>(mantissa) / kPowersOfTen[fraction];
        value = negative ? -exact : exact;
        m_cur = p;
        return true;
    }
    const std::from_chars_result result = std::from_chars(digits, m_end, value);
    if (result.ec != std::errc()) return false;
    if (negative) value = -value;
    m_cur = result.ptr;
    return true;
}

bool KpSpfFilerBase::readInt(int& value) {
    const char* p = m_cur + (*m_cur == '+');
    const bool isSigned = p == m_cur && *p == '-';
    if (!lexer::isDigit(p[isSigned])) return false;
    const std::from_chars_result result = std::from_chars(p, m_end, value);
    if (result.ec != std::errc()) return false;
    m_cur = result.ptr;
    return true;
}

bool KpSpfFilerBase::readReference(KpDbObjectId& value) {
    const char* p = m_cur;
    if (*p != '#' || !lexer::isDigit(p[1])) return false;
    std::uint64_t name = 0;
    const char* const digits = ++p;
    while (lexer::isDigit(*p)) name = name * 10 + static_cast<unsigned>(*p++ - '0');
    if (p - digits > 18 && std::from_chars(digits, p, name).ec != std::errc()) return false;
    if (name == 0) return false;
    value = KpDbObjectId(m_data.table.slot(name));
    m_cur = p;
    return true;
}

/// The text between apostrophes, in the form in which the model holds texts. It lasts until the next call.
bool KpSpfFilerBase::readText(std::string_view& text) {
    if (*m_cur != '\'') return false;
    const char* const begin = m_cur + 1;
    const char* p = begin;
    while (static_cast<unsigned char>(*p) >= ' ' && static_cast<unsigned char>(*p) < 0x7F && *p != '\'' && *p != '\\')
        ++p;
    if (*p == '\'' && p[1] != '\'') {
        text = {begin, static_cast<std::size_t>(p - begin)};
        m_cur = p + 1;
        return true;
    }
    const char* const behind = KpStepText::stringEnd(p, m_end);
    if (!behind) {
        broken("the closing apostrophe of a text");
        return false;
    }
    const std::string_view encoded(begin, static_cast<std::size_t>(behind - 1 - begin));
    m_cur = behind;
    unsigned issues = KpStepText::kNone;
    KpStepText::decode(encoded, m_decoded, issues);
    text = m_data.utf8 ? std::string_view(m_decoded) : encoded;
    if (issues & KpStepText::kRawUtf8)
        issue(KpIfcFinding::textEncoding, KpIfcSeverity::note, false, "unencoded UTF-8 in a text, taken as such");
    if (issues & KpStepText::kRawLatin1)
        issue(KpIfcFinding::textEncoding, KpIfcSeverity::warning, false,
              "unencoded bytes in a text that are no UTF-8, taken as ISO 8859-1");
    if (issues & KpStepText::kBadDirective)
        issue(KpIfcFinding::textEncoding, KpIfcSeverity::warning, !m_data.utf8 && !KpStepText::isEncoded(encoded),
              "a reverse solidus in a text that opens no directive, taken as it is");
    if (issues & KpStepText::kBadCodePoint)
        issue(KpIfcFinding::textEncoding, KpIfcSeverity::warning, m_data.utf8, "a code point that does not exist");
    if (issues & KpStepText::kControl)
        issue(KpIfcFinding::textEncoding, KpIfcSeverity::note, false,
              "a control character or line end in a text, kept");
    return true;
}

bool KpSpfFilerBase::readBinaryText(std::string_view& text) {
    if (*m_cur != '"') return false;
    const char* p = m_cur + 1;
    while ((*p >= '0' && *p <= '9') || (*p >= 'A' && *p <= 'F') || (*p >= 'a' && *p <= 'f')) ++p;
    if (*p != '"') return false;
    text = {m_cur + 1, static_cast<std::size_t>(p - m_cur - 1)};
    m_cur = p + 1;
    return true;
}

bool KpSpfFilerBase::readDotted(std::string_view& literal) {
    if (*m_cur != '.') return false;
    const char* const begin = m_cur + 1;
    const char* const end = lexer::keywordEnd(begin);
    if (end == begin || *end != '.') return false;
    literal = {begin, static_cast<std::size_t>(end - begin)};
    m_cur = end + 1;
    return true;
}

void KpSpfFilerBase::store(KpAnsiString& value, std::string_view text) {
    if (text.empty()) {
        value = KpAnsiString();
        return;
    }
    if (text.size() > kLongestShared) {
        value.refer(KpAnsiString::place(m_data.arena, text));
        return;
    }
    if (m_cache.empty()) m_cache.resize(kCacheSize, TextCache{nullptr});
    const char*& cached = m_cache[hashOf(text)].text;
    if (cached) {
        const auto* header = reinterpret_cast<const KpTextHeader*>(cached) - 1;
        if (header->length == text.size() && std::memcmp(cached, text.data(), text.size()) == 0)
            return value.refer(cached);
    }
    cached = KpAnsiString::place(m_data.arena, text);
    value.refer(cached);
}

// -- fields ----------------------------------------------------------------------------------------------------------

KP::ErrorStatus KpSpfFilerBase::rdKpAnsiString(KpAnsiString& value, bool, bool separator) {
    if (!beginField(separator)) return KP::eInvalidInput;
    std::string_view text;
    if (readText(text)) {
        if (!endField("a text")) return KP::eInvalidInput;
        store(value, text);
        if (value.isUnset()) issue(KpIfcFinding::wrongValue, KpIfcSeverity::note, true, "another text");
        return KP::eOk;
    }
    if (m_broken || !atUnset()) return wrongValue("a text");
    value = KpAnsiString::unset();
    return endField("a text") ? KP::eOk : KP::eInvalidInput;
}

KP::ErrorStatus KpSpfFilerBase::rdLimitedString(char* buffer, int length, bool, bool separator) {
    if (!beginField(separator)) return KP::eInvalidInput;
    std::string_view text;
    if (!readText(text)) {
        if (m_broken || !atUnset()) return wrongValue("a text of fixed length");
        return endField("a text of fixed length") ? KP::eOk : KP::eInvalidInput;
    }
    if (!endField("a text of fixed length")) return KP::eInvalidInput;
    const auto size = static_cast<std::size_t>(length);
    const std::size_t taken = text.size() < size ? text.size() : size;
    std::memcpy(buffer, text.data(), taken);
    std::memset(buffer + taken, 0, size + 1 - taken);
    if (text.size() == size && text.find('\0') == std::string_view::npos) return KP::eOk;
    issue(KpIfcFinding::wrongValue, KpIfcSeverity::warning, true, "a text of the right length");
    return KP::eInvalidInput;
}

KP::ErrorStatus KpSpfFilerBase::rdDouble(double& value, bool, bool separator) {
    if (!beginField(separator)) return KP::eInvalidInput;
    if (readReal(value)) {
        if (endField("a number") && value != Consts::KpRealUnset) return KP::eOk;
        value = Consts::KpRealUnset;
        return m_fieldFailed ? KP::eInvalidInput : wrongValue("another number");
    }
    value = Consts::KpRealUnset;
    if (!atUnset()) return wrongValue("a number");
    return endField("a number") ? KP::eOk : KP::eInvalidInput;
}

KP::ErrorStatus KpSpfFilerBase::rdInt(int& value, bool, bool separator) {
    if (!beginField(separator)) return KP::eInvalidInput;
    if (readInt(value)) {
        if (endsParameter(*m_cur) && value != Consts::KpIntUnset) return KP::eOk;
        if (*m_cur == '.') { // a whole number with a point: held, its text kept
            const char* p = m_cur + 1;
            while (*p == '0') ++p;
            if (endsParameter(*p)) {
                m_cur = p;
                issue(KpIfcFinding::wrongValue, KpIfcSeverity::warning, true, "an integer without a point");
                return KP::eOk;
            }
        }
        if (endField("an integer") && value != Consts::KpIntUnset) return KP::eOk;
        value = Consts::KpIntUnset;
        return m_fieldFailed ? KP::eInvalidInput : wrongValue("an integer below 2147483647");
    }
    value = Consts::KpIntUnset;
    if (!atUnset()) return wrongValue("an integer of 32 bits");
    return endField("an integer") ? KP::eOk : KP::eInvalidInput;
}

KP::ErrorStatus KpSpfFilerBase::rdPrimitive(KpIfcBoolean& value, bool, bool separator) {
    if (!beginField(separator)) return KP::eInvalidInput;
    value = KpIfcBoolean::Unset;
    std::string_view literal;
    if (!readDotted(literal)) {
        if (!atUnset()) return wrongValue(".T. or .F.");
        return endField(".T. or .F.") ? KP::eOk : KP::eInvalidInput;
    }
    if (!endField(".T. or .F.")) return KP::eInvalidInput;
    const char code = literal.size() == 1 ? upperAscii(literal[0]) : ' ';
    if (code != 'T' && code != 'F') return wrongValue(".T. or .F.");
    value = code == 'T';
    return KP::eOk;
}

KP::ErrorStatus KpSpfFilerBase::rdPrimitive(KpIfcLogical& value, bool, bool separator) {
    if (!beginField(separator)) return KP::eInvalidInput;
    value = KpIfcLogical::Unset;
    std::string_view literal;
    if (!readDotted(literal)) {
        if (!atUnset()) return wrongValue(".T., .F. or .U.");
        return endField(".T., .F. or .U.") ? KP::eOk : KP::eInvalidInput;
    }
    if (!endField(".T., .F. or .U.")) return KP::eInvalidInput;
    switch (literal.size() == 1 ? upperAscii(literal[0]) : ' ') {
    case 'T': value = KpIfcLogical::True; return KP::eOk;
    case 'F': value = KpIfcLogical::False; return KP::eOk;
    case 'U': value = KpIfcLogical::Unknown; return KP::eOk;
    default: return wrongValue(".T., .F. or .U.");
    }
}

KP::ErrorStatus KpSpfFilerBase::rdReference(KpDbObjectId& value, bool separator) {
    value.setNull();
    if (!beginField(separator)) return KP::eInvalidInput;
    if (!readReference(value) && !atUnset()) return wrongValue("a reference");
    if (endField("a reference")) return KP::eOk;
    value.setNull();
    return KP::eInvalidInput;
}

std::string_view KpSpfFilerBase::rdEnumeration(bool, bool separator) {
    std::string_view literal;
    if (!beginField(separator)) return literal;
    if (!readDotted(literal) && !atUnset()) {
        wrongValue("an enumeration literal");
    } else if (!endField("an enumeration literal")) {
        literal = {};
    }
    return literal;
}

KpAnsiString KpSpfFilerBase::rdEnumerationToStr(bool optional, bool separator) {
    return KpAnsiString(rdEnumeration(optional, separator));
}

void KpSpfFilerBase::unknownLiteral() {
    if (!m_fieldFailed) wrongValue("a literal of the enumeration", KpIfcFinding::unknownLiteral);
}

KP::ErrorStatus KpSpfFilerBase::rdDerive(bool separator) {
    if (!beginField(separator)) return KP::eInvalidInput;
    if (*m_cur != '*') return wrongValue("'*', because the attribute is derived");
    ++m_cur;
    return endField("'*', because the attribute is derived") ? KP::eOk : KP::eInvalidInput;
}

void KpSpfFilerBase::rdNotKept(bool separator) {
    if (!KpSpfReadHelper(*this).ignoreParamter(separator)) return;
    const std::string_view text(m_fieldStart, static_cast<std::size_t>(m_cur - m_fieldStart));
    if (text != "\"\"" && text != "$")
        issue(KpIfcFinding::notKept, KpIfcSeverity::warning, false, "nothing: the value is not kept");
}

// -- selects ---------------------------------------------------------------------------------------------------------

KP::ErrorStatus KpSpfFilerBase::rdSelect(KpIfcSelect& value, bool, bool separator) {
    if (!beginField(separator)) return KP::eInvalidInput;
    value.nullify();
    if (!readSelect(value)) return KP::eInvalidInput;
    return endField("a reference or a typed value") ? KP::eOk : KP::eInvalidInput;
}

bool KpSpfFilerBase::readSelect(KpIfcSelect& value) {
    if (*m_cur == '#') {
        KpDbObjectId handle;
        if (!readReference(handle)) {
            wrongValue("a reference");
            return false;
        }
        value.setHandleOnLoad(handle);
        if (handle.openObject()) {
            if (!value.setHandleD(handle))
                issue(KpIfcFinding::wrongReference, KpIfcSeverity::warning, false,
                      "an instance of one of the alternatives");
        } else if (!handle.isDefined()) {
            deferField();
        }
        return true;
    }
    if (atUnset()) return true;
    if (lexer::isKeywordStart(*m_cur)) return readTyped(value);
    wrongValue("a reference or a typed value");
    return false;
}

bool KpSpfFilerBase::readTyped(KpIfcSelect& value) {
    const char* const begin = m_cur;
    m_cur = lexer::keywordEnd(m_cur);
    KpAnsiString name;
    store(name, {begin, static_cast<std::size_t>(m_cur - begin)});
    skipBlanks();
    if (*m_cur != '(') {
        wrongValue("'(' behind the name of a type");
        return false;
    }
    ++m_cur;
    if (!value.underlyingTypeName(name)) {
        wrongValue("one of the alternatives", KpIfcFinding::wrongAlternative);
        return false;
    }
    skipBlanks();
    m_nested = true;
    const bool read = readTypedValue(value, name);
    m_nested = false;
    if (!read || m_fieldFailed || m_broken) {
        // The alternative is known all the same.
        if (value.valueKind() == kTypeAggregate) m_ownsHeap = true;
        if (!m_fieldFailed) wrongValue("a value of the alternative's type");
        return false;
    }
    skipBlanks();
    if (*m_cur != ')') {
        value.storeUnset(value.valueKind() == kTypeAggregate ? kTypeNone : value.valueKind());
        wrongValue("')' behind a typed value");
        return false;
    }
    ++m_cur;
    return true;
}

bool KpSpfFilerBase::readTypedValue(KpIfcSelect& value, const KpAnsiString& name) {
    switch (value.valueKind()) {
    case kTypeReal: {
        double number = 0;
        if (!readReal(number) || number == Consts::KpRealUnset) return false;
        value.storeDouble(number);
        return true;
    }
    case kTypeInteger: {
        int number = 0;
        if (!readInt(number) || number == Consts::KpIntUnset) return false;
        value.storeInt(number);
        return true;
    }
    case kTypeString: {
        std::string_view text;
        if (!readText(text)) return false;
        store(value.text(), text);
        return !value.text().isUnset();
    }
    case kTypeBoolean: {
        KpIfcBoolean code;
        if (rdPrimitive(code, false, false) != KP::eOk || !code.isSet()) return false;
        value.storeBoolean(code);
        return true;
    }
    case kTypeLogical: {
        KpIfcLogical code;
        if (rdPrimitive(code, false, false) != KP::eOk || !code.isSet()) return false;
        value.storeLogical(code);
        return true;
    }
    case kTypeEnumeration: return value.readTypedField(name, this) == KP::eOk && m_cur[-1] != '$';
    case kTypeAggregate: m_ownsHeap = true; return *m_cur == '(' && value.readTypedField(name, this) == KP::eOk;
    default: return false;
    }
}

// -- members of aggregates -------------------------------------------------------------------------------------------

KpSpfFilerBase::AggregateStart KpSpfFilerBase::beginAggregate(bool optional, bool separator) {
    if (!beginField(separator)) return AggregateStart::none;
    if (*m_cur == '(') {
        ++m_cur;
        skipBlanks();
        if (*m_cur != ')') return AggregateStart::open;
        ++m_cur;
        if (endField("an aggregate") && optional) // it would be written "$"
            issue(KpIfcFinding::wrongValue, KpIfcSeverity::note, true, "'$' for an empty aggregate");
        return AggregateStart::none;
    }
    if (atUnset()) {
        if (endField("an aggregate") && !optional) // it would be written "()"
            issue(KpIfcFinding::wrongValue, KpIfcSeverity::note, true, "an aggregate");
        return AggregateStart::none;
    }
    if (*m_cur == '*') {
        wrongValue("an aggregate");
        return AggregateStart::none;
    }
    return AggregateStart::bare;
}

bool KpSpfFilerBase::atAggregateEnd() {
    skipBlanks();
    if (*m_cur != ')') return false;
    ++m_cur;
    if (!m_nested) endField("an aggregate");
    return true;
}

void KpSpfFilerBase::endBareAggregate() {
    if (m_fieldFailed || m_broken || !endField("an aggregate")) return;
    issue(KpIfcFinding::wrongValue, KpIfcSeverity::warning, true, "an aggregate in parentheses");
}

void KpSpfFilerBase::repeatedMembers() {
    if (!m_fieldFailed) issue(KpIfcFinding::wrongValue, KpIfcSeverity::note, true, "a set without repeated members");
}

KP::ErrorStatus KpSpfFilerBase::rdPrimitive(double& value, bool separator) {
    if (!beginMember(separator)) return KP::eInvalidInput;
    if (readReal(value) && value != Consts::KpRealUnset) return KP::eOk;
    value = Consts::KpRealUnset;
    return atUnset() ? KP::eOk : wrongValue("a number");
}

KP::ErrorStatus KpSpfFilerBase::rdPrimitive(int& value, bool separator) {
    if (!beginMember(separator)) return KP::eInvalidInput;
    if (readInt(value) && value != Consts::KpIntUnset) return KP::eOk;
    value = Consts::KpIntUnset;
    return atUnset() ? KP::eOk : wrongValue("an integer");
}

KP::ErrorStatus KpSpfFilerBase::rdPrimitive(KpAnsiString& value, bool separator) {
    if (!beginMember(separator)) return KP::eInvalidInput;
    std::string_view text;
    if (readText(text)) {
        store(value, text);
        if (value.isUnset()) issue(KpIfcFinding::wrongValue, KpIfcSeverity::note, true, "another text");
        return KP::eOk;
    }
    value = KpAnsiString::unset();
    return atUnset() ? KP::eOk : wrongValue("a text");
}

KP::ErrorStatus KpSpfFilerBase::rdBinary(KpAnsiString& value, bool separator) {
    if (!beginMember(separator)) return KP::eInvalidInput;
    std::string_view text;
    if (readBinaryText(text)) {
        store(value, text);
        return KP::eOk;
    }
    value = KpAnsiString::unset();
    return atUnset() ? KP::eOk : wrongValue("a binary");
}

KP::ErrorStatus KpSpfFilerBase::rdPrimitive(KpDbObjectId& value, bool separator) {
    if (!beginMember(separator)) return KP::eInvalidInput;
    if (readReference(value)) return KP::eOk;
    value.setNull();
    return atUnset() ? KP::eOk : wrongValue("a reference");
}

KP::ErrorStatus KpSpfFilerBase::rdPrimitive(KpIfcSelect& value, bool separator) {
    if (!beginMember(separator)) return KP::eInvalidInput;
    value.nullify();
    return readSelect(value) ? KP::eOk : KP::eInvalidInput;
}

// -- references ------------------------------------------------------------------------------------------------------

void KpSpfFilerBase::checkReference(const KpDbObjectId& reference, const KpIfcEntityType* declared) {
    if (reference.isNull() || m_broken) return;
    if (KpIfcEntityBase* instance = reference.openObject()) {
        const KpIfcEntityType* type = instance->getInstanceType();
        if (type != declared && !type->isKindOf(declared))
            issue(KpIfcFinding::wrongReference, KpIfcSeverity::warning, false, declared->displayName());
    } else if (!reference.isDefined()) {
        deferField();
    }
}

/// Looks at the field again when everything is read.
void KpSpfFilerBase::deferField() {
    const std::uint64_t place = (m_recordOffset << 16) | (m_field - 1);
    if (m_pending.empty() || m_pending.back().instance != m_instance || m_pending.back().offsetAndField != place)
        m_pending.push_back({m_instance, place});
}

// -- punctuation -----------------------------------------------------------------------------------------------------

bool KpSpfFilerBase::skipUntil(char c) {
    const char* p = m_cur;
    while (p < m_end && *p != ';') {
        if (*p == c) {
            m_cur = p + 1;
            return true;
        }
        const char* next = *p == '\''                 ? KpStepText::stringEnd(p + 1, m_end)
                           : *p == '/' && p[1] == '*' ? lexer::commentEnd(p, m_end)
                                                      : p + 1;
        if (!next) return false;
        p = next;
    }
    return false;
}

void KpSpfFilerBase::ignoreUntilComments(char c, bool past) {
    const char* const end = lexer::parameterEnd(m_cur, m_end);
    if (!end) return;
    // What ends the parameter may be what is looked for.
    for (const char* p = lexer::skipBlanks(m_cur, end); p <= end; p = lexer::skipBlanks(p + 1, m_end)) {
        if (*p != c) continue;
        m_cur = past ? p + 1 : p;
        return;
    }
}

bool KpSpfReadHelper::ignoreParamter(bool separator) {
    return m_filer.beginField(separator) && m_filer.skipParameter();
}

bool KpSpfReadHelper::skipUntilRet(char c, const std::function<bool(char)>& accept) {
    const char* const end = lexer::parameterEnd(m_filer.m_cur, m_filer.m_end);
    if (!end) return false;
    for (const char* p = m_filer.m_cur; p <= end; ++p) {
        if (*p == c) {
            m_filer.m_cur = p;
            return true;
        }
        if (!accept(*p)) return false;
    }
    return false;
}
