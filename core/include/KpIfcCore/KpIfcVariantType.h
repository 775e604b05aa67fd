#pragma once

#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcFacts.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

class KcString;

namespace KP_SDAI {

class KpIfcVariant;

/// A lock of the runtime. Threads may take it again while they hold it.
class KPIFCCORE_EXPORT KpLocker {
public:
    void lock() const;
    void unlock() const;
};

/// The one lock of this process under which descriptors of values are made and released.
KPIFCCORE_EXPORT const KpLocker* kpifcGetVaraintTypeLocker();

/// Holds a lock for its own lifetime; a null pointer holds nothing.
class KpIfcAutoLocker {
public:
    explicit KpIfcAutoLocker(const KpLocker* locker) : m_locker(locker) {
        if (m_locker) m_locker->lock();
    }
    KpIfcAutoLocker(const KpIfcAutoLocker&) = delete;
    KpIfcAutoLocker& operator=(const KpIfcAutoLocker&) = delete;
    ~KpIfcAutoLocker() {
        if (m_locker) m_locker->unlock();
    }

private:
    const KpLocker* m_locker;
};

/// For whom a value is made a text.
enum StringFormat : int {
    kFormatPlain = 0, ///< people: texts as they are, no value as the empty text
    kFormatStep = 1   ///< files (ISO 10303-21): texts in apostrophes, literals between dots, no value as "$"
};

/// How variants keep values that are more than bytes. Has no state.
class KPIFCCORE_EXPORT KpIfcMemObjectAllocator {
public:
    /// Makes a copy of `from` in raw memory.
    virtual void construct(void* at, const void* from) const = 0;
    /// Does nothing where both are the same object.
    virtual void assign(void* to, const void* from) const = 0;
    /// Destroys a value, not its memory.
    virtual void destroy(void* value) const = 0;

protected:
    ~KpIfcMemObjectAllocator() = default;
};

/// Where the descriptor of T is kept. Specialised for every type that a variant can hold, with static functions
/// `value()` and `release()`.
template <class T>
struct KpIfcDescOf;

/// Types that a variant can hold.
template <class T>
concept KpIfcDescribed = requires {
    KpIfcDescOf<T>::value();
};

/// Describes one type of values that a variant can hold; variants compare, convert, print and copy through it.
///
/// There is one object of each type, by which types are told apart. Those of the runtime's own types are always there;
/// those of a schema module are made when first asked for, by any thread, and released when the module is unloaded:
/// variants that hold values of a module must be gone by then.
///
/// Conversions never throw and never change `value`. A text that a conversion gives as const char* lives as long as
/// what the value was got from.
class KPIFCCORE_EXPORT KpIfcVariantType {
public:
    template <class T>
    struct Desc;

    /// `displayName` is kept, not copied; `size` is that of a value. The two pointers are reserved.
    constexpr KpIfcVariantType(const wchar_t* displayName, std::size_t size, const void*, const void*,
                               const KpIfcMemObjectAllocator* allocator = nullptr, bool onHeap = false)
        : m_displayName(displayName), m_allocator(allocator), m_size(static_cast<std::uint32_t>(size)),
          m_onHeap(onHeap) {}
    KpIfcVariantType(const KpIfcVariantType&) = delete;
    KpIfcVariantType& operator=(const KpIfcVariantType&) = delete;

    virtual bool isSelect() const { return false; }
    virtual bool isAggregate() const { return false; }
    constexpr virtual ~KpIfcVariantType() {}
    /// How values are copied and destroyed; null where they are only bytes.
    virtual const KpIfcMemObjectAllocator* objectMemAllocator() const { return m_allocator; }
    /// The enumeration that values are of; else null.
    virtual const KpIfcEnumFacts* enumeration() const { return nullptr; }
    /// The handle that a value is or holds; the null handle where it is or holds none.
    virtual KpDbObjectId reference(const KpIfcVariant& /*value*/) const { return {}; }
    /// The value as the host's text object; null where it is none.
    virtual const KcString* rxObjectValue(const void* /*value*/) const { return nullptr; }

    /// True where two values of this type are equal.
    virtual bool subEqualTo(const void* /*a*/, const void* /*b*/) const { return false; }
    /// Converts a value of this type to another one; false, and `result` as it was, where it cannot be.
    virtual bool subToValueType(const KpIfcVariantType& /*target*/, const KpIfcVariant& /*value*/,
                                KpIfcVariant& /*result*/) const {
        return false;
    }
    /// Converts a value of another type to this one; false, and `result` as it was, where it cannot be.
    virtual bool subFromValueType(const KpIfcVariant& /*value*/, KpIfcVariant& /*result*/) const { return false; }
    /// The value as a text; false where there is none.
    virtual bool subToString(KcString& /*out*/, const void* /*value*/, StringFormat) const { return false; }

