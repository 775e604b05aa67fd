#include <KpIfcCore/KpIfcAggregationType.h>

namespace KP_SDAI {

KpIfcAggregationType::KpIfcAggregationType(DictionaryInstance* element, KpIfcIntegerBound* lower,
                                           KpIfcIntegerBound* upper)
    : m_element(element), m_lower(lower), m_upper(upper) {}

KpIfcListType::KpIfcListType(DictionaryInstance* element, KpIfcIntegerBound* lower, KpIfcIntegerBound* upper,
                             bool unique)
    : KpIfcAggregationType(element, lower, upper), m_unique(unique) {}

KpIfcSetType::KpIfcSetType(DictionaryInstance* element, KpIfcIntegerBound* lower, KpIfcIntegerBound* upper)
    : KpIfcAggregationType(element, lower, upper) {}

KpIfcArrayType::KpIfcArrayType(DictionaryInstance* element, KpIfcIntegerBound* lower, KpIfcIntegerBound* upper,
                               bool optional, bool unique)
    : KpIfcAggregationType(element, lower, upper), m_optional(optional), m_unique(unique) {}

KpIfcAggregationType::~KpIfcAggregationType() = default;
KpIfcListType::~KpIfcListType() = default;
KpIfcSetType::~KpIfcSetType() = default;
KpIfcArrayType::~KpIfcArrayType() = default;

} // namespace KP_SDAI
