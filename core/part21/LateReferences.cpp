#include "part21/LateReferences.h"
#include "part21/Findings.h"
#include "part21/RecordWriter.h"
#include "part21/ShareOut.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcSelect.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include <atomic>

namespace KP_SDAI {

namespace {

const KpIfcAttributeFacts& rowOf(const PendingField& field) {
    return *field.instance().getInstanceType()->recordFields()[field.field()];
}

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

void LateReferences::look(const StoredParts<PendingField>& fields, const Threading& threading,
                          ProgressMeter& progress) {
    const auto& parts = fields.parts();
    progress.beginItems(KpIfcStage::linking, fields.count());
    std::vector<std::vector<Departure>> departures(parts.size());
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> done{0};
    shareOut(threading.threadsFor(fields.count()), [&](unsigned share, const std::atomic<bool>& isStopped) {
        for (std::size_t i = next++; i < parts.size() && !isStopped; i = next++) {
            for (const PendingField& field : parts[i]) {
                // A record that was displaced by a later one of its name is text by now.
                if (field.instance().objectId().openObject() != &field.instance()) continue;
                const Departure departure = check(field);
                if (departure.isDangling || !departure.wrong.isNull()) departures[i].push_back(departure);
            }
            done += parts[i].size();
            if (share == 0) progress.stepTo(done);
        }
    });
    for (const std::vector<Departure>& ofPart : departures)
        for (const Departure& departure : ofPart) settle(departure);
}

void LateReferences::look(const PendingField& field) {
    settle(check(field));
}

LateReferences::Departure LateReferences::check(const PendingField& field) const {
    const KpIfcAttributeFacts& row = rowOf(field);
    Departure departure{field, false, {}};
    visitHandles(field.instance(), row, [&](const KpDbObjectId& handle) {
        if (handle.isNull()) return;
        if (!handle.isDefined()) {
            departure.isDangling = true;
        } else if (const KpIfcEntityType* const entity = m_data.entityOf(handle)) {
            if (departure.wrong.isNull() && !entity->isKindOf(*row.target)) departure.wrong = handle;
        }
    });
    visitSelects(field.instance(), row, [&](KpIfcSelect& select) {
        KpDbObjectId handle;
        if (!select.getHandle(handle) || handle.isNull()) return;
        if (!handle.isDefined())
            departure.isDangling = true;
        else if (handle.openObject() && !KpSpfFilerBase::resolveSelect(select) && departure.wrong.isNull())
            departure.wrong = handle;
    });
    return departure;
}

void LateReferences::settle(const Departure& departure) {
    const PendingField& field = departure.field;
    const KpIfcAttributeFacts& row = rowOf(field);
    if (!departure.wrong.isNull())
        m_report.add(findingOn(
            field.instance(), field.field(), KpIfcFinding::wrongReference, KpIfcSeverity::warning, field.offset(),
            {labelOf(departure.wrong),
             row.target ? (*row.target)->displayName() : "an instance of one of the alternatives", kReadAllTheSame}));
    if (departure.isDangling) dropDangling(field);
}

/// The members hold null from now on; what the file has is kept as text.
void LateReferences::dropDangling(const PendingField& pending) {
    KpIfcEntityBase& instance = pending.instance();
    const std::uint32_t field = pending.field();
    const KpIfcAttributeFacts& row = rowOf(pending);
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
    m_report.add(findingOn(instance, field, KpIfcFinding::danglingReference, KpIfcSeverity::warning, pending.offset(),
                           {excerpt(source), "references to instances", kTextKept}));
    m_data.keepField(instance, {field, source, std::string(splitParameters(after)[field])});
    for (const KeptField& kept : *m_data.keptFields(instance))
        if (kept.field == KeptField::kWholeRecord && kept.normal == before) {
            m_data.keepField(instance, {KeptField::kWholeRecord, kept.source, after});
            break;
        }
}

} // namespace KP_SDAI
