#include "part21/FieldReader.h"

#include "model/ReadingMemory.h"
#include "part21/Scan.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcGlobalIds.h>
#include <KpIfcCore/KpIfcOrderedAggrImp.h>
#include <KpIfcCore/KpIfcSetAggr.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace KP_SDAI {

using lexer::endsParameter;

namespace {

constexpr double kPowersOfTen[] = {1e0, 1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7, 1e8,
                                   1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16};
constexpr std::uint64_t kWholePowersOfTen[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};

/// Behind the real at `p`, which has a point; null where it has none or is no number.
const char* real(const char* p, const char* end, double& value) {
    const bool isNegative = *p == '-';
    p += isNegative;
    const char* const begin = p;
    scan::Digits run = scan::digits(p);
    p += run.count;
    if (run.count == 0 || *p != '.') return nullptr;
    std::uint64_t digits = run.value;
    unsigned count = run.count;
    unsigned places = 0;
    ++p;
    do { // of eight digits each
        run = scan::digits(p);
        p += run.count;
        digits = digits * kWholePowersOfTen[run.count] + run.value;
        count += run.count;
        places += run.count;
    } while (run.count == 8 && count <= 11);
    if (endsParameter(*p) && digits <= (std::uint64_t{1} << 53)) {
        // Both numbers are exact, so their quotient is the one that is nearest to the decimal.
        value = static_cast<double>(digits);
        if (places) value /= kPowersOfTen[places];
    } else {
        const std::from_chars_result result = std::from_chars(begin, end, value);
        if (result.ec != std::errc() || !endsParameter(*result.ptr)) return nullptr;
        if (std::memchr(p, 'e', static_cast<std::size_t>(result.ptr - p))) return nullptr; // not as the standard has it
        p = result.ptr;
    }
    if (isNegative) value = -value;
    return value == Consts::KpRealUnset ? nullptr : p;
}

} // namespace

bool RecordReader::FieldReader::read(const KpIfcAttributeFacts& row) {
    if (m_filer.m_broken) return false;
    const char* p = m_filer.m_cur;
    if (!row.isFirst() && *p++ != ',') return false;
    switch (row.kind) {
    case KpIfcFieldKind::reference: return readReference(row, p);
    case KpIfcFieldKind::aggregate: return readAggregate(row, p);
    case KpIfcFieldKind::real: return readReal(m_instance.*row.member.real, p);
    case KpIfcFieldKind::enumeration: return readEnumeration(row, p);
    case KpIfcFieldKind::boolean: return readBoolean(m_instance.*row.member.boolean, p);
    case KpIfcFieldKind::string:
        return !(row.flags & KpIfcAttributeFacts::kBinary) && readText(m_instance.*row.member.string, p);
    case KpIfcFieldKind::guid: return readGlobalId(m_instance.*row.member.guid, p);
    case KpIfcFieldKind::select: return readUnsetSelect(row.member.select(m_instance), p);
    default: return false;
    }
}

void RecordReader::FieldReader::readBinary(KpAnsiString& value, bool separator) {
    if (!m_filer.beginField(separator)) return;
    std::string_view digits;
    if (m_filer.readBinaryText(digits)) {
        if (m_filer.endField("a binary")) m_filer.store(value, digits);
    } else if (m_filer.m_broken || !m_filer.atUnset()) {
        m_filer.wrongValue("a binary");
    } else {
        value = KpAnsiString::unset();
        m_filer.endField("a binary");
    }
}

/// Goes behind a field that was read from `begin` to `end`.
void RecordReader::FieldReader::take(const char* begin, const char* end) {
    ++m_filer.m_field;
    m_filer.m_fieldFailed = false;
    m_filer.m_fieldStart = begin;
    m_filer.m_cur = end;
}

inline bool RecordReader::FieldReader::isKnown(std::uint64_t name, const KpIfcEntityType* declared) const {
    const KpIfcEntityType* const type = m_filer.m_memory->types.of(name);
    return type && (type == declared || type->isKindOf(declared));
}

bool RecordReader::FieldReader::readReference(const KpIfcAttributeFacts& row, const char* p) {
    KpDbObjectId& handle = m_instance.*row.member.reference;
    const char* end = p + 1;
    if (*p == '$') {
        if (!endsParameter(*end)) return false;
        handle.setNull();
        take(p, end);
        return true;
    }
    std::uint64_t name;
    if (*p != '#' || !(end = scan::name(end, name)) || name == 0 || !endsParameter(*end)) return false;
    handle = KpDbObjectId(m_filer.m_data.table.slot(name, m_filer.m_memory->slots));
    take(p, end);
    if (!isKnown(name, *row.target)) m_filer.checkReference(handle, *row.target);
    return true;
}

bool RecordReader::FieldReader::readReal(double& value, const char* p) {
    const char* end = p + 1;
    if (*p == '$') {
        if (!endsParameter(*end)) return false;
        value = Consts::KpRealUnset;
    } else {
        double number;
        end = real(p, m_filer.m_end, number);
        if (!end) return false;
        value = number;
    }
    take(p, end);
    return true;
}

