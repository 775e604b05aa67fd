#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <new>
#include <type_traits>
#include <utility>

namespace KP_SDAI {

/// Growth of arrays of class elements: each is moved into the new buffer.
template <class T>
struct KpIfcArrayObjectCopyReallocator {
    static void relocate(T* to, T* from, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            ::new (static_cast<void*>(to + i)) T(std::move(from[i]));
            from[i].~T();
        }
    }
};

/// Growth of arrays of plain elements: their bytes are copied.
template <class T>
struct KpIfcArrayMemCopyReallocator {
    static_assert(std::is_trivially_copyable_v<T>);
    static void relocate(T* to, T* from, std::size_t count) {
        if (count) std::memcpy(static_cast<void*>(to), from, count * sizeof(T));
    }
};

template <class T>
using KpIfcArrayDefaultReallocator =
    std::conditional_t<std::is_arithmetic_v<T>, KpIfcArrayMemCopyReallocator<T>, KpIfcArrayObjectCopyReallocator<T>>;

/// The growable array in which accessors hand aggregates in and out. Owns its elements.
///
/// The buffer grows by `growStep` elements at least, and by half of what it holds.
template <class T, class Reallocator = KpIfcArrayDefaultReallocator<T>>
class KpIfcArray {
public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    explicit KpIfcArray(std::uint32_t growStep = 8) : m_growStep(growStep ? growStep : 1) {}
    KpIfcArray(std::initializer_list<T> values) : KpIfcArray(std::uint32_t{8}) {
        reserve(static_cast<std::uint32_t>(values.size()));
        for (const T& value : values) ::new (static_cast<void*>(m_items + m_length++)) T(value);
    }
    KpIfcArray(const KpIfcArray& other) : KpIfcArray(other.m_growStep) { *this = other; }
    KpIfcArray(KpIfcArray&& other) noexcept { swap(other); }
    ~KpIfcArray() {
        clear();
        ::operator delete(static_cast<void*>(m_items));
    }
    KpIfcArray& operator=(const KpIfcArray& other) {
        if (this == &other) return *this;
        clear();
        reserve(other.m_length);
        for (const T& value : other) append(value);
        return *this;
    }
    KpIfcArray& operator=(KpIfcArray&& other) noexcept {
        swap(other);
        return *this;
    }

    std::uint32_t length() const { return m_length; }
    std::size_t size() const { return m_length; }
    bool isEmpty() const { return m_length == 0; }
    bool empty() const { return m_length == 0; }
    std::uint32_t physicalLength() const { return m_allocated; }
    std::uint32_t growLength() const { return m_growStep; }

    T& operator[](std::size_t index) { return m_items[index]; }
    const T& operator[](std::size_t index) const { return m_items[index]; }
    T* asArrayPtr() { return m_items; }
    const T* asArrayPtr() const { return m_items; }
    iterator begin() { return m_items; }
    iterator end() { return m_items + m_length; }
    const_iterator begin() const { return m_items; }
    const_iterator end() const { return m_items + m_length; }

    void append(const T& value) {
        if (m_length == m_allocated) {
            T copy(value); // `value` may lie in the buffer that is about to move
            reserve(m_length + (m_length / 2 > m_growStep ? m_length / 2 : m_growStep));
            ::new (static_cast<void*>(m_items + m_length)) T(std::move(copy));
        } else {
            ::new (static_cast<void*>(m_items + m_length)) T(value);
        }
        ++m_length;
    }
    void push_back(const T& value) { append(value); }

    /// Makes the array `length` long; new elements are value-initialised.
    void setLogicalLength(std::uint32_t length) {
        reserve(length);
        while (m_length > length) m_items[--m_length].~T();
        while (m_length < length) ::new (static_cast<void*>(m_items + m_length++)) T();
    }
    void resize(std::size_t length) { setLogicalLength(static_cast<std::uint32_t>(length)); }

    void reserve(std::uint32_t allocated) {
        if (allocated <= m_allocated) return;
        T* items = static_cast<T*>(::operator new(sizeof(T) * allocated));
        Reallocator::relocate(items, m_items, m_length);
        ::operator delete(static_cast<void*>(m_items));
        m_items = items;
        m_allocated = allocated;
    }

    void clear() {
        while (m_length) m_items[--m_length].~T();
    }

    void swap(KpIfcArray& other) noexcept {
        std::swap(m_items, other.m_items);
        std::swap(m_allocated, other.m_allocated);
        std::swap(m_length, other.m_length);
        std::swap(m_growStep, other.m_growStep);
    }

    friend bool operator==(const KpIfcArray& a, const KpIfcArray& b) {
        if (a.m_length != b.m_length) return false;
        for (std::uint32_t i = 0; i < a.m_length; ++i)
            if (!(a.m_items[i] == b.m_items[i])) return false;
        return true;
    }

private:
    T* m_items = nullptr;
    std::uint32_t m_allocated = 0;
    std::uint32_t m_length = 0;
    std::uint32_t m_growStep = 8;
};

} // namespace KP_SDAI
