#pragma once

#include <KpIfcCore/KpArena.h>
#include <KpIfcCore/KpErrorStatus.h>
#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace KP_SDAI {

class KpIfcAggr;
class KpIfcAggrIterator;
class KpIfcAggrConstIterator;
class KpIfcEntityBase;

/// The memory of the model that an instance belongs to; null without a model.
KPIFCCORE_EXPORT KpArena* arenaOf(const KpIfcEntityBase& instance);

enum class KpIfcAggrContainerType : int { none = 0, array = 1, list = 2, set = 3 };

/// Changes a set whose element type the caller need not know. Values are converted to the element type.
class KPIFCCORE_EXPORT IUnorderdManiplator {
public:
    /// eOk also where an equal element is present; eRefused where the set is full or the value does not convert.
    virtual KP::ErrorStatus addValue(const KpIfcVariant& value) = 0;
    /// eRefused where the element is absent, the set at its lower bound, or the value does not convert.
    virtual KP::ErrorStatus removeValue(const KpIfcVariant& value) = 0;

protected:
    constexpr ~IUnorderdManiplator() {}
};

/// What stands behind an aggregate: a small header with the element count, the elements directly behind it.
///
/// Which aggregate it serves (element type, kind, bounds) is its class; bounds take no memory. Elements are moved to a
/// buffer of their own when they outgrow their place, so the address of the implementation never changes. The shared
/// placeholders of nil aggregates are implementations too, so that a nil aggregate still knows its kind.
class KPIFCCORE_EXPORT KpIfcAggrImp : public IUnorderdManiplator {
public:
    constexpr virtual ~KpIfcAggrImp() {}
    /// Iterators stand on the first element; null unless `aggr` is not nil and this is its implementation. The caller
    /// deletes them.
    virtual KpIfcAggrIterator* createIterator(KpIfcAggr& aggr) = 0;
    virtual KpIfcAggrConstIterator* createConstIterator(const KpIfcAggr& aggr) const = 0;
    virtual bool isOrdered() const = 0;
    virtual bool isUnique() const = 0;
    virtual void clear() = 0;
    /// The element at a place in the order of iteration; false where there is none.
    virtual bool getElement(std::size_t index, KpIfcVariant& value) const = 0;
    virtual int lowerBound() const = 0;
    virtual int upperBound() const = 0;
    /// True where the value, converted to the element type, is an element; false where it does not convert.
    virtual bool containsValue(const KpIfcVariant& value) const = 0;
    /// The descriptor of the elements' type; null where it has none.
    virtual KpIfcVariantType* elementType() const = 0;
    virtual KpIfcAggrContainerType aggrContainerType() const = 0;
    /// How to change the elements without their type: null for lists and arrays, whose elements have positions.
    IUnorderdManiplator* unorderedManiplator() { return isOrdered() ? nullptr : this; }
    /// A new implementation with a copy of the elements; of a placeholder, a new one without elements.
    virtual KpIfcAggrImp* clone() const = 0;
    /// The one placeholder that stands behind nil aggregates of this class.
    virtual KpIfcAggrImp* placeholder() const = 0;

    std::uint32_t count() const { return m_count; }
    bool isPlaceholder() const { return (m_room & kPlaceholder) != 0; }
    /// How many elements there may be before they move to another buffer.
    std::uint32_t room() const { return m_room & kMaxCount; }

    /// How many elements fit, and the flags below.
    struct Room {
        std::uint32_t word;
    };
    static constexpr std::uint32_t kPlaceholder = 1u << 31; ///< of a nil aggregate; never changed
    static constexpr std::uint32_t kInArena = 1u << 30;     ///< lies in a model's memory
    static constexpr std::uint32_t kExternal = 1u << 29;    ///< the elements lie in a buffer of their own
    static constexpr std::uint32_t kMaxCount = kExternal - 1;

protected:
    constexpr explicit KpIfcAggrImp(Room room) : m_room(room.word) {}
    KpIfcAggrImp(const KpIfcAggrImp&) = delete;
    KpIfcAggrImp& operator=(const KpIfcAggrImp&) = delete;