bool RecordReader::FieldReader::readEnumeration(const KpIfcAttributeFacts& row, const char* p) {
    const KpIfcEnumFacts& facts = *row.enumeration;
    const char* end = p + 1;
    int code = facts.count;
    if (*p == '.') {
        const char* const literal = end;
        end = scan::keywordEnd(literal);
        const auto length = static_cast<std::size_t>(end - literal);
        if (*end++ != '.') return false;
        const auto isIt = [&](const char* one) { return std::strncmp(one, literal, length) == 0 && one[length] == 0; };
        code = static_cast<int>(std::find_if(facts.literals, facts.literals + facts.count, isIt) - facts.literals);
        if (code == facts.count) return false;
    } else if (*p != '$') {
        return false;
    }
    if (!endsParameter(*end)) return false;
    std::memcpy(row.member.enumeration(m_instance), &code, sizeof code);
    take(p, end);
    return true;
}

bool RecordReader::FieldReader::readBoolean(KpIfcBoolean& value, const char* p) {
    if (p[0] != '.' || (p[1] != 'T' && p[1] != 'F') || p[2] != '.' || !endsParameter(p[3])) return false;
    value = p[1] == 'T';
    take(p, p + 3);
    return true;
}

bool RecordReader::FieldReader::readText(KpAnsiString& value, const char* p) {
    const char* end = p + 1;
    if (*p == '$') {
        if (!endsParameter(*end)) return false;
        value = KpAnsiString::unset();
        take(p, end);
        return true;
    }
    if (*p != '\'') return false;
    end = scan::plainEnd(end);
    if (*end != '\'' || !endsParameter(end[1])) return false;
    take(p, end + 1);
    m_filer.store(value, {p + 1, static_cast<std::size_t>(end - p - 1)}); // printable, so it cannot be the unset one
    return true;
}

bool RecordReader::FieldReader::readGlobalId(KpIfcGUID& value, const char* p) {
    constexpr std::size_t kLength = KpIfcGUID::kLength;
    if (*p != '\'' || scan::plainEnd(p + 1) != p + 1 + kLength) return false;
    const char* const end = p + 1 + kLength;
    if (*end != '\'' || !endsParameter(end[1]) || !isGlobalId({p + 1, kLength})) return false;
    std::memcpy(value.chars(), p + 1, kLength);
    value.chars()[kLength] = 0;
    take(p, end + 1);
    return true;
}

bool RecordReader::FieldReader::readUnsetSelect(KpIfcSelect& value, const char* p) {
    if (*p != '$' || !endsParameter(p[1])) return false;
    if (!value.isNull()) value.nullify();
    take(p, p + 1);
    return true;
}

bool RecordReader::FieldReader::readAggregate(const KpIfcAttributeFacts& row, const char* p) {
    KpIfcAggr& aggregate = row.member.aggregate(m_instance);
    if (!aggregate.isNil()) return false;
    if (*p == '$') {
        if (!row.isOptional() || !endsParameter(p[1])) return false;
        take(p, p + 1);
        return true;
    }
    if (*p != '(') return false;
    if (row.aggregate->element == KpIfcElementKind::reference) return readReferences(row, aggregate, p);
    return row.aggregate->element == KpIfcElementKind::real && !row.aggregate->isSet && readReals(aggregate, p);
}

bool RecordReader::FieldReader::readReferences(const KpIfcAttributeFacts& row, KpIfcAggr& aggregate,
                                               const char* const begin) {
    std::vector<KpDbObjectId>& members = m_filer.members<KpDbObjectId>();
    const char* p = begin;
    bool areKnown = true;
    do {
        std::uint64_t name;
        if (p[1] != '#' || !(p = scan::name(p + 2, name)) || name == 0) return false;
        members.emplace_back(m_filer.m_data.table.slot(name, m_filer.m_memory->slots));
        areKnown = areKnown && isKnown(name, *row.target);
    } while (*p == ',');
    if (*p++ != ')' || !endsParameter(*p)) return false;
    take(begin, p);
    KpArena& arena = m_filer.m_memory->arena;
    if (!row.aggregate->isSet)
        static_cast<KpIfcPositionedAggr<KpDbObjectId>&>(aggregate).load(arena, members.data(), members.size());
    else if (!static_cast<KpIfcSetAggr<KpDbObjectId>&>(aggregate).load(arena, members.data(), members.size()))
        m_filer.repeatedMembers();
    if (areKnown) return true;
    for (const KpDbObjectId& member : static_cast<const KpIfcAggrElements<KpDbObjectId>&>(*aggregate.implementation()))
        m_filer.checkReference(member, *row.target);
    return true;
}

bool RecordReader::FieldReader::readReals(KpIfcAggr& aggregate, const char* const begin) {
    std::vector<double>& members = m_filer.members<double>();
    const char* p = begin;
    do {
        double value;
        if (!(p = real(p + 1, m_filer.m_end, value))) return false;
        members.push_back(value);
    } while (*p == ',');
    if (*p++ != ')' || !endsParameter(*p)) return false;
    take(begin, p);
    static_cast<KpIfcPositionedAggr<double>&>(aggregate).load(m_filer.m_memory->arena, members.data(), members.size());
    return true;
}

} // namespace KP_SDAI
