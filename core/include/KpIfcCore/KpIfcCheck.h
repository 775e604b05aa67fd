#pragma once

#include <KpIfcCore/KpErrorStatus.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcProgress.h>
#include <KpIfcCore/KpIfcReport.h>

#include <cstddef>

namespace KP_SDAI {

class KpIfcFile;
class KpIfcModel;

/// Says where a model is not as its schema declares, as far as declarations say: mandatory attributes without a value,
/// references and selects of a wrong entity, sizes of aggregates and elements that stand twice in them, widths, numbers
/// of referrers of inverse attributes, rules of uniqueness, instances of abstract entities; and the form of GlobalIds.
/// Rules that a schema writes as expressions (WHERE) are not looked at.
///
/// Of a field whose source text is kept because its attribute could not hold it (KpIfcKeptText.h), only what the text
/// lacks is told: what is wrong with it, the report of reading says. Every finding is a warning, without a place in the
/// file; they ascend by instance. `listedPerKind` of each kind are listed, all are counted.
///
/// Walks once over the instances and changes nothing: no access mode matters, nothing counts as changed
/// afterwards. What is uncommitted is committed first; a model at rest is only read, by any number of threads.
///
///     const KpIfcReport findings = checkModel(*file.model());
///     for (const KpIfcReportEntry& entry : findings.entries()) std::cout << entry.text() << '\n';
KPIFCCORE_EXPORT KpIfcReport checkModel(const KpIfcModel& model,
                                        std::size_t listedPerKind = KpIfcReport::kListedPerKind);

/// The same for who wants to know how far it has come, or to stop it: adds to `report`. eCancelled where `progress`
/// stopped it; the report, which has what was found until then, is to be thrown away.
KPIFCCORE_EXPORT KP::ErrorStatus checkModel(const KpIfcModel& model, KpIfcReport& report,
                                            const KpIfcProgressFunction& progress);

/// The same of a whole file: what reading reported, what its header lacks (ISO 10303-21, clause 8) and what
/// checkModel() finds, nothing of it twice; header and structure first, then ascending by instance. Of reading all is
/// listed that its own report lists. What reading reported is true of the file as it was read: to check what was
/// changed since, save it and open it anew. Empty while no file is open.
KPIFCCORE_EXPORT KpIfcReport checkFile(KpIfcFile& file, std::size_t listedPerKind = KpIfcReport::kListedPerKind);
KPIFCCORE_EXPORT KP::ErrorStatus checkFile(KpIfcFile& file, KpIfcReport& report, const KpIfcProgressFunction& progress);

} // namespace KP_SDAI
