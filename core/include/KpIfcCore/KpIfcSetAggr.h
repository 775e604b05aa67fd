#pragma once

#include <KpIfcCore/KpIfcAggrIterator.h>
#include <KpIfcCore/KpIfcTypedAggr.h>

#include <algorithm>
#include <set>

namespace KP_SDAI {

/// Implementation of sets: one sorted run, ascending by the elements' operator<, no two equal.
template <class T>
class KpIfcUnorderedAggrImp : public KpIfcAggrElements<T> {
public:
    bool isOrdered() const override { return false; }
    bool isUnique() const override { return true; }

    /// Adds an element; an equal one that is present already counts as success. eRefused when the set is full.
    virtual KP::ErrorStatus add(const T& value) {
        const std::size_t index = find(value);
        if (index < this->m_count && !(value < this->data()[index])) return KP::eOk;
        if (this->upperBound() < kOpenBound && this->m_count >= static_cast<std::uint32_t>(this->upperBound()))
            return KP::eRefused;
        this->insertAt(index, value);
        return KP::eOk;
    }
    /// Removes an element; eRefused where it is absent or the set would fall below its lower bound.
    virtual KP::ErrorStatus remove(const T& value) {
        if (this->m_count <= static_cast<std::uint32_t>(this->lowerBound())) return KP::eRefused;
        const std::size_t index = find(value);
        if (index == this->m_count || value < this->data()[index]) return KP::eRefused;
        this->eraseAt(index);
        return KP::eOk;
    }
    /// Clears, then adds every value in array order; what does not fit is left out.
    virtual void assign(const T* values, std::size_t count) {
        KpIfcArray<T> copies; // the values may be this set's own
        copies.reserve(static_cast<std::uint32_t>(count));
        for (std::size_t i = 0; i < count; ++i) copies.append(values[i]);
        if (this->upperBound() >= kOpenBound) return this->replace(copies.begin(), arrange(copies.begin(), count));
        this->clear();
        for (const T& value : copies) add(value);
    }
    virtual bool contains(const T& value) const {
        const std::size_t index = find(value);
        return index < this->m_count && !(value < this->data()[index]);
    }

    static std::size_t arrange(T* values, std::size_t count) {
        const auto less = [](const T& a, const T& b) { return a < b; };
        if (std::adjacent_find(values, values + count, [](const T& a, const T& b) { return !(a < b); }) ==
            values + count)
            return count; // as most files write them
        const auto equal = [](const T& a, const T& b) { return !(a < b) && !(b < a); };
        std::sort(values, values + count, less);
        return static_cast<std::size_t>(std::unique(values, values + count, equal) - values);
    }

protected:
    constexpr explicit KpIfcUnorderedAggrImp(KpIfcAggrImp::Room room) : KpIfcAggrElements<T>(room) {}
    bool containsElement(const T& value) const override { return contains(value); }
    KP::ErrorStatus addElement(const T& value) override { return add(value); }
    KP::ErrorStatus removeElement(const T& value) override { return remove(value); }

private:
    /// Where `value` is or would be inserted.
    std::size_t find(const T& value) const {
        const T* first = this->begin();
        const std::size_t count = this->m_count;
        if (count && first[count - 1] < value) return count; // elements mostly arrive in ascending order
        return static_cast<std::size_t>(std::lower_bound(first, first + count, value) - first);
    }
};

/// SET OF T without stated bounds. Iteration is in ascending order of the elements.
///
///     for (const KpDbObjectId& face : shell->getCfsFaces()) ...
template <class T>
class KpIfcSetAggr : public KpIfcTypedAggr<T, KpIfcUnOrderedAggr, KpIfcUnorderedAggrImp<T>> {
    using Typed = KpIfcTypedAggr<T, KpIfcUnOrderedAggr, KpIfcUnorderedAggrImp<T>>;

public:
    using Family = KpIfcSetAggr; ///< of the bounded classes, too

    class KpIfcSetAggrImp
        : public KpIfcAggrImpOf<KpIfcSetAggrImp, KpIfcUnorderedAggrImp<T>, KpIfcAggrContainerType::set, 0, kOpenBound> {
    public:
        using KpIfcSetAggrImp::KpIfcAggrImpOf::KpIfcAggrImpOf;
        KpIfcAggrIterator* createIterator(KpIfcAggr& aggr) override {
            return detail::iteratorOver<KpIfcAggrSetInteratorImp<std::set, T>>(aggr, *this);
        }
        KpIfcAggrConstIterator* createConstIterator(const KpIfcAggr& aggr) const override {
            return detail::iteratorOver<KpIfcAggrSetConstIteratorImp<std::set, T>>(aggr, *this);
        }
    };

    KpIfcSetAggr() : KpIfcSetAggr(KpIfcSetAggrImp::nil()) {}
    KpIfcSetAggr(const KpIfcSetAggr&) = default;
    KpIfcSetAggr& operator=(const KpIfcSetAggr& other) {
        this->copy(other);
        return *this;
    }

    /// eOk also where an equal element is present; eRefused where the set is full.
    KP::ErrorStatus add(const T& value) { return this->changeable().add(value); }
    /// eRefused where absent or at the lower bound.
    KP::ErrorStatus remove(const T& value) { return this->isNil() ? KP::eRefused : this->changeable().remove(value); }
    bool contains(const T& value) const { return this->imp().contains(value); }

    friend bool operator==(const KpIfcSetAggr& a, const KpIfcSetAggr& b) {
        return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin());
    }

protected:
    explicit KpIfcSetAggr(KpIfcAggrImp* imp) : Typed(imp) {}
};

/// SET [lo:hi] OF T; an open upper bound is kOpenBound.
template <class T, int lo, int hi>
class KpIfcSetAggrBounded : public KpIfcSetAggr<T> {
public:
    class KpIfcSetAggrBoundedImp
        : public KpIfcAggrImpOf<KpIfcSetAggrBoundedImp, typename KpIfcSetAggr<T>::KpIfcSetAggrImp,
                                KpIfcAggrContainerType::set, lo, hi> {
    public:
        using KpIfcSetAggrBoundedImp::KpIfcAggrImpOf::KpIfcAggrImpOf;
    };

    KpIfcSetAggrBounded() : KpIfcSetAggr<T>(KpIfcSetAggrBoundedImp::nil()) {}
    KpIfcSetAggrBounded(const KpIfcSetAggrBounded&) = default;
    KpIfcSetAggrBounded& operator=(const KpIfcSetAggrBounded& other) {
        this->copy(other);
        return *this;
    }
};

} // namespace KP_SDAI
