#pragma once

#include <IFC2X3/Types.h>
#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcInverseMembers.h>
#include <KpIfcCore/KpIfcListAggr.h>
#include <KpIfcCore/KpIfcSetAggr.h>

#include <cstddef>

namespace IFC2X3 {

using KP_SDAI::as;
using KP_SDAI::KpIfcListAggr;
using KP_SDAI::KpIfcListAggrBounded;
using KP_SDAI::KpIfcSetAggr;
using KP_SDAI::KpIfcSetAggrBounded;

/// What a text attribute holds before it is given a value.
inline KpAnsiString unsetText() {
    return KpAnsiString::unset();
}

/// The inverse attributes that an entity declares.
template <std::size_t count>
class InverseMembers : public KP_SDAI::KpIfcInverseMembers {
public:
    static constexpr std::size_t kCount = count;
};

// What the operations of every entity class come to, by the rows of its facts.

/// The attributes of an instance by name, beginning with those that the entity of `facts` declares, then those of its
/// supertypes: KpIfcEntityBase::getAttr() and its like.
KPIFC2X3_EXPORT bool getAttribute(const KpIfcEntityBase& instance, const KpIfcEntityFacts& facts,
                                  const KpAnsiString& name, KpIfcVariant& value);
KPIFC2X3_EXPORT bool putAttribute(KpIfcEntityBase& instance, const KpIfcEntityFacts& facts, const KpAnsiString& name,
                                  const KpIfcVariant& value);
KPIFC2X3_EXPORT bool testAttribute(const KpIfcEntityBase& instance, const KpIfcEntityFacts& facts,
                                   const KpAnsiString& name);
KPIFC2X3_EXPORT void unsetAttribute(KpIfcEntityBase& instance, const KpIfcEntityFacts& facts, const KpAnsiString& name);

/// Reads the fields of a record into the members of an instance, those of the supertypes first; always eOk.
KPIFC2X3_EXPORT KP::ErrorStatus readFields(KpIfcEntityBase& instance, KpSpfFilerBase& filer,
                                           const KpIfcEntityFacts& facts);
/// Writes the members of an instance as the fields of a record, in the same order; always eOk.
KPIFC2X3_EXPORT KP::ErrorStatus writeFields(KpIfcEntityBase& instance, KpSpfFilerBase& filer,
                                            const KpIfcEntityFacts& facts);

/// True where a type exists and has that name in any letter case.
KPIFC2X3_EXPORT bool isNamed(const KpIfcEntityType* type, const char* name);

} // namespace IFC2X3
