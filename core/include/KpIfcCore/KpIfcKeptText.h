#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcModel.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// What a model holds as text because no class or attribute could hold it, for those that only look. Texts are those
/// of the file and good while the model lives and nothing that they belong to is changed.
namespace KP_SDAI {

/// The source text of a field that its attribute could not hold.
struct KpIfcKeptField {
    static constexpr std::uint32_t kWholeRecord = UINT32_MAX; ///< the text is all parameters: their number is wrong
    std::uint32_t field;                                      ///< counts from 0 in the record
    std::string_view source;
};

/// The texts of all records, and of structure between records, that are kept as text, in file order.
KPIFCCORE_EXPORT std::vector<std::string_view> keptRecords(const KpIfcModel& model);

/// The texts that are kept of fields of an instance since it was read, whether or not the attribute was changed later;
/// empty for most instances.
KPIFCCORE_EXPORT std::vector<KpIfcKeptField> keptFields(const KpIfcEntityBase& instance);

} // namespace KP_SDAI