    /// A new implementation of the same class without elements, with room for some; on the heap without an arena.
    virtual KpIfcAggrImp* create(KpArena* arena, std::size_t room) const = 0;

    /// Holds a new implementation until it is complete.
    struct Disposer {
        KpIfcAggrImp* imp;
        explicit Disposer(KpIfcAggrImp* created) : imp(created) {}
        Disposer(const Disposer&) = delete;
        Disposer& operator=(const Disposer&) = delete;
        ~Disposer() {
            if (imp) imp->dispose();
        }
        KpIfcAggrImp* release() { return std::exchange(imp, nullptr); }
    };

    std::uint32_t m_count = 0;
    std::uint32_t m_room;

private:
    friend class KpIfcAggr;
    void dispose() {
        if (m_room & kPlaceholder) return;
        const bool onHeap = (m_room & kInArena) == 0;
        this->~KpIfcAggrImp();
        if (onHeap) ::operator delete(static_cast<void*>(this)); // larger than its class: no sized delete
    }
};
static_assert(sizeof(KpIfcAggrImp) == 16);

/// The typed storage that all implementations share.
template <class T>
class KpIfcAggrElements : public KpIfcAggrImp {
public:
    using Element = T;

    constexpr ~KpIfcAggrElements() override {
        if (m_count || (m_room & kExternal)) destroyAll();
    }

    T* begin() { return data(); }
    T* end() { return data() + m_count; }
    const T* begin() const { return data(); }
    const T* end() const { return data() + m_count; }
    T* data() { return (m_room & kExternal) ? external() : inlined(); }
    const T* data() const { return const_cast<KpIfcAggrElements*>(this)->data(); }

    KpIfcVariantType* elementType() const override {
        if constexpr (KpIfcDescribed<T>)
            return &KpIfcVariantType::Desc<T>::value();
        else
            return nullptr;
    }
    bool getElement(std::size_t index, KpIfcVariant& value) const override {
        if constexpr (KpIfcDescribed<T>) {
            if (index >= m_count) return false;
            value.set(data()[index]);
            return true;
        } else {
            return false;
        }
    }

    bool containsValue(const KpIfcVariant& value) const override {
        if constexpr (KpIfcDescribed<T>) {
            T element{};
            return value.get(element) && containsElement(element);
        } else {
            return false;
        }
    }

    void clear() override { shrinkTo(0); }
    /// Replaces the elements by values that are in order, which are moved. Where memory runs out nothing has changed.
    void replace(T* values, std::size_t count) {
        makeRoom(count);
        clear();
        for (T* value = values; value < values + count; ++value) {
            ::new (static_cast<void*>(data() + m_count)) T(std::move(*value));
            ++m_count;
        }
    }
    /// Replaces the elements by copies of values that are in order and may be this aggregate's own. Where memory runs
    /// out nothing has changed.
    void replaceByCopies(const T* values, std::size_t count) {
        if constexpr (std::is_trivially_copyable_v<T>) {
            const auto address = [](const T* place) { return reinterpret_cast<std::uintptr_t>(place); };
            if (address(values + count) <= address(begin()) || address(values) >= address(end())) {
                makeRoom(count);
                if (count) std::memcpy(data(), values, count * sizeof(T));
                m_count = static_cast<std::uint32_t>(count);
                return;
            }
        }
        KpIfcArray<T> copies;
        copies.reserve(static_cast<std::uint32_t>(count));
        for (std::size_t i = 0; i < count; ++i) copies.append(values[i]);
        replace(copies.begin(), count);
    }
    /// Destroys the elements from position `count` on.
    void shrinkTo(std::size_t count) {
        T* items = data();
        while (m_count > count) items[--m_count].~T();
    }
    KpIfcAggrImp* clone() const override {
        Disposer copy{this->create(nullptr, m_count)};
        for (const T& element : *this) static_cast<KpIfcAggrElements*>(copy.imp)->place(element);
        return copy.release();
    }
    /// A new implementation of the same class without elements, with room for some; on the heap without an arena.
    KpIfcAggrImp* createWithRoom(std::size_t room, KpArena* arena = nullptr) const { return this->create(arena, room); }
    /// A new implementation of the same class in a model's memory, with room for `room` elements at least; takes the
    /// values over.
    KpIfcAggrImp* createFilled(KpArena& arena, T* values, std::size_t count, std::size_t room = 0) const {
        KpIfcAggrElements* filled = static_cast<KpIfcAggrElements*>(this->create(&arena, room > count ? room : count));
        for (std::size_t i = 0; i < count; ++i)
            ::new (static_cast<void*>(filled->inlined() + i)) T(std::move(values[i]));
        filled->m_count = static_cast<std::uint32_t>(count);
        return filled;
    }
    /// Copies every element, in order, to the end of `out`.
    template <class Reallocator>
    void copyTo(KpIfcArray<T, Reallocator>& out) const {
        out.reserve(out.length() + m_count);
        for (const T& element : *this) out.append(element);
    }

