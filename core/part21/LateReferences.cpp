#include "part21/LateReferences.h"
#include "part21/Findings.h"
#include "part21/RecordWriter.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcSelect.h>

namespace KP_SDAI {

namespace {

/// What is left to say about the references of one field.
struct FieldCheck {
    const ModelData& data;
    const KpIfcEntityType* declared = nullptr;
    bool dangling = false;
    KpDbObjectId wrong; ///< the first to an instance of another entity

    void look(KpDbObjectId& handle) {
        if (handle.isNull()) return;
        if (!handle.isDefined()) {
            dangling = true;
        } else if (const KpIfcEntityType* const entity = data.entityOf(handle)) {
            if (wrong.isNull() && !entity->isKindOf(declared)) wrong = handle;
        }
    }
};

template <class Visit>
void visitHandles(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, Visit visit) {
    if (row.kind == KpIfcFieldKind::reference) {
        visit(instance.*row.member.reference);
    } else if (row.kind == KpIfcFieldKind::aggregate && row.aggregate->element == KpIfcElementKind::reference) {
        auto& elements =
            static_cast<KpIfcAggrElements<KpDbObjectId>&>(*row.member.aggregate(instance).implementation());
        for (KpDbObjectId& element : elements) visit(element);
    }
}

template <class Visit>
void visitSelects(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, Visit visit) {
    if (row.kind == KpIfcFieldKind::select) {
        visit(row.member.select(instance));
    } else if (row.kind == KpIfcFieldKind::aggregate && row.aggregate->element == KpIfcElementKind::select) {
        KpIfcAggr& aggregate = row.member.aggregate(instance);
        for (std::size_t i = 0; i < aggregate.size(); ++i)
            visit(const_cast<KpIfcSelect&>(row.aggregate->selectAt(aggregate, i)));
    }
}

} // namespace

void LateReferences::look(const std::vector<KpSpfFilerBase::PendingField>& fields, ProgressMeter& progress) {
    progress.beginItems(KpIfcStage::linking, fields.size());
    for (const KpSpfFilerBase::PendingField& pending : fields) {
        progress.step();
        look(pending);
    }
}

void LateReferences::look(const KpSpfFilerBase::PendingField& pending) {
    // A record that was displaced by a later one of its name is text by now.
    if (pending.instance->objectId().instanceRead() != pending.instance) return;
    lookAt(*pending.instance, static_cast<std::uint32_t>(pending.offsetAndField & 0xFFFF),
           pending.offsetAndField >> 16);
}

void LateReferences::lookAt(KpIfcEntityBase& instance, std::uint32_t field, std::uint64_t offset) {
    const KpIfcAttributeFacts& row = *instance.getInstanceType()->recordFields()[field];
    FieldCheck check{m_data, nullptr, false, {}};
    if (row.target) check.declared = *row.target;
    visitHandles(instance, row, [&](KpDbObjectId& handle) { check.look(handle); });
    visitSelects(instance, row, [&](KpIfcSelect& select) {
        KpDbObjectId handle;
        if (!select.getHandle(handle) || handle.isNull()) return;
        if (!handle.isDefined())
            check.dangling = true;
        else if (handle.openObject() && !KpSpfFilerBase::resolveSelect(select) && check.wrong.isNull())
            check.wrong = handle;
    });
    if (!check.wrong.isNull())
        m_report.add(
            findingOn(instance, field, KpIfcFinding::wrongReference, KpIfcSeverity::warning, offset,
                      {labelOf(check.wrong),
                       check.declared ? check.declared->displayName() : "an instance of one of the alternatives",
                       kReadAllTheSame}));
    if (check.dangling) dropDangling(instance, field, offset);
}

/// The members hold null from now on; what the file has is kept as text.
void LateReferences::dropDangling(KpIfcEntityBase& instance, std::uint32_t field, std::uint64_t offset) {
    const KpIfcAttributeFacts& row = *instance.getInstanceType()->recordFields()[field];
    RecordWriter writer(m_data);
    const std::string before = writer.parameters(instance);
    visitHandles(instance, row, [](KpDbObjectId& handle) {
        if (!handle.isDefined()) handle.setNull();
    });
    visitSelects(instance, row, [](KpIfcSelect& select) {
        KpDbObjectId handle;
        if (select.getHandle(handle) && !handle.isDefined()) select.nullify();
    });
    if (row.kind == KpIfcFieldKind::aggregate) row.aggregate->rearrange(row.member.aggregate(instance));
    const std::string after = writer.parameters(instance);
    const std::string source(splitParameters(before)[field]);
    m_report.add(findingOn(instance, field, KpIfcFinding::danglingReference, KpIfcSeverity::warning, offset,
                           {excerpt(source), "references to instances", kTextKept}));
    m_data.keepField(instance, {field, source, std::string(splitParameters(after)[field])});
    for (const KeptField& kept : *m_data.keptFields(instance))
        if (kept.field == KeptField::kWholeRecord && kept.normal == before) {
            m_data.keepField(instance, {KeptField::kWholeRecord, kept.source, after});
            break;
        }
}

} // namespace KP_SDAI
