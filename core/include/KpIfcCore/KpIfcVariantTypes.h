#pragma once

#include <KpIfcCore/KpIfcArrayAggr.h>
#include <KpIfcCore/KpIfcListAggr.h>
#include <KpIfcCore/KpIfcSelect.h>
#include <KpIfcCore/KpIfcSetAggr.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <new>
#include <type_traits>

/// The classes of descriptors. Programs meet them as KpIfcVariantType only; modules make objects of them.
namespace KP_SDAI {

/// Descriptor of values that are only bytes.
template <class T>
class KpIfcVariantTypePOD : public KpIfcVariantType {
public:
    explicit constexpr KpIfcVariantTypePOD(const wchar_t* displayName)
        : KpIfcVariantType(displayName, sizeof(T), nullptr, nullptr) {}
    bool subEqualTo(const void* a, const void* b) const override {
        return *static_cast<const T*>(a) == *static_cast<const T*>(b);
    }
};

namespace detail {

/// How variants keep objects of a class.
template <class T>
class ObjectAllocator final : public KpIfcMemObjectAllocator {
public:
    void construct(void* at, const void* from) const override { ::new (at) T(*static_cast<const T*>(from)); }
    void assign(void* to, const void* from) const override {
        if (to != from) *static_cast<T*>(to) = *static_cast<const T*>(from);
    }
    void destroy(void* value) const override { static_cast<T*>(value)->~T(); }
};

} // namespace detail

/// Descriptor of values that are objects of a class.
template <class T>
class KpIfcVariantTypeForObject : public KpIfcVariantType {
public:
    using MemObjectAllocator = detail::ObjectAllocator<T>;

    explicit constexpr KpIfcVariantTypeForObject(const wchar_t* displayName, bool onHeap = false)
        : KpIfcVariantType(displayName, sizeof(T), nullptr, nullptr, &m_allocator, onHeap) {}
    bool subEqualTo(const void* a, const void* b) const override {
        return *static_cast<const T*>(a) == *static_cast<const T*>(b);
    }
    bool createVariant(KpIfcVariant& value) const override {
        value.set(T());
        return true;
    }

private:
    MemObjectAllocator m_allocator;
};

/// Descriptor of the values of an enumeration: 32-bit codes.
class KPIFCCORE_EXPORT KpIfcEnumVariantType : public KpIfcVariantType {
public:
    /// `displayName` is qualified (L"IFC2X3::IfcRoleEnum"); the names of the constants are qualified alike.
    KpIfcEnumVariantType(const wchar_t* displayName, const KpIfcEnumFacts& facts);
    ~KpIfcEnumVariantType() override;

    /// The names of the constants in the order of their codes, that of the unset code last.
    const KpIfcArray<KpAnsiString>& constantNames() const { return m_constantNames; }

    const KpIfcEnumFacts* enumeration() const override;
    bool subEqualTo(const void* a, const void* b) const override;
    bool subToValueType(const KpIfcVariantType& target, const KpIfcVariant& value, KpIfcVariant& result) const override;
    bool subToString(KcString& out, const void* value, StringFormat format) const override;
    bool createVariant(KpIfcVariant& value) const override;

private:
    const KpIfcEnumFacts& m_facts;
    KpIfcArray<KpAnsiString> m_constantNames;
};
template <class E>
class KpIfcVariantTypeEnum final : public KpIfcEnumVariantType {
public:
    using KpIfcEnumVariantType::KpIfcEnumVariantType;
};

/// How selects convert, whatever their class.
class KPIFCCORE_EXPORT KpIfcSelectConversion {
public:
    /// What a select holds as a value of another type, another select included; false where it cannot be.
    static bool _subToValueType(const KpIfcVariantType& target, const KpIfcSelect& select, KpIfcVariant& result);
    /// Gives a select the value: that of another select whose alternative it has too, a handle to an instance of one of
    /// its alternatives, or a value of a kind that only one of its alternatives has. False, and `select` undefined,
    /// where it takes none.
    static bool _subFromValueType(const KpIfcVariant& value, KpIfcSelect& select);
    static bool _subToString(KcString& out, const KpIfcSelect& select, StringFormat format);
    static KpDbObjectId reference(const KpIfcSelect* select);
};

/// What the descriptors of all selects do, by what select() reaches.
class KPIFCCORE_EXPORT KpIfcSelectVariantType : public KpIfcVariantType {
public:
    using KpIfcVariantType::KpIfcVariantType;
    ~KpIfcSelectVariantType() override;

    bool isSelect() const override { return true; }
    bool subEqualTo(const void* a, const void* b) const override;
    bool subToValueType(const KpIfcVariantType& target, const KpIfcVariant& value, KpIfcVariant& result) const override;
    bool subToString(KcString& out, const void* value, StringFormat format) const override;
    /// Null for a null pointer.
    const char* subTypePath(const void* value) const override;
    KpDbObjectId reference(const KpIfcVariant& value) const override;
    KpIfcSelect* storedSelect(const KpIfcVariant& value) const override;
};
/// Of selects held by value.
class KPIFCCORE_EXPORT KpIfcSelectValueVariantType : public KpIfcSelectVariantType {
public:
    using KpIfcSelectVariantType::KpIfcSelectVariantType;
    ~KpIfcSelectValueVariantType() override;

    bool subFromValueType(const KpIfcVariant& value, KpIfcVariant& result) const override;
    KpIfcSelect* select(const void* value) const override;
};
/// Of pointers to selects.
class KPIFCCORE_EXPORT KpIfcSelectPtrVariantType : public KpIfcSelectVariantType {
public:
    /// `held` is where the descriptor of the same selects held by value is kept.
    KpIfcSelectPtrVariantType(const wchar_t* displayName, KpIfcDescriptorSlot& held);
    ~KpIfcSelectPtrVariantType() override;