    /// The same for a value of any type; one of the wrong type gives false.
    virtual bool toValueType(const KpIfcVariantType& target, const KpIfcVariant& value, KpIfcVariant& result) const;
    virtual bool fromValueType(const KpIfcVariant& value, KpIfcVariant& result) const;
    virtual bool toString(KcString& out, const KpIfcVariant& value, StringFormat format) const;
    /// Of a select, the name of the type of what it holds, "" where it holds nothing; null for other values.
    virtual const char* typePath(const KpIfcVariant& value) const;
    virtual const char* subTypePath(const void* /*value*/) const { return nullptr; }
    /// Makes `value` one of this type without content (unset, empty, null); false for types that have no such value.
    virtual bool createVariant(KpIfcVariant& /*value*/) const { return false; }

    /// The select of a variant whose type is this one; null for other variants and types.
    virtual KpIfcSelect* storedSelect(const KpIfcVariant& /*value*/) const { return nullptr; }
    /// The select that a value of this type is or points at, the aggregate that it points at; null for other types.
    virtual KpIfcSelect* select(const void* /*value*/) const { return nullptr; }
    virtual KpIfcAggr* aggregate(const void* /*value*/) const { return nullptr; }

    const wchar_t* displayName() const { return m_displayName; }
    std::size_t size() const { return m_size; }

private:
    friend class KpIfcVariant;

    const wchar_t* m_displayName;
    const KpIfcMemObjectAllocator* m_allocator;
    std::uint32_t m_size;
    bool m_onHeap; ///< variants keep the value in memory of its own
};

/// The one descriptor of T.
///
///     if (value.type() == &KpIfcVariantType::Desc<double>::value()) ...
template <class T>
struct KpIfcVariantType::Desc {
    /// Made on the first call; any thread.
    static KpIfcVariantType& value() { return KpIfcDescOf<T>::value(); }
    /// Destroys the descriptor of a module's type, if there is one; the next value() makes a new one. Those of the
    /// runtime's own types stay.
    static void release() { KpIfcDescOf<T>::release(); }
};

/// Where a module keeps a descriptor that is made on demand. Static storage, constant initialisation.
class KPIFCCORE_EXPORT KpIfcDescriptorSlot {
public:
    constexpr explicit KpIfcDescriptorSlot(KpIfcVariantType* (*create)()) : m_create(create) {}
    KpIfcDescriptorSlot(const KpIfcDescriptorSlot&) = delete;
    KpIfcDescriptorSlot& operator=(const KpIfcDescriptorSlot&) = delete;

    KpIfcVariantType& value() {
        KpIfcVariantType* descriptor = m_descriptor.load(std::memory_order_acquire);
        return descriptor ? *descriptor : make();
    }
    void release();

private:
    KpIfcVariantType& make();

