#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpSpfFilerBase.h>

using namespace KP_SDAI;

// The standard knows "$" in arrays of optional elements only, which IFC does not have; members hold it all the same.
static constexpr const char kNoUnsetMember[] = "no '$' in an aggregate";

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
    if (!atUnset()) return wrongValue("a number");
    issue(KpIfcFinding::missingValue, KpIfcSeverity::warning, false, kNoUnsetMember);
    return KP::eOk;
}

KP::ErrorStatus KpSpfFilerBase::rdPrimitive(int& value, bool separator) {
    if (!beginMember(separator)) return KP::eInvalidInput;
    if (readInt(value) && value != Consts::KpIntUnset) return KP::eOk;
    value = Consts::KpIntUnset;
    if (!atUnset()) return wrongValue("an integer");
    issue(KpIfcFinding::missingValue, KpIfcSeverity::warning, false, kNoUnsetMember);
    return KP::eOk;
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
    if (!atUnset()) return wrongValue("a text");
    issue(KpIfcFinding::missingValue, KpIfcSeverity::warning, false, kNoUnsetMember);
    return KP::eOk;
}

KP::ErrorStatus KpSpfFilerBase::rdBinary(KpAnsiString& value, bool separator) {
    if (!beginMember(separator)) return KP::eInvalidInput;
    std::string_view text;
    if (readBinaryText(text)) {
        store(value, text);
        return KP::eOk;
    }
    value = KpAnsiString::unset();
    if (!atUnset()) return wrongValue("a binary");
    issue(KpIfcFinding::missingValue, KpIfcSeverity::warning, false, kNoUnsetMember);
    return KP::eOk;
}

KP::ErrorStatus KpSpfFilerBase::rdPrimitive(KpDbObjectId& value, bool separator) {
    if (!beginMember(separator)) return KP::eInvalidInput;
    if (readReference(value)) return KP::eOk;
    value.setNull();
    if (!atUnset()) return wrongValue("a reference");
    issue(KpIfcFinding::missingValue, KpIfcSeverity::warning, false, kNoUnsetMember);
    return KP::eOk;
}

KP::ErrorStatus KpSpfFilerBase::rdPrimitive(KpIfcSelect& value, bool separator) {
    if (!beginMember(separator)) return KP::eInvalidInput;
    value.nullify();
    if (*m_cur == '$') issue(KpIfcFinding::missingValue, KpIfcSeverity::warning, false, kNoUnsetMember);
    return readSelect(value) ? KP::eOk : KP::eInvalidInput;
}
