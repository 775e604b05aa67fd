#include <KpIfcCore/KpIfcPropertySets.h>

#include "properties/InstanceCopies.h"
#include "properties/PropertyWalk.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcModel.h>

#include <cmath>

namespace KP_SDAI {

namespace {

/// Why something is not done. Thrown before anything is changed, and never out of this file.
struct Refusal {
    std::string reason;
};

class PropertyWriter {
public:
    PropertyWriter(KpIfcModel& model, KpIfcEntityBase& object, std::string_view set, std::string_view property)
        : m_entities(model.schema()), m_model(model), m_copies(model, m_entities), m_object(object), m_set(set),
          m_property(property) {}

    void write(std::string_view measureType, const KpIfcVariant& value) {
        requireAccess();
        KpIfcEntityBase* place = nullptr; // the property set that an entry is added to
        for (const AttachedSet& attached : attachedSets(m_object, m_entities)) {
            if (attached.fromType || m_entities.setName(*attached.set) != m_set) continue;
            requireNoAttribute(*attached.set);
            std::vector<KpIfcEntityBase*> chain;
            PropertyWalk(m_entities).walk(attached, [&](const PropertyEntry& entry) {
                if (!chain.empty() || entry.path != m_property) return;
                chain = entry.holders;
                chain.push_back(entry.instance);
            });
            if (!chain.empty()) return change(chain, measureType, value);
            if (!place || !isKind(*place, m_entities.propertySet)) place = attached.set;
        }
        add(place, measureType, value);
    }

private:
    std::string name() const { return m_set + '.' + m_property; }

    void requireAccess() const {
        if (m_model.mode() != kReadWrite) throw Refusal{"the model may not be written"};
        if (!isKind(m_object, m_entities.object) && !isKind(m_object, m_entities.typeObject))
            throw Refusal{std::string(m_object.getInstanceType()->displayName()) + " has no property sets"};
        if (m_set.empty() || m_property.empty()) throw Refusal{"a set and a property need names"};
        // More than is ever made: copies of what is above an entry, the set, the relation.
        if (m_model.highestName() > UINT64_MAX - 128) throw Refusal{"the model has no instance names left"};
    }

    void requireNoAttribute(const KpIfcEntityBase& set) const {
        if (m_entities.members(set).owner) return;
        const auto* attribute = set.getInstanceType()->findAttribute(m_property);
        if (attribute && attribute->as<KpIfcExplicitAttributeDefinition>())
            throw Refusal{name() + " is an attribute of an " + set.getInstanceType()->displayName()};
    }

    /// The attribute of an entry that holds its value, and the value for it.
    struct Prepared {
        PropertyAttribute attribute;
        KpIfcVariant value;
    };

    Prepared prepare(const KpIfcEntityBase& entry, std::string_view measureType, const KpIfcVariant& value) const {
        if (isKind(entry, m_entities.single)) {
            const std::string held = measureTypeOf(m_entities.singleValue.value(entry));
            return {m_entities.singleValue, typed(measureType.empty() ? std::string_view(held) : measureType, value)};
        }
        const KpIfcExplicitAttributeDefinition* attribute = m_entities.quantityValue(entry);
        if (!attribute)
            throw Refusal{name() + " is an " + entry.getInstanceType()->displayName() +
                          "; only single values and quantities can be set"};
        const std::string declared = measureTypeOf(*attribute);
        if (!measureType.empty() && !equalNoCase(measureType.data(), measureType.size(), declared.c_str()))
            throw Refusal{name() + " is of type " + declared + ", not " + std::string(measureType)};
        double number = 0;
        if (!value.get(number) || !std::isfinite(number) || number == Consts::KpRealUnset)
            throw Refusal{name() + ": the value is no " + declared};
        return {{attribute->owner(), attribute->facts()}, number};
    }

    /// The value as the select that single values hold.
    KpIfcVariant typed(std::string_view measureType, const KpIfcVariant& value) const {
        if (measureType.empty()) throw Refusal{name() + " has no value yet; which type is it to be of?"};
        const KpIfcVariantType& type = m_entities.singleValue.row->select->value.value();
        KpIfcVariant made;
        KpIfcSelect* const select = type.createVariant(made) ? type.storedSelect(made) : nullptr;
        if (!select || !select->underlyingTypeName(KpAnsiString(measureType)))
            throw Refusal{name() + ": " + std::string(measureType) + " is no type of values"};
        KpIfcVariant scratch;
        const double* number = value.getIf<double>();
        const bool isTaken = (!number || std::isfinite(*number)) && !value.isEmpty() &&
                             select->putValue(inModelsForm(value, m_object, scratch));
        if (!isTaken || presented(m_object, made).isEmpty())
            throw Refusal{name() + ": the value is no " + select->underlyingTypeName()};
        return made;
    }

