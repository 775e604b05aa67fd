#include "model/FieldCopier.h"

#include "model/HeldReferences.h"
#include "part21/RecordWriter.h"

#include <KpIfcCore/KpStepText.h>

#include <algorithm>
#include <bit>
#include <cstring>

namespace KP_SDAI {

namespace {

constexpr std::size_t kMostShared = 1 << 12;

} // namespace

KpIfcElementCopier::~KpIfcElementCopier() = default;

std::vector<const KeptField*> keptTextsInForce(ModelData& data, KpIfcEntityBase& instance) {
    std::vector<const KeptField*> inForce;
    const std::vector<KeptField>* const kept = data.keptFields(instance);
    if (!kept || kept->empty()) return inForce;
    const std::string written = RecordWriter(data).parameters(instance);
    const std::vector<std::string_view> parts = splitParameters(written);
    for (const KeptField& field : *kept) {
        const bool isRecord = field.field == KeptField::kWholeRecord;
        if (isRecord ? field.normal == written : field.field < parts.size() && field.normal == parts[field.field])
            inForce.push_back(&field);
    }
    return inForce;
}

FieldCopier::FieldCopier(CopyMap& map, std::size_t instances)
    : m_map(map), m_target(map.target.data()), m_sourceIsUtf8(map.source.textIsUtf8()),
      m_converts(map.source.textIsUtf8() != map.target.textIsUtf8()),
      m_shared(std::bit_ceil(std::min(instances, kMostShared) + 1)) {}

void FieldCopier::copy(KpIfcEntityBase& from, KpIfcEntityBase& to) {
    m_from = from.objectId();
    for (const KpIfcAttributeFacts* row : from.getInstanceType()->recordFields()) {
        m_field = row;
        copyField(from, to, *row);
    }
    if (m_from.model()->data().keptFields(from)) copyKeptTexts(from, to);
}

void FieldCopier::copyField(KpIfcEntityBase& from, KpIfcEntityBase& to, const KpIfcAttributeFacts& row) {
    const KpIfcAttributeFacts::Member& member = row.member;
    switch (row.kind) {
    case KpIfcFieldKind::string: return copyText(from.*member.string, to.*member.string);
    case KpIfcFieldKind::guid: to.*member.guid = from.*member.guid; break;
    case KpIfcFieldKind::real: to.*member.real = from.*member.real; break;
    case KpIfcFieldKind::integer: to.*member.integer = from.*member.integer; break;
    case KpIfcFieldKind::notKept:
    case KpIfcFieldKind::boolean: to.*member.boolean = from.*member.boolean; break;
    case KpIfcFieldKind::logical: to.*member.logical = from.*member.logical; break;
    case KpIfcFieldKind::enumeration: std::memcpy(member.enumeration(to), member.enumeration(from), sizeof(int)); break;
    case KpIfcFieldKind::reference:
        to.*member.reference = m_map.copyOf({m_from, m_field, from.*member.reference});
        break;
    case KpIfcFieldKind::select: {
        KpIfcSelect& select = member.select(to);
        select.assign(member.select(from));
        if (!adapt(select)) select.nullify();
        break;
    }
    case KpIfcFieldKind::aggregate: row.aggregate->copy(member.aggregate(to), member.aggregate(from), *this); break;
    case KpIfcFieldKind::derived: break;
    }
}

void FieldCopier::copyText(const KpAnsiString& from, KpAnsiString& to) {
    if (from.isUnset()) {
        to = KpAnsiString::unset();
    } else if (from.isEmpty()) {
        to = KpAnsiString();
    } else {
        const char* const original = from.constStr();
        Shared& shared = m_shared[(reinterpret_cast<std::uintptr_t>(original) >> 3) & (m_shared.size() - 1)];
        if (shared.original != original) shared = {original, KpAnsiString::place(arena(), converted(from.view()))};
        to.refer(shared.copy);
    }
}

bool FieldCopier::adapt(KpDbObjectId& reference) {
    if (reference.isNull()) return true;
    reference = m_map.copyOf({m_from, m_field, reference});
    return !reference.isNull();
}

bool FieldCopier::adapt(KpIfcSelect& select) {
    if (select.getString()) return adapt(select.text());
    KpDbObjectId handle;
    if (!select.getHandle(handle) || handle.isNull()) return true;
    if (!adapt(handle)) return false;
    select.storeHandle(handle); // the alternative is the original's: it follows from the entity
    return true;
}

bool FieldCopier::adapt(KpAnsiString& text) {
    if (m_converts && !text.isUnset()) text = KpAnsiString(converted(text.view()));
    return true;
}

/// A text in the form in which the target holds texts; good until the next call.
std::string_view FieldCopier::converted(std::string_view text) {
    if (!m_converts) return text;
    m_converted.clear();
    if (m_sourceIsUtf8) {
        KpStepText::encode(text, m_converted);
    } else {
        unsigned issues = KpStepText::kNone;
        KpStepText::decode(text, m_converted, issues);
    }
    return m_converted;
}

void FieldCopier::copyKeptTexts(KpIfcEntityBase& from, KpIfcEntityBase& to) {
    const std::vector<const KeptField*> inForce = keptTextsInForce(m_from.model()->data(), from);
    if (inForce.empty()) return;
    const std::string written = RecordWriter(m_target).parameters(to);
    const std::vector<std::string_view> parts = splitParameters(written);
    for (const KeptField* kept : inForce) {
        std::string source;
        if (!m_map.rename(m_from, attributeOf(from, *kept), kept->source, source)) continue;
        const bool isRecord = kept->field == KeptField::kWholeRecord;
        m_target.keepField(to, {kept->field, std::move(source), isRecord ? written : std::string(parts[kept->field])});
    }
}

} // namespace KP_SDAI