    /// Bytes of an implementation with room for `count` elements behind its header.
    static constexpr std::size_t bytesFor(std::size_t count) {
        const std::size_t elements = count * sizeof(T);
        return sizeof(KpIfcAggrImp) + (elements < sizeof(T*) ? sizeof(T*) : elements);
    }

protected:
    static_assert(alignof(T) <= 8);
    constexpr explicit KpIfcAggrElements(Room room) : KpIfcAggrImp(room) {}

    virtual bool containsElement(const T& value) const = 0;
    virtual KP::ErrorStatus addElement(const T& value) = 0;
    virtual KP::ErrorStatus removeElement(const T& value) = 0;
    KP::ErrorStatus addValue(const KpIfcVariant& value) override {
        if constexpr (KpIfcDescribed<T>) {
            T element{};
            if (value.get(element)) return addElement(element);
        }
        return KP::eRefused;
    }
    KP::ErrorStatus removeValue(const KpIfcVariant& value) override {
        if constexpr (KpIfcDescribed<T>) {
            T element{};
            if (value.get(element)) return removeElement(element);
        }
        return KP::eRefused;
    }

    template <class Imp>
    static KpIfcAggrImp* createAs(KpArena* arena, std::size_t room) {
        static_assert(sizeof(Imp) == sizeof(KpIfcAggrImp));
        if (room > kMaxCount) throw std::bad_alloc();
        void* memory = arena ? arena->allocate(bytesFor(room)) : ::operator new(bytesFor(room));
        const std::uint32_t fits = static_cast<std::uint32_t>((bytesFor(room) - sizeof(KpIfcAggrImp)) / sizeof(T));
        return ::new (memory) Imp(Room{fits | (arena ? kInArena : 0)});
    }

    void insertAt(std::size_t index, const T& value) {
        T copy(value);
        if (m_count == (m_room & kMaxCount)) grow();
        T* items = data();
        if (index == m_count) {
            ::new (static_cast<void*>(items + m_count)) T(std::move(copy));
        } else {
            ::new (static_cast<void*>(items + m_count)) T(std::move(items[m_count - 1]));
            for (std::size_t i = m_count - 1; i > index; --i) items[i] = std::move(items[i - 1]);
            items[index] = std::move(copy);
        }
        ++m_count;
    }
    void eraseAt(std::size_t index) {
        T* items = data();
        for (std::size_t i = index + 1; i < m_count; ++i) items[i - 1] = std::move(items[i]);
        items[--m_count].~T();
    }
    /// Appends without a look at order or uniqueness; there must be room.
    void place(const T& value) {
        ::new (static_cast<void*>(data() + m_count)) T(value);
        ++m_count;
    }
    void makeRoom(std::size_t count) {
        if ((m_room & kMaxCount) < count) growTo(count);
    }

private:
    T* inlined() { return reinterpret_cast<T*>(reinterpret_cast<char*>(this) + sizeof(KpIfcAggrImp)); }
    T*& external() { return *reinterpret_cast<T**>(reinterpret_cast<char*>(this) + sizeof(KpIfcAggrImp)); }
    void grow() { growTo((m_room & kMaxCount) * std::size_t{2}); }
    void growTo(std::size_t count) {
        if (count < 4) count = 4;
        if (count > kMaxCount) throw std::bad_alloc();
        T* items = static_cast<T*>(::operator new(count * sizeof(T)));
        T* old = data();
        for (std::size_t i = 0; i < m_count; ++i) {
            ::new (static_cast<void*>(items + i)) T(std::move(old[i]));
            old[i].~T();
        }
        if (m_room & kExternal) ::operator delete(static_cast<void*>(old));
        external() = items;
        m_room = (m_room & kInArena) | kExternal | static_cast<std::uint32_t>(count);
    }
    void destroyAll() {
        for (T& element : *this) element.~T();
        if (m_room & kExternal) ::operator delete(static_cast<void*>(external()));
        m_count = 0;
    }
};

