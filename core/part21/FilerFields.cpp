#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcGUID.h>
#include <KpIfcCore/KpIfcGlobalIds.h>
#include <KpIfcCore/KpSpfFilerBase.h>
#include <KpIfcCore/KpTextCase.h>

#include "part21/Lexer.h"

#include <cstring>

using namespace KP_SDAI;
using lexer::endsParameter;

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
    if (text.size() == size && text.find('\0') == std::string_view::npos) {
        if (length == KpIfcGUID::kLength && !isGlobalId(text))
            issue(KpIfcFinding::globalId, KpIfcSeverity::warning, false,
                  "22 of the characters 0-9A-Za-z_$, the first one of 0-3");
        return KP::eOk;
    }
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
        issue(KpIfcFinding::notKept, KpIfcSeverity::warning, false, "no value, for this toolkit has no place for one");
}
