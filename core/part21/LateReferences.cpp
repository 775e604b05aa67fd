#include "part21/LateReferences.h"
#include "part21/Findings.h"
#include "part21/RecordWriter.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcSelect.h>
#include <KpIfcCore/KpSpfFilerBase.h>

namespace KP_SDAI {

namespace {

/// What is left to say about the references of one field.
struct FieldCheck {
    const KpIfcEntityType* declared = nullptr;
    bool dangling = false;
    KpDbObjectId wrong; ///< the first to an instance of another entity

    void look(KpDbObjectId& handle) {
        if (handle.isNull()) return;
        if (!handle.isDefined()) {
            dangling = true;
        } else if (const KpIfcEntityBase* instance = handle.openObject()) {
            if (wrong.isNull() && !instance->getInstanceType()->isKindOf(declared)) wrong = handle;
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

void LateReferences::look(const std::vector<std::vector<PendingField>>& parts, ProgressMeter& progress) {
    std::size_t count = 0;
    for (const std::vector<PendingField>& fields : parts) count += fields.size();
    progress.beginItems(KpIfcStage::linking, count);
    for (const std::vector<PendingField>& fields : parts) {
        for (const PendingField& pending : fields) {
            progress.step();
            // A record that was displaced by a later one of its name is text by now.
            KpIfcEntityBase& instance = pending.instance();
            if (instance.objectId().openObject() == &instance) lookAt(instance, pending.field(), pending.offset());
        }
    }
}

void LateReferences::lookAt(KpIfcEntityBase& instance, std::uint32_t field, std::uint64_t offset) {
    const KpIfcAttributeFacts& row = *instance.getInstanceType()->recordFields()[field];
    FieldCheck check;
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
