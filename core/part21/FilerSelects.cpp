#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include "model/SlotWord.h"
#include "part21/FieldIssue.h"
#include "part21/Lexer.h"
#include "part21/Scan.h"
#include "part21/Spelling.h"

using namespace KP_SDAI;

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
        const std::uintptr_t word = wordWhileReading(*handle.slot());
        if (!(word & KpIfcSlot::kKeptRecord) && !(isInstance(word) && value.setHandleD(handle))) deferField();
        return true;
    }
    if (atUnset()) return true;
    if (lexer::isKeywordStart(*m_cur)) return readTyped(value);
    wrongValue("a reference or a typed value");
    return false;
}

bool KpSpfFilerBase::readTyped(KpIfcSelect& value) {
    const char* const begin = m_cur;
    m_cur = scan::keywordEnd(m_cur);
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
    if (hasLowerCase(name.constStr()))
        issue(KpIfcFinding::spelling, KpIfcSeverity::warning, false, "the name of a type in upper case");
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
        const char* const begin = m_cur;
        const std::size_t issues = m_issues.size();
        if (!readReal(number) || number == Consts::KpRealUnset) return false;
        if (m_issues.size() > issues && isNumberType(name.constStr()) && lexer::isInteger(begin, m_cur))
            m_issues.pop_back(); // NUMBER takes integers, too
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
