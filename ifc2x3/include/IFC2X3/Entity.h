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

/// Base of all entity classes: their operations, by the facts of the instance's class. A class adds what differs, its
/// facts and its type tests, so that 653 tables of virtual functions name the same functions here.
class KPIFC2X3_EXPORT Entity : public KpIfcEntityBase {
public:
    bool getAttr(const KpAnsiString& name, KpIfcVariant& value) const override;
    bool putAttr(const KpAnsiString& name, const KpIfcVariant& value) override;
    using KpIfcEntityBase::testAttr;
    bool testAttr(const KpAnsiString& name) const override;
    void unsetAttr(const KpAnsiString& name) override;
    KP::ErrorStatus inFields(KpSpfFilerBase* filer) override;
    KP::ErrorStatus outFields(KpSpfFilerBase* filer) override;
    bool isInstanceOf(const KpIfcEntityType* type) const override;
    /// By the name of the dictionary's type, in any letter case; false for null.
    bool isInstanceOf(const char* typeName) const override;
    using KpIfcEntityBase::isKindOf;
    /// The same, of the class and its supertypes.
    bool isKindOf(const char* typeName) const override;

protected:
    /// What the schema says about the entity of the instance's class.
    virtual const KpIfcEntityFacts& classFacts() const = 0;
};

} // namespace IFC2X3
