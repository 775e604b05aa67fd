#pragma once

#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpErrorStatus.h>
#include <KpIfcCore/KpIfcCoreApi.h>

#include <cstdint>

class KpSpfFilerBase;

namespace KP_SDAI {

class KpIfcAttributeDefinition;
class KpIfcEntityType;
class KpIfcModel;
class KpIfcVariant;
class ModelData;

/// Base of every entity class: one instance of an entity.
///
/// An instance belongs to a model, which owns it and knows it by a handle, or to nobody (made by a factory or on the
/// stack), in which case whoever made it destroys it. An erased one belongs to no model any more, but stays in memory
/// while its model does (KpIfcErase.h). Copying copies attribute values only: not the handle, not the model. Every
/// operation that changes an instance calls beforeChange() first. One thread at a time changes a model; any number may
/// read one that nobody changes: with a model whose mode is kReadOnly whatever they call, else through const accessors
/// only, because a getter that hands out a reference to a member for changing counts as a change.
///
/// A changed instance of a model is uncommitted until the next commit (KpIfcModel::commit()), which reading an inverse
/// attribute, asking for referrers and saving do by themselves. References to members obtained for changing are good
/// for changing until then and have to be obtained anew afterwards; those obtained while the mode was kReadOnly are not
/// good for changing at all.
///
/// What the classes of a schema inherit is defined here, not in a source: every table of virtual functions names it,
/// and what each library has itself is not looked up when it is loaded.
class KPIFCCORE_EXPORT KpIfcEntityBase {
public:
    KpIfcEntityBase() = default;
    KpIfcEntityBase(const KpIfcEntityBase&) : m_self(0) {}
    KpIfcEntityBase& operator=(const KpIfcEntityBase&) {
        beforeChange();
        return *this;
    }

    // Attributes by name, in any letter case. The classes of a schema override the public ones; what is true of all:
    //
    //  - a model whose mode is kAccessUndefined throws KpIfcException 190 where something is read, one whose mode is
    //    not kReadWrite throws 180 where something is changed; nothing has changed then. Without a model all is
    //    allowed;
    //  - own and inherited explicit attributes are known, redeclared ones as the supertype's; inverse ones to getAttr()
    //    only, as sets that must not be changed; derived ones not at all;
    //  - nothing is checked but the type of the value: not bounds, not the entity of an instance that is referred to.

    /// Makes `value` what the attribute holds, unset markers included, without a copy of what lives in the instance:
    /// texts are const char* (their length: KpAnsiString::viewOf()), selects and aggregates pointers to the member. On
    /// a model that may be written, handing out such a pointer counts as a change about to happen. False, and `value`
    /// as it was, for an unknown name.
    virtual bool getAttr(const KpAnsiString& name, KpIfcVariant& value) const;
    virtual ~KpIfcEntityBase();
    virtual KpIfcEntityType* getInstanceType() const;
    /// Stores a value, converted to the attribute's type where needed. False, and nothing changed, for an unknown name
    /// or a value that does not convert, with one exception: a text that is no literal of its enumeration unsets it.
    virtual bool putAttr(const KpAnsiString& name, const KpIfcVariant& value);
    /// The same by definition; false for null and for attributes that this instance does not have.
    virtual bool testAttr(const KpIfcAttributeDefinition* attribute) const { return testByDefinition(attribute); }
    /// True where the attribute holds a value; an aggregate, where it has elements.
    virtual bool testAttr(const KpAnsiString& name) const;
    virtual void unsetAttr(const KpAnsiString& name);
    /// Reads the fields of a record (ISO 10303-21, internal mapping) from `filer`; always eOk.
    virtual KP::ErrorStatus inFields(KpSpfFilerBase* filer);
    /// Writes the fields of a record to `filer`; always eOk.
    virtual KP::ErrorStatus outFields(KpSpfFilerBase* filer);
    virtual KP::ErrorStatus _inFields(KpSpfFilerBase* filer) { return inFields(filer); }
    virtual KP::ErrorStatus _outFields(KpSpfFilerBase* filer) { return outFields(filer); }
    /// Enters this instance in the inverse attributes of those that it refers to. The runtime calls it when a file has
    /// been read and when changes are committed; programs need not.
    virtual void setInverseCounterParts() {}
    /// Does nothing: entries are withdrawn by the runtime.
    virtual void resetInverseCounterParts() {}
    // The same operations once more; the second tells whether it knows the attribute.
    virtual bool testAttrCaseInsensitive(const KpAnsiString& name) const { return testAttr(name); }
    virtual bool unsetAttrCaseInsensitive(const KpAnsiString& name) { return unsetIfKnown(name); }
    virtual bool _getAttr(const KpAnsiString& name, KpIfcVariant& value) const { return getAttr(name, value); }
    virtual bool _putAttr(const KpAnsiString& name, const KpIfcVariant& value) { return putAttr(name, value); }
    virtual bool _testAttr(const KpAnsiString& name) const { return testAttr(name); }
    virtual void _unsetAttr(const KpAnsiString& name) { unsetAttr(name); }
    virtual bool isInstanceOf(const KpIfcEntityType* type) const;
    virtual bool isInstanceOf(const char* typeName) const;
    virtual bool isKindOf(const KpIfcEntityType* type) const;
    virtual bool isKindOf(const char* typeName) const;

