#include <KpIfcCore/KpIfcKeptText.h>

#include "model/ModelData.h"

namespace KP_SDAI {

static_assert(KpIfcKeptField::kWholeRecord == KeptField::kWholeRecord);

std::vector<std::string_view> keptRecords(const KpIfcModel& model) {
    std::vector<std::string_view> texts;
    model.data().visitInFileOrder([](const KpIfcEntityBase*) {},
                                  [&texts](const KeptRecord& record) { texts.push_back(record.text); });
    return texts;
}

std::vector<KpIfcKeptField> keptFields(const KpIfcEntityBase& instance) {
    std::vector<KpIfcKeptField> fields;
    const KpIfcModel* const model = instance.owningModel();
    const std::vector<KeptField>* const kept = model ? model->data().keptFields(instance) : nullptr;
    if (kept)
        for (const KeptField& field : *kept) fields.push_back({field.field, field.source});
    return fields;
}

} // namespace KP_SDAI
