#pragma once

#include <IFC2X3/Types.h>
#include <KpIfcCore/KpIfcProperty.h>

/// Bases of the property classes, of which there is one for every attribute. They hold no value: they read and write
/// the attribute of the instance that they are given.
namespace IFC2X3 {

/// An explicit attribute.
class KPIFC2X3_EXPORT ExplicitProperty : public KP_SDAI::KpIfcProperty {
public:
    KP::ErrorStatus getAttribute(const KpIfcEntityBase* instance, KpIfcVariant& value) const override;
    KP::ErrorStatus putAttribute(KpIfcEntityBase* instance, const KpIfcVariant& value) const override;

    const char* attributeName() const { return m_row.name; }
    const KP_SDAI::KpIfcVariantType& descriptor() const;

protected:
    /// `index` counts the explicit attributes that the entity of `facts` itself declares.
    ExplicitProperty(const KpIfcEntityFacts& facts, std::uint32_t index) noexcept;

private:
    const KpIfcAttributeFacts& m_row;
};

/// An inherited explicit attribute that the entity redeclares as derived: shown, never set.
class KPIFC2X3_EXPORT RedeclaredProperty : public ExplicitProperty {
public:
    KP::ErrorStatus putAttribute(KpIfcEntityBase* instance, const KpIfcVariant& value) const override;

protected:
    using ExplicitProperty::ExplicitProperty;
};

/// An inverse attribute: the array of the instances that refer to this one; never set.
class KPIFC2X3_EXPORT InverseProperty : public KP_SDAI::KpIfcProperty {
public:
    KP::ErrorStatus getAttribute(const KpIfcEntityBase* instance, KpIfcVariant& value) const override;

    const char* attributeName() const { return m_row.name; }
    const KP_SDAI::KpIfcVariantType& descriptor() const;

protected:
    /// `index` counts the inverse attributes that the entity of `facts` itself declares.
    InverseProperty(const KpIfcEntityFacts& facts, std::uint32_t index) noexcept;

private:
    const KpIfcInverseFacts& m_row;
};

/// An inverse attribute through which the structure of a building descends: the instances at the other ends of its
/// relations.
class KPIFC2X3_EXPORT HierarchyProperty : public KP_SDAI::KpIfcCollectionProperty {
public:
    KP::ErrorStatus getCollection(const KpIfcEntityBase* instance, KpIfcArray<KpDbObjectId>& members) const override;

    const char* attributeName() const { return m_row.name; }
    const KP_SDAI::KpIfcVariantType& descriptor() const;

protected:
    /// The same; `related` is the relations' attribute that holds the members.
    HierarchyProperty(const KpIfcEntityFacts& facts, std::uint32_t index, const char* related) noexcept;

private:
    const KpIfcInverseFacts& m_row;
    const char* m_related;
};

} // namespace IFC2X3
