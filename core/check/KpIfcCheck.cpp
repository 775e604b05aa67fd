#include <KpIfcCore/KpIfcCheck.h>

#include <KpIfcCore/KpIfcFile.h>

#include "check/CheckedEntity.h"
#include "check/FieldCheck.h"
#include "check/Findings.h"
#include "check/HeaderCheck.h"
#include "check/InverseCheck.h"
#include "check/UniqueRules.h"
#include "model/HeldReferences.h"
#include "model/ModelData.h"
#include "part21/ProgressMeter.h"

#include <algorithm>
#include <memory>
#include <tuple>
#include <unordered_map>

namespace KP_SDAI {

namespace {

class ModelCheck {
public:
    ModelCheck(ModelData& data, KpIfcReport& report, ProgressMeter& progress)
        : m_data(data), m_progress(progress), m_findings(report), m_fields(data.schema(), m_findings),
          m_inverses(data, m_findings), m_rules(data, m_findings) {}

    void run() {
        m_progress.beginItems(KpIfcStage::checking, m_data.instanceCount);
        for (KpIfcEntityBase* instance : m_data.model.instances()) {
            check(*instance);
            m_progress.step();
        }
    }

private:
    void check(KpIfcEntityBase& instance);
    void checkFields(KpIfcEntityBase& instance, const CheckedEntity& entity);
    const CheckedEntity& entityOf(const KpIfcEntityBase& instance);

    ModelData& m_data;
    ProgressMeter& m_progress;
    Findings m_findings;
    FieldCheck m_fields;
    InverseCheck m_inverses;
    UniqueRules m_rules;
    std::unordered_map<const KpIfcEntityType*, std::unique_ptr<CheckedEntity>> m_entities;
    const CheckedEntity* m_last = nullptr; ///< instances of one entity often stand one behind the other
    std::vector<const KeptField*> m_kept;  ///< source texts in force of the instance that is looked at
};

const CheckedEntity& ModelCheck::entityOf(const KpIfcEntityBase& instance) {
    const KpIfcEntityType* const type = instance.getInstanceType();
    if (!m_last || &m_last->type != type) {
        std::unique_ptr<CheckedEntity>& entity = m_entities[type];
        if (!entity) entity = std::make_unique<CheckedEntity>(*type);
        m_last = entity.get();
    }
    return *m_last;
}

void ModelCheck::check(KpIfcEntityBase& instance) {
    const CheckedEntity& entity = entityOf(instance);
    m_kept.clear();
    if (m_data.keptFields(instance)) m_kept = keptTextsInForce(m_data, instance);
    if (entity.type.isAbstract())
        m_findings.add(KpIfcFinding::abstractEntity, instance, "", [] {
            return Said{"an instance of an abstract entity", "one of its subtypes"};
        });
    checkFields(instance, entity);
    for (const CheckedInverse& inverse : entity.inverses) m_inverses.check(instance, inverse);
    if (!entity.rules.empty()) m_rules.look(instance, entity.rules, m_kept);
}

void ModelCheck::checkFields(KpIfcEntityBase& instance, const CheckedEntity& entity) {
    std::size_t present = entity.type.recordFields().size();
    for (const KeptField* kept : m_kept) // that a record has too few parameters is told once, not for each
        if (kept->field == KeptField::kWholeRecord) present = std::min(present, splitParameters(kept->source).size());
    for (const CheckedField& field : entity.fields) {
        if (field.field >= present) break;
        const auto kept = std::find_if(m_kept.begin(), m_kept.end(),
                                       [&](const KeptField* text) { return text->field == field.field; });
        if (kept == m_kept.end())
            m_fields.check(instance, field);
        else
            m_fields.checkKept(instance, field, (*kept)->source);
    }
}

/// True for what reading reports and checking tells anew, with more to say.
bool isToldAnew(KpIfcFinding finding, KpIfcSeverity severity) {
    switch (finding) {
    case KpIfcFinding::header:
    case KpIfcFinding::globalId:
    case KpIfcFinding::missingValue:
    case KpIfcFinding::notUnique:
    case KpIfcFinding::wrongReference:
    case KpIfcFinding::abstractEntity: return true;
    case KpIfcFinding::wrongValue: return severity == KpIfcSeverity::note;
    default: return false;
    }
}

void takeOver(const KpIfcReport& read, KpIfcReport& report) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(KpIfcFinding::count_); ++i) {
        const auto finding = static_cast<KpIfcFinding>(i);
        for (const KpIfcSeverity severity : {KpIfcSeverity::note, KpIfcSeverity::warning, KpIfcSeverity::error}) {
            if (isToldAnew(finding, severity)) continue;
            std::size_t unlisted = read.count(finding, severity);
            for (const KpIfcReportEntry& entry : read.entries()) {
                if (entry.finding != finding || entry.severity != severity) continue;
                report.add(entry);
                --unlisted;
            }
            report.addUnlisted(finding, severity, unlisted);
        }
    }
}

void checkModelInto(const KpIfcModel& model, KpIfcReport& report, ProgressMeter& progress) {
    // Nothing that is checked changes but what follows from changes that were made before.
    ModelData& data = const_cast<KpIfcModel&>(model).data();
    data.commit();
    ModelCheck(data, report, progress).run();
}

void sortByPlace(KpIfcReport& report) {
    const auto place = [](const KpIfcReportEntry& entry) {
        return std::tuple(entry.instanceName, entry.line == 0, entry.offset); // those without a place last
    };
    std::stable_sort(report.located().begin(), report.located().end(),
                     [&](const KpIfcReportEntry& a, const KpIfcReportEntry& b) { return place(a) < place(b); });
}

} // namespace

KP::ErrorStatus checkModel(const KpIfcModel& model, KpIfcReport& report, const KpIfcProgressFunction& progress) {
    try {
        ProgressMeter meter(progress);
        checkModelInto(model, report, meter);
        return KP::eOk;
    } catch (const ProgressMeter::Cancelled&) {
        return KP::eCancelled;
    }
}

KpIfcReport checkModel(const KpIfcModel& model, std::size_t listedPerKind) {
    KpIfcReport report(listedPerKind);
    checkModel(model, report, {});
    return report;
}

KP::ErrorStatus checkFile(KpIfcFile& file, KpIfcReport& report, const KpIfcProgressFunction& progress) {
    if (!file.model()) return KP::eOk;
    if (const KP::ErrorStatus status = file.readAll(); status != KP::eOk) return status;
    takeOver(file.report(), report);
    checkHeader(file.header(), file.model()->schema().name(), report);
    const KP::ErrorStatus status = checkModel(*file.model(), report, progress);
    sortByPlace(report);
    return status;
}

KpIfcReport checkFile(KpIfcFile& file, std::size_t listedPerKind) {
    KpIfcReport report(listedPerKind);
    checkFile(file, report, {});
    return report;
}

} // namespace KP_SDAI