/// Base of every aggregate attribute: one pointer to its implementation. Nil until created, then empty or filled.
///
/// Owns its elements by value; instances that its handles refer to are never owned. Not locked.
class KPIFCCORE_EXPORT KpIfcAggr {
public:
    bool isNil() const { return m_imp->isPlaceholder(); }
    /// Number of elements; 0 where nil.
    std::uint32_t count() const { return m_imp->count(); }
    std::size_t size() const { return m_imp->count(); }
    bool empty() const { return m_imp->count() == 0; }
    int lowerBound() const { return m_imp->lowerBound(); }
    int upperBound() const { return m_imp->upperBound(); }
    KpIfcAggrContainerType containerType() const { return m_imp->aggrContainerType(); }
    /// Makes a nil aggregate an empty one; leaves others as they are.
    void createEmpty() {
        if (isNil()) m_imp = m_imp->clone();
    }
    /// Removes all elements; a nil aggregate stays nil.
    void clear() {
        if (!isNil()) m_imp->clear();
    }
    KpIfcAggrImp* implementation() const { return m_imp; }
    /// Exchanges the elements of two aggregates of one class.
    void swap(KpIfcAggr& other) noexcept { std::swap(m_imp, other.m_imp); }

    // Elements without their type: values are converted to it.

    /// The element at a place in the order of iteration; false where there is none.
    bool getElement(std::size_t index, KpIfcVariant& value) const { return m_imp->getElement(index, value); }
    bool containsValue(const KpIfcVariant& value) const { return m_imp->containsValue(value); }
    /// Adds to a set or behind the last element of a list or array; creates the aggregate where it is nil. eRefused
    /// where a set is full or the value does not convert.
    KP::ErrorStatus addValue(const KpIfcVariant& value) {
        if (!isNil()) return m_imp->addValue(value);
        KpIfcAggrImp::Disposer created(m_imp->clone());
        const KP::ErrorStatus status = created.imp->addValue(value);
        if (status == KP::eOk) m_imp = created.release();
        return status;
    }
    /// Removes from a set, or the first equal element of a list or array. eRefused where there is none, the set is at
    /// its lower bound, or the value does not convert.
    KP::ErrorStatus removeValue(const KpIfcVariant& value) {
        return isNil() ? KP::eRefused : m_imp->removeValue(value);
    }

    KpIfcAggrIterator* createIterator() { return m_imp->createIterator(*this); }
    KpIfcAggrConstIterator* createConstIterator() const { return m_imp->createConstIterator(*this); }

protected:
    explicit KpIfcAggr(KpIfcAggrImp* imp) : m_imp(imp) {}
    KpIfcAggr(const KpIfcAggr&) = delete;
    KpIfcAggr& operator=(const KpIfcAggr&) = delete;
    ~KpIfcAggr() { dispose(); }
    void dispose() {
        if (m_imp) m_imp->dispose(); // null only in what was moved from
    }

    KpIfcAggrImp* m_imp;
};

/// Aggregates whose elements have a position: lists and arrays.
class KpIfcOrderedAggr : public KpIfcAggr {
protected:
    using KpIfcAggr::KpIfcAggr;
};

/// Aggregates without positions: sets.
class KpIfcUnOrderedAggr : public KpIfcAggr {
protected:
    using KpIfcAggr::KpIfcAggr;
};

} // namespace KP_SDAI
