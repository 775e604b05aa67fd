#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include "model/ModelData.h"
#include "model/ReadingMemory.h"
#include "part21/Lexer.h"
#include "part21/Scan.h"
#include "part21/Spelling.h"

#include <charconv>

using namespace KP_SDAI;

// Values of one token. Each operation moves behind what it reads; one that gives false has not moved.

static constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                          1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// True where the current field is declared by a type over NUMBER, which takes integers, too; the dictionary knows
/// these types as ones over REAL.
static bool takesIntegers(const KpIfcEntityBase& instance, std::uint32_t field) {
    const KpIfcEntityType* const type = instance.getInstanceType();
    if (field >= type->recordFields().size()) return false;
    const KpIfcAttributeDefinition* const attribute = type->findAttribute(type->recordFields()[field]->name);
    return attribute && isNumberType(attribute->typeText());
}

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
    bool hasForm = true;
    if (*p == '.') {
        const char* const point = ++p;
        while (lexer::isDigit(*p)) mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0');
        fraction = p - point;
        count += fraction;
    } else if (m_nested || *p == 'E' || *p == 'e' || !takesIntegers(*m_instance, m_field - 1)) {
        hasForm = false;
    }
    if (count <= 19 && *p != 'E' && *p != 'e' && fraction <= 22 && mantissa <= (std::uint64_t{1} << 53)) {
        const double exact = static_cast<double>(mantissa) / kPowersOfTen[fraction];
        value = negative ? -exact : exact;
        m_cur = p;
        if (!hasForm) issue(KpIfcFinding::spelling, KpIfcSeverity::warning, false, kRealForm);
        return true;
    }
    const std::from_chars_result result = std::from_chars(digits, m_end, value);
    if (result.ec != std::errc()) return false;
    if (negative) value = -value;
    m_cur = result.ptr;
    if (*p == 'e' || !hasForm) issue(KpIfcFinding::spelling, KpIfcSeverity::warning, false, kRealForm);
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
    value = KpDbObjectId(m_data.table.slot(name, m_memory->slots));
    m_cur = p;
    return true;
}

bool KpSpfFilerBase::readBinaryText(std::string_view& text) {
    if (*m_cur != '"') return false;
    const char* p = m_cur + 1;
    while ((*p >= '0' && *p <= '9') || (*p >= 'A' && *p <= 'F') || (*p >= 'a' && *p <= 'f')) ++p;
    if (*p != '"') return false;
    text = {m_cur + 1, static_cast<std::size_t>(p - m_cur - 1)};
    m_cur = p + 1;
    if (!isBinary(text))
        issue(KpIfcFinding::spelling, KpIfcSeverity::warning, false,
              "the number of unused bits (0 to 3), then hexadecimal digits in upper case");
    return true;
}

bool KpSpfFilerBase::readDotted(std::string_view& literal) {
    if (*m_cur != '.') return false;
    const char* const begin = m_cur + 1;
    const char* const end = scan::keywordEnd(begin);
    if (end == begin || *end != '.') return false;
    literal = {begin, static_cast<std::size_t>(end - begin)};
    m_cur = end + 1;
    if (hasLowerCase(literal)) issue(KpIfcFinding::spelling, KpIfcSeverity::warning, false, "a literal in upper case");
    return true;
}