    /// The handle under which the model knows this instance; null without a model.
    KpDbObjectId objectId() const { return KpDbObjectId(reinterpret_cast<KpIfcSlot*>(m_self & ~kFlags)); }
    /// The n of #n; 0 without a model.
    std::uint64_t instanceName() const { return objectId().instanceName(); }
    /// The model that owns this instance; null while it belongs to none.
    KpIfcModel* owningModel() const { return objectId().model(); }
    /// Ends an openObject().
    KP::ErrorStatus close() const { return KP::eOk; }

    /// True once anything may have changed this instance since it was read.
    bool isChanged() const { return (m_self & kState) >= kCommitted; }
    /// True from a change until the next commit of its model; of an instance of no model, for ever.
    bool isUncommitted() const { return (m_self & kState) == kUncommitted; }

protected:
    /// The one operation that every change passes before it stores.
    void beforeChange() {
        if (!isUncommitted()) noteChange();
    }
    /// The one operation that passes before a reference is handed out through which a member can be changed. In a model
    /// that may not be written it marks nothing, so that many threads may read it.
    void beforeHandOut() {
        if (!isUncommitted()) noteHandOut();
    }

private:
    friend class ModelData;
    friend struct KpIfcChange;

    // Two bits of state, each of which implies those before it, ...
    static constexpr std::uintptr_t kAsRead = 0;
    static constexpr std::uintptr_t kOwnsHeap = 1;    ///< its destructor must run when the model closes
    static constexpr std::uintptr_t kCommitted = 2;   ///< may differ from what was read
    static constexpr std::uintptr_t kUncommitted = 3; ///< changed; on the model's list for the next commit
    static constexpr std::uintptr_t kState = 3;
    // ... and a flag.
    static constexpr std::uintptr_t kKeptText = 4; ///< the model keeps source text of some of its fields
    static constexpr std::uintptr_t kFlags = 7;

    void noteChange();
    void noteHandOut();
    bool testByDefinition(const KpIfcAttributeDefinition* attribute) const;
    bool unsetIfKnown(const KpAnsiString& name);

    std::uintptr_t m_self = 0; ///< address of the slot and the flags
};

/// For shared code of the classes: what every change passes before it stores, and every way to make one.
struct KpIfcChange {
    static void before(KpIfcEntityBase& instance) { instance.beforeChange(); }
    static void beforeHandOut(KpIfcEntityBase& instance) { instance.beforeHandOut(); }
};

/// The instance that a handle refers to, as class T; null where there is none or it is not of that entity.
///
///     if (IfcWall* wall = as<IfcWall>(handle)) ...
template <class T>
T* as(const KpDbObjectId& handle) {
    KpIfcEntityBase* instance = handle.openObject();
    return instance && instance->isKindOf(T::g_pEntityType) ? static_cast<T*>(instance) : nullptr;
}
template <class T>
T* as(KpIfcEntityBase* instance) {
    return instance && instance->isKindOf(T::g_pEntityType) ? static_cast<T*>(instance) : nullptr;
}
template <class T>
const T* as(const KpIfcEntityBase* instance) {
    return instance && instance->isKindOf(T::g_pEntityType) ? static_cast<const T*>(instance) : nullptr;
}

} // namespace KP_SDAI
