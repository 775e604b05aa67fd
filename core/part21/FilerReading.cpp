#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include "model/ModelData.h"
#include "model/ReadingMemory.h"
#include "model/SlotWord.h"
#include "part21/FieldIssue.h"
#include "part21/Lexer.h"
#include "part21/PendingField.h"

using namespace KP_SDAI;
using lexer::endsParameter;

KpSpfFilerBase::KpSpfFilerBase(ModelData& data, ReadingMemory* memory) : m_data(data), m_memory(memory) {}
KpSpfFilerBase::~KpSpfFilerBase() = default;

KpArena& KpSpfFilerBase::arena() {
    return m_memory->arena;
}

void KpSpfFilerBase::skipBlanks() {
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
    if (!keep && !m_issues.empty() && m_issues.back().expected == expected && m_issues.back().field == m_field - 1)
        return;
    m_issues.push_back({finding, severity, keep, m_field - 1, m_fieldStart, m_cur, expected});
}

void KpSpfFilerBase::textIssue(KpIfcSeverity severity, bool keep, const char* found, const char* expected,
                               const char* done) {
    if (m_broken) return;
    m_issues.push_back(
        {KpIfcFinding::textEncoding, severity, keep, m_field - 1, m_fieldStart, m_cur, expected, found, done});
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
    while (!m_issues.empty() && m_issues.back().finding == KpIfcFinding::spelling &&
           m_issues.back().field == m_field - 1)
        m_issues.pop_back(); // there is worse to say
    if (!m_broken && skipParameter()) issue(finding, KpIfcSeverity::warning, true, expected);
    return KP::eInvalidInput;
}

bool KpSpfFilerBase::atUnset() {
    if (*m_cur != '$') return false;
    ++m_cur;
    return true;
}

// -- references ------------------------------------------------------------------------------------------------------

/// What is found wrong is said later, when no other thread fills slots any more: whether an instance has come yet when
/// a reference to it is read must make no difference.
void KpSpfFilerBase::checkReference(const KpDbObjectId& reference, const KpIfcEntityType* declared) {
    if (reference.isNull() || m_broken) return;
    const std::uintptr_t word = wordWhileReading(*reference.slot());
    if (word & KpIfcSlot::kKeptRecord) return;
    if (isInstance(word)) {
        const KpIfcEntityType* type = reinterpret_cast<const KpIfcEntityBase*>(word)->getInstanceType();
        if (type == declared || type->isKindOf(declared)) return;
    }
    deferField();
}

/// Looks at the field again when everything is read.
void KpSpfFilerBase::deferField() {
    const PendingField field(*m_instance, m_recordOffset + static_cast<std::uint64_t>(m_fieldStart - m_recordBegin),
                             m_field - 1);
    if (m_pending->empty() || !(m_pending->back() == field)) m_pending->push_back(field);
}

// -- punctuation -----------------------------------------------------------------------------------------------------

bool KpSpfFilerBase::skipUntil(char c) {
    const char* p = m_cur;
    while (p < m_end && *p != ';') {
        if (*p == c) {
            m_cur = p + 1;
            return true;
        }
        const char* next = *p == '\''            ? KpStepText::stringEnd(p + 1, m_end)
                           : lexer::isComment(p) ? lexer::commentEnd(p, m_end)
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