    bool subToValueType(const KpIfcVariantType& target, const KpIfcVariant& value, KpIfcVariant& result) const override;
    /// Points at the select that a variant holds by value.
    bool subFromValueType(const KpIfcVariant& value, KpIfcVariant& result) const override;
    bool createVariant(KpIfcVariant& value) const override;
    KpIfcSelect* select(const void* value) const override;

private:
    KpIfcDescriptorSlot& m_held;
};

template <class S>
requires std::is_base_of_v<KpIfcSelect, S>
class KpIfcVariantTypeForObject<S> : public KpIfcSelectValueVariantType {
public:
    using MemObjectAllocator = detail::ObjectAllocator<S>;

    explicit KpIfcVariantTypeForObject(const wchar_t* displayName, bool onHeap)
        : KpIfcSelectValueVariantType(displayName, sizeof(S), nullptr, nullptr, &m_allocator, onHeap) {}
    bool createVariant(KpIfcVariant& value) const override {
        value.set(S());
        return true;
    }

private:
    MemObjectAllocator m_allocator;
};
template <class S>
requires std::is_base_of_v<KpIfcSelect, S>
class KpIfcVariantTypePOD<S*> : public KpIfcSelectPtrVariantType {
public:
    explicit KpIfcVariantTypePOD(const wchar_t* displayName)
        : KpIfcSelectPtrVariantType(displayName, S::g_descriptors.value) {}
};

template <class S>
class KpIfcSelectValueTypePODBaseNonBlittable : public KpIfcVariantTypeForObject<S> {
protected:
    explicit KpIfcSelectValueTypePODBaseNonBlittable(const wchar_t* displayName)
        : KpIfcVariantTypeForObject<S>(displayName, true) {}
};

/// Descriptor of a select held by value.
template <class S>
class KpIfcSelectValueTypePOD final : public KpIfcSelectValueTypePODBaseNonBlittable<S> {
public:
    explicit KpIfcSelectValueTypePOD(const wchar_t* displayName)
        : KpIfcSelectValueTypePODBaseNonBlittable<S>(displayName) {}
};

template <class P>
class KpIfcSelectValueTypePODBase : public KpIfcVariantTypePOD<P> {
protected:
    explicit KpIfcSelectValueTypePODBase(const wchar_t* displayName) : KpIfcVariantTypePOD<P>(displayName) {}
};

/// Descriptor of pointers to a select.
template <class P>
class KpIfcSelectPtrValueTypePOD final : public KpIfcSelectValueTypePODBase<P> {
public:
    explicit KpIfcSelectPtrValueTypePOD(const wchar_t* displayName) : KpIfcSelectValueTypePODBase<P>(displayName) {}
};

/// Descriptor of pointers to aggregates of one family and element type.
template <class P, class T>
class KpIfcAggrPtrVariantTypePOD : public KpIfcVariantTypePOD<P> {
public:
    explicit constexpr KpIfcAggrPtrVariantTypePOD(const wchar_t* displayName) : KpIfcVariantTypePOD<P>(displayName) {}

    bool isAggregate() const override { return true; }
    bool subEqualTo(const void*, const void*) const override { return false; }
    bool subToString(KcString&, const void*, StringFormat) const override { return false; }
    /// To the array of the elements, to an array of variants (a nil aggregate leaves `result` as it was), and to the
    /// pointer to an aggregate of any kind.
    bool subToValueType(const KpIfcVariantType& target, const KpIfcVariant& value,
                        KpIfcVariant& result) const override {
        KpIfcAggr* const generic = value.type() == this ? aggregate(value.data()) : nullptr;
        if (!generic) return false;
        const auto& pointed = *static_cast<P>(generic);
        if (&target == &KpIfcVariantType::Desc<KpIfcArray<T>>::value()) {
            KpIfcArray<T> elements(8);
            pointed.copyTo(elements);
            result.set(elements);
            return true;
        }
        if (&target == &KpIfcVariantType::Desc<KpIfcArray<KpIfcVariant>>::value()) {
            if (pointed.isNil()) return true;
            KpIfcArray<KpIfcVariant> elements(8);
            elements.reserve(pointed.count());
            for (const T& element : pointed) elements.append(KpIfcVariant(element));
            result.set(elements);
            return true;
        }
        if (&target != &KpIfcVariantType::Desc<KpIfcAggr*>::value()) return false;
        result.set(generic);
        return true;
    }
    bool createVariant(KpIfcVariant& value) const override {
        value.set(P());
        return true;
    }
    KpIfcAggr* aggregate(const void* value) const override { return *static_cast<const P*>(value); }
};

template <class P, class T>
class KpIfcSetAggrPtrVariantTypePOD final : public KpIfcAggrPtrVariantTypePOD<P, T> {
public:
    explicit constexpr KpIfcSetAggrPtrVariantTypePOD(const wchar_t* displayName)
        : KpIfcAggrPtrVariantTypePOD<P, T>(displayName) {}
};
template <class P, class T>
class KpIfcListAggrPtrVariantTypePOD final : public KpIfcAggrPtrVariantTypePOD<P, T> {
public:
    explicit constexpr KpIfcListAggrPtrVariantTypePOD(const wchar_t* displayName)
        : KpIfcAggrPtrVariantTypePOD<P, T>(displayName) {}
};
template <class P, class T>
class KpIfcArrayAggrPtrVariantTypePOD final : public KpIfcAggrPtrVariantTypePOD<P, T> {
public:
    explicit constexpr KpIfcArrayAggrPtrVariantTypePOD(const wchar_t* displayName)
        : KpIfcAggrPtrVariantTypePOD<P, T>(displayName) {}
};

} // namespace KP_SDAI