    /// Changes the last instance of a chain, of which each holds the next.
    void change(std::vector<KpIfcEntityBase*>& chain, std::string_view measureType, const KpIfcVariant& value) {
        const Prepared prepared = prepare(*chain.back(), measureType, value);
        std::size_t firstShared = 1;
        const bool isOverriding = !isKind(*chain.front(), m_entities.setDefinition);
        if (isOverriding && count(*chain.front(), m_entities.relatedObjects) > 1)
            throw Refusal{name() + " overrides that of several objects at once"};
        if (isOverriding || !isShared(*chain.front()))
            while (firstShared < chain.size() && m_copies.holderCount(*chain[firstShared]) <= 1) ++firstShared;
        else
            firstShared = 0;

        std::vector<KpIfcEntityBase*> own(chain);
        for (std::size_t i = firstShared; i < chain.size(); ++i) own[i] = m_copies.copy(*chain[i]);
        m_copies.put(*own.back(), prepared.attribute, prepared.value);
        for (std::size_t i = chain.size() - 1; i > 0 && own[i] != chain[i]; --i) {
            const bool isInRelation = i == 1 && isOverriding;
            m_copies.replace(*own[i - 1], isInRelation ? m_entities.overriding : m_entities.members(*own[i - 1]),
                             chain[i]->objectId(), own[i]->objectId());
        }
        if (own.front() != chain.front()) attachInstead(*chain.front(), *own.front());
    }

    /// Adds a single value to a set; to a new one where `set` is null.
    void add(KpIfcEntityBase* set, std::string_view measureType, const KpIfcVariant& value) {
        if (set && !isKind(*set, m_entities.propertySet))
            throw Refusal{m_set + " is an " + set->getInstanceType()->displayName() +
                          ", to which no single value can be added"};
        const KpIfcVariant made = typed(measureType, value);
        KpIfcEntityBase& entry = m_copies.create(m_entities.single);
        m_copies.putText(entry, m_entities.propertyName, m_property);
        m_copies.put(entry, m_entities.singleValue, made);
        if (!set) {
            KpIfcEntityBase& fresh = m_copies.createRooted(m_entities.propertySet, m_object);
            m_copies.putText(fresh, m_entities.rootName, m_set);
            m_copies.append(fresh, m_entities.setProperties, entry.objectId());
            return attach(fresh);
        }
        KpIfcEntityBase* const own = isShared(*set) ? m_copies.copy(*set) : set;
        m_copies.append(*own, m_entities.setProperties, entry.objectId());
        if (own != set) attachInstead(*set, *own);
    }

    static std::size_t count(const KpIfcEntityBase& instance, const PropertyAttribute& attribute) {
        std::size_t count = 0;
        attribute.visitTargets(instance, [&](KpIfcEntityBase&) { ++count; });
        return count;
    }

    /// Whether anything else than this object has the set.
    bool isShared(const KpIfcEntityBase& set) const {
        for (const KpDbObjectId& handle : m_model.referrers(set.objectId())) {
            const KpIfcEntityBase& referrer = *handle.openObject();
            if (isKind(referrer, m_entities.typeObject) && &referrer != &m_object) return true;
            bool hasOther = false;
            if (m_entities.relatingDefinition.target(referrer) == &set)
                m_entities.relatedObjects.visitTargets(
                    referrer, [&](KpIfcEntityBase& object) { hasOther = hasOther || &object != &m_object; });
            if (hasOther) return true;
        }
        return false;
    }

    void attach(KpIfcEntityBase& set) {
        if (isKind(m_object, m_entities.typeObject))
            return m_copies.append(m_object, m_entities.typeSets, set.objectId());
        KpIfcEntityBase& relation = m_copies.createRooted(m_entities.definesByProperties, m_object);
        m_copies.put(relation, m_entities.relatedObjects, KpIfcArray<KpDbObjectId>{m_object.objectId()});
        m_copies.put(relation, m_entities.relatingDefinition, set.objectId());
    }

    /// Lets this object have `own` in place of `shared`, which others keep.
    void attachInstead(const KpIfcEntityBase& shared, KpIfcEntityBase& own) {
        if (isKind(m_object, m_entities.typeObject))
            return m_copies.replace(m_object, m_entities.typeSets, shared.objectId(), own.objectId());
        bool isAttached = false;
        KpIfcArray<KpDbObjectId> relations(8);
        peekInverse(m_object, kDefinedBy, relations);
        for (const KpDbObjectId& handle : relations) {
            KpIfcEntityBase* relation = handle.openObject();
            if (!relation || m_entities.relatingDefinition.target(*relation) != &shared) continue;
            KpIfcEntityBase* attaching = relation;
            if (count(*relation, m_entities.relatedObjects) > 1) {
                attaching = isAttached ? nullptr : m_copies.copy(*relation);
                m_copies.replace(*relation, m_entities.relatedObjects, m_object.objectId(), KpDbObjectId());
            }
            if (!attaching) continue;
            if (attaching != relation)
                m_copies.put(*attaching, m_entities.relatedObjects, KpIfcArray<KpDbObjectId>{m_object.objectId()});
            m_copies.put(*attaching, m_entities.relatingDefinition, own.objectId());
            isAttached = true;
        }
    }

    const PropertyEntities m_entities;
    KpIfcModel& m_model;
    InstanceCopies m_copies;
    KpIfcEntityBase& m_object;
    const std::string m_set;
    const std::string m_property;
};

} // namespace

KP::ErrorStatus setProperty(KpIfcEntityBase& object, std::string_view set, std::string_view property,
                            std::string_view measureType, const KpIfcVariant& value, std::string& error) {
    KpIfcModel* const model = object.owningModel();
    if (!model) {
        error = "the object belongs to no model";
        return KP::eNullEntity;
    }
    try {
        PropertyWriter(*model, object, set, property).write(measureType, value);
        return KP::eOk;
    } catch (const Refusal& refusal) {
        error = refusal.reason;
        return KP::eRefused;
    }
}

} // namespace KP_SDAI