    std::atomic<KpIfcVariantType*> m_descriptor{nullptr};
    KpIfcVariantType* (*m_create)();
};

/// The descriptors of a select class; the class keeps them as its static member g_descriptors. Those of selects that
/// are elements of aggregates come with the arrays and pointers to aggregates of them.
struct KpIfcSelectDescriptors {
    KpIfcDescriptorSlot value;
    KpIfcDescriptorSlot pointer;
};
struct KpIfcSetElementDescriptors : KpIfcSelectDescriptors {
    KpIfcDescriptorSlot array;
    KpIfcDescriptorSlot set;
};
struct KpIfcListElementDescriptors : KpIfcSelectDescriptors {
    KpIfcDescriptorSlot array;
    KpIfcDescriptorSlot list;
};

/// Literals of an enumeration as a type of their own: enumerations convert to it what has a literal.
struct KpIfcEnumDescription {
    const char* literal;
};

class KpIfcAggr;
template <class T>
class KpIfcSetAggr;
template <class T>
class KpIfcListAggr;
template <class T>
class KpIfcArrayAggr;
enum KpTypeCodeKind : int;

namespace detail {

/// The runtime's own types, in the order of their descriptors.
enum CoreType {
    kInt,
    kUnsignedLong,
    kDouble,
    kBool,
    kIfcBoolean,
    kIfcLogical,
    kChars,
    kAnsiString,
    kKcString,
    kGuid,
    kHandle,
    kTypeCode,
    kEnumDescription,
    kAggr,
    kIntArray,
    kDoubleArray,
    kStringArray,
    kHandleArray,
    kVariantArray,
    kHandleSet,
    kHandleList,
    kStringList,
    kDoubleList,
    kIntList,
    kDoubleArrayAggr
};

extern KPIFCCORE_EXPORT KpIfcVariantType* const g_coreDescriptors[];

template <CoreType type>
struct CoreDesc {
    static KpIfcVariantType& value() { return *g_coreDescriptors[type]; }
    static void release() {}
};

} // namespace detail

// clang-format off
template <> struct KpIfcDescOf<int> : detail::CoreDesc<detail::kInt> {};
template <> struct KpIfcDescOf<unsigned long> : detail::CoreDesc<detail::kUnsignedLong> {};
template <> struct KpIfcDescOf<double> : detail::CoreDesc<detail::kDouble> {};
template <> struct KpIfcDescOf<bool> : detail::CoreDesc<detail::kBool> {};
template <> struct KpIfcDescOf<KpIfcBoolean> : detail::CoreDesc<detail::kIfcBoolean> {};
template <> struct KpIfcDescOf<KpIfcLogical> : detail::CoreDesc<detail::kIfcLogical> {};
template <> struct KpIfcDescOf<const char*> : detail::CoreDesc<detail::kChars> {};
template <> struct KpIfcDescOf<KpAnsiString> : detail::CoreDesc<detail::kAnsiString> {};
template <> struct KpIfcDescOf<KcString> : detail::CoreDesc<detail::kKcString> {};
template <> struct KpIfcDescOf<KpIfcGUID> : detail::CoreDesc<detail::kGuid> {};
template <> struct KpIfcDescOf<KpDbObjectId> : detail::CoreDesc<detail::kHandle> {};
template <> struct KpIfcDescOf<KpTypeCodeKind> : detail::CoreDesc<detail::kTypeCode> {};
template <> struct KpIfcDescOf<KpIfcEnumDescription> : detail::CoreDesc<detail::kEnumDescription> {};
template <> struct KpIfcDescOf<KpIfcAggr*> : detail::CoreDesc<detail::kAggr> {};
template <> struct KpIfcDescOf<KpIfcArray<int>> : detail::CoreDesc<detail::kIntArray> {};
template <> struct KpIfcDescOf<KpIfcArray<double>> : detail::CoreDesc<detail::kDoubleArray> {};
template <> struct KpIfcDescOf<KpIfcArray<KpAnsiString>> : detail::CoreDesc<detail::kStringArray> {};
template <> struct KpIfcDescOf<KpIfcArray<KpDbObjectId>> : detail::CoreDesc<detail::kHandleArray> {};
template <> struct KpIfcDescOf<KpIfcArray<KpIfcVariant>> : detail::CoreDesc<detail::kVariantArray> {};
template <> struct KpIfcDescOf<KpIfcSetAggr<KpDbObjectId>*> : detail::CoreDesc<detail::kHandleSet> {};
template <> struct KpIfcDescOf<KpIfcListAggr<KpDbObjectId>*> : detail::CoreDesc<detail::kHandleList> {};
template <> struct KpIfcDescOf<KpIfcListAggr<KpAnsiString>*> : detail::CoreDesc<detail::kStringList> {};
template <> struct KpIfcDescOf<KpIfcListAggr<double>*> : detail::CoreDesc<detail::kDoubleList> {};
template <> struct KpIfcDescOf<KpIfcListAggr<int>*> : detail::CoreDesc<detail::kIntList> {};
template <> struct KpIfcDescOf<KpIfcArrayAggr<double>*> : detail::CoreDesc<detail::kDoubleArrayAggr> {};

// Types of modules. The slot of an enumeration is found by a function descriptorSlot(E) in the namespace of E.
template <class E> requires requires { descriptorSlot(E()); }
struct KpIfcDescOf<E> {
    static KpIfcVariantType& value() { return descriptorSlot(E()).value(); }
    static void release() { descriptorSlot(E()).release(); }
};
template <class S> requires requires { S::g_descriptors.value; }
struct KpIfcDescOf<S> {
    static KpIfcVariantType& value() { return S::g_descriptors.value.value(); }
    static void release() { S::g_descriptors.value.release(); }
};
template <class S> requires requires { S::g_descriptors.pointer; }
struct KpIfcDescOf<S*> {
    static KpIfcVariantType& value() { return S::g_descriptors.pointer.value(); }
    static void release() { S::g_descriptors.pointer.release(); }
};
template <class S> requires requires { S::g_descriptors.array; }
struct KpIfcDescOf<KpIfcArray<S>> {
    static KpIfcVariantType& value() { return S::g_descriptors.array.value(); }
    static void release() { S::g_descriptors.array.release(); }
};
template <class S> requires requires { S::g_descriptors.set; }
struct KpIfcDescOf<KpIfcSetAggr<S>*> {
    static KpIfcVariantType& value() { return S::g_descriptors.set.value(); }
    static void release() { S::g_descriptors.set.release(); }
};
template <class S> requires requires { S::g_descriptors.list; }
struct KpIfcDescOf<KpIfcListAggr<S>*> {
    static KpIfcVariantType& value() { return S::g_descriptors.list.value(); }
    static void release() { S::g_descriptors.list.release(); }
};
// clang-format on

} // namespace KP_SDAI
