#pragma once

#include <KpIfcCore/KpIfcVariantType.h>

#include <cstring>
#include <new>
#include <type_traits>

namespace KP_SDAI {

/// A value of any type that has a descriptor, or none: what attributes are read and written by when their class is not
/// known. 32 bytes.
///
/// Owns its value. A value that is a pointer (const char*, pointers to selects and aggregates) is not owned: what
/// getAttr() hands out of an instance this way lives as long as the instance keeps it. Types are told apart by their
/// descriptors: getIf<double>() does not see an int; get() converts.
///
///     KpIfcVariant value;
///     if (wall->getAttr("name", value))
///         if (const char* const* text = value.getIf<const char*>()) ...
class KPIFCCORE_EXPORT KpIfcVariant {
public:
    KpIfcVariant() noexcept {}
    template <KpIfcDescribed T>
    KpIfcVariant(const T& value) {
        set(value);
    }
    /// Refers to the text.
    KpIfcVariant(const char* text) { set(text); }
    KpIfcVariant(const KpIfcVariant& other) { copy(other); }
    KpIfcVariant(KpIfcVariant&& other) noexcept : m_type(other.m_type) {
        std::memcpy(m_storage, other.m_storage, sizeof m_storage);
        other.m_type = nullptr;
    }
    ~KpIfcVariant() {
        if (ownsValue()) destroy();
    }
    KpIfcVariant& operator=(const KpIfcVariant& other) {
        if (this != &other) {
            const KpIfcVariant former(static_cast<KpIfcVariant&&>(*this)); // `other` may be a part of it
            copy(other);
        }
        return *this;
    }
    KpIfcVariant& operator=(KpIfcVariant&& other) noexcept {
        if (this != &other) {
            KpIfcVariant moved(static_cast<KpIfcVariant&&>(other));
            swap(moved);
        }
        return *this;
    }

    /// The descriptor of the value's type; null where there is no value.
    const KpIfcVariantType* type() const { return m_type; }
    bool isEmpty() const { return m_type == nullptr; }
    void clear() {
        if (ownsValue()) destroy();
        m_type = nullptr;
    }

    template <KpIfcDescribed T>
    bool holds() const {
        return m_type == &KpIfcVariantType::Desc<T>::value();
    }
    /// The value where it is of exactly this type; else null.
    template <KpIfcDescribed T>
    const T* getIf() const {
        return holds<T>() ? static_cast<const T*>(data()) : nullptr;
    }
    template <KpIfcDescribed T>
    T* getIf() {
        return holds<T>() ? static_cast<T*>(const_cast<void*>(data())) : nullptr;
    }
    /// The value, converted where it is of another type; false, and `out` as it was, where it cannot be. Texts are read
    /// as KpAnsiString or KcString.
    template <KpIfcDescribed T>
    bool get(T& out) const {
        KpIfcVariant scratch;
        const KpIfcVariant* converted = convert(KpIfcVariantType::Desc<T>::value(), scratch);
        if (!converted) return false;
        if constexpr (std::is_same_v<T, KpAnsiString>) {
            if (const char* const* text = converted->getIf<const char*>()) {
                out = *text ? KpAnsiString(*text) : KpAnsiString::unset();
                return true;
            }
        }
        const T* value = converted->getIf<T>();
        if (value) out = *value;
        return value != nullptr;
    }
    /// The value as one of another type: this variant where it is that already, else `scratch`, which then holds what
    /// the value was converted to; null where neither type knows how. Asked for a KpAnsiString, it may be a const
    /// char*.
    const KpIfcVariant* convert(const KpIfcVariantType& target, KpIfcVariant& scratch) const;

    template <KpIfcDescribed T>
    void set(const T& value) {
        if constexpr (std::is_trivially_copyable_v<T> && sizeof(T) <= kInline) {
            setPlain(KpIfcVariantType::Desc<T>::value(), value);
        } else {
            setObject(KpIfcVariantType::Desc<T>::value(), &value);
        }
    }
    /// A copy of a value, kept in memory of its own where its descriptor says so. The flags are reserved.
    template <KpIfcDescribed T>
    void setHeapStorageValue(const T& value, bool, bool, bool) {
        set(value);
    }
    /// A copy of an object of a described type.
    void setCopy(const KpIfcVariantType& type, const void* value);
    /// For descriptors: bytes of a type that is not `T`'s own, such as the code of an enumeration.
    template <class T>
    void setPlain(const KpIfcVariantType& type, const T& value) {
        static_assert(std::is_trivially_copyable_v<T> && sizeof(T) <= kInline);
        const T copy = value; // may be a part of what is destroyed
        if (ownsValue()) destroy();
        m_type = &type;
        std::memcpy(m_storage, &copy, sizeof copy);
    }

    /// The bytes of the value: an object of the described type; not for variants without value.
    const void* data() const {
        if (!m_type->m_onHeap) return m_storage;
        void* value;
        std::memcpy(&value, m_storage, sizeof value);
        return value;
    }

    /// The value as a text; false where there is none.
    bool toString(KcString& out, StringFormat format = kFormatPlain) const;

    /// Equal types and values.
    friend bool operator==(const KpIfcVariant& a, const KpIfcVariant& b) {
        return a.m_type == b.m_type && (!a.m_type || a.m_type->subEqualTo(a.data(), b.data()));
    }

    void swap(KpIfcVariant& other) noexcept {
        KpIfcVariant former(static_cast<KpIfcVariant&&>(*this));
        m_type = other.m_type;
        std::memcpy(m_storage, other.m_storage, sizeof m_storage);
        other.m_type = former.m_type;
        std::memcpy(other.m_storage, former.m_storage, sizeof m_storage);
        former.m_type = nullptr;
    }

private:
    static constexpr std::size_t kInline = 24;

    bool ownsValue() const { return m_type && m_type->m_allocator; }
    void copy(const KpIfcVariant& other);
    void setObject(const KpIfcVariantType& type, const void* value);
    void destroy() noexcept;

    const KpIfcVariantType* m_type = nullptr;
    alignas(8) unsigned char m_storage[kInline];
};
static_assert(sizeof(KpIfcVariant) == 32);

} // namespace KP_SDAI
