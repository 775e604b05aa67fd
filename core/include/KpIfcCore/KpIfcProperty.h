#pragma once

#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpErrorStatus.h>
#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

/// Attributes as properties: what a program shows in a table of names and values, without knowing the classes.
namespace KP_SDAI {

class KpIfcEntityBase;
class KpIfcEntityType;

/// What a property is beside a name and a value.
class KPIFCCORE_EXPORT KpIfcPropertyFeature {
public:
    virtual ~KpIfcPropertyFeature();
};
/// What it holds is shown as if it were the instance's own.
class KPIFCCORE_EXPORT KpIfcDispAsPropFeature : public KpIfcPropertyFeature {
public:
    ~KpIfcDispAsPropFeature() override;
};
/// What it holds is one level below the instance in the structure of the building.
class KPIFCCORE_EXPORT KpIfcHierarchicalPropFeature : public KpIfcPropertyFeature {
public:
    ~KpIfcHierarchicalPropFeature() override;
};

enum KpIfcPropertyKind : int {
    kSimpleProperty = 1,    ///< a value
    kCollectionProperty = 3 ///< instances
};

/// One property of the instances of an entity. Owns its features. Has no state of an instance: any thread may use it.
///
/// No operation throws; where one fails, nothing has changed.
class KPIFCCORE_EXPORT KpIfcProperty {
public:
    KpIfcProperty() noexcept;
    KpIfcProperty(const KpIfcProperty&) = delete;
    KpIfcProperty& operator=(const KpIfcProperty&) = delete;
    virtual ~KpIfcProperty();

    virtual KpIfcPropertyKind kind() const { return kSimpleProperty; }
    /// Makes `value` the property's value, unset markers included (of texts Consts::KpStringUnset). Texts are KcString,
    /// aggregates arrays, selects selects by value: nothing points into the instance. eRefused for null and for an
    /// instance of another entity.
    virtual KP::ErrorStatus getAttribute(const KpIfcEntityBase*, KpIfcVariant& /*value*/) const { return KP::eRefused; }
    /// Stores a value of exactly the type that getAttribute() gives. eRefused for null, for other types, for an
    /// instance of another entity, where the model may not be written, and for properties that nobody sets.
    virtual KP::ErrorStatus putAttribute(KpIfcEntityBase*, const KpIfcVariant& /*value*/) const { return KP::eRefused; }
    /// The instances that a collection holds, in the order of the relations that say so. eNullEntity for null, eRefused
    /// for properties that are no collections.
    virtual KP::ErrorStatus getCollection(const KpIfcEntityBase*, KpIfcArray<KpDbObjectId>& /*members*/) const {
        return KP::eRefused;
    }
    /// How many these are.
    virtual KP::ErrorStatus countCollection(const KpIfcEntityBase* instance, std::uint32_t& count) const {
        return countMembers(instance, count);
    }
    /// Whether the collection can be changed through the property; no property here can.
    virtual bool isCollectionEditable() const { return false; }

    /// `type` is the descriptor of the attribute's values, `entityType` the entity that declares it.
    void init(const KpAnsiString& name, const KpIfcVariantType& type, const KpIfcEntityType* entityType);
    const KpAnsiString& name() const { return m_name; }
    const KpIfcVariantType* type() const { return m_type; }
    const KpIfcEntityType* entityType() const { return m_entityType; }

    /// Takes ownership of what is appended.
    std::vector<KpIfcPropertyFeature*>& propertyFeatures() { return m_features; }
    const std::vector<KpIfcPropertyFeature*>& propertyFeatures() const { return m_features; }

private:
    KP::ErrorStatus countMembers(const KpIfcEntityBase* instance, std::uint32_t& count) const;

    KpAnsiString m_name;
    const KpIfcVariantType* m_type = nullptr;
    const KpIfcEntityType* m_entityType = nullptr;
    std::vector<KpIfcPropertyFeature*> m_features;
};

/// Base of properties that hold instances.
class KPIFCCORE_EXPORT KpIfcCollectionProperty : public KpIfcProperty {
public:
    ~KpIfcCollectionProperty() override;
    KpIfcPropertyKind kind() const override;
};

/// The properties of one entity, in order: those of the attributes that it declares itself. Owns them.
class KPIFCCORE_EXPORT KpIfcPropertyCollection {
public:
    KpIfcPropertyCollection();
    KpIfcPropertyCollection(const KpIfcPropertyCollection&) = delete;
    KpIfcPropertyCollection& operator=(const KpIfcPropertyCollection&) = delete;
    ~KpIfcPropertyCollection();

    /// Takes ownership.
    void add(KpIfcProperty* property);

    std::size_t size() const { return m_properties.size(); }
    const KpIfcProperty& operator[](std::size_t index) const { return *m_properties[index]; }
    /// The property of a name in any letter case; null where there is none.
    const KpIfcProperty* find(std::string_view name) const;

private:
    std::vector<std::unique_ptr<KpIfcProperty>> m_properties;
};

} // namespace KP_SDAI
