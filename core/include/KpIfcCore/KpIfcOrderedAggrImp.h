#pragma once

#include <KpIfcCore/KpIfcAggrIterator.h>
#include <KpIfcCore/KpIfcException.h>
#include <KpIfcCore/KpIfcTypedAggr.h>

namespace KP_SDAI {

/// Implementation that lists and arrays share: elements at positions from 0.
template <class T>
class KpIfcOrderedAggrImp : public KpIfcAggrElements<T> {
public:
    bool isOrdered() const override { return true; }
    bool isUnique() const override { return false; }

    /// The element at a position within the declared bounds; throws 470 "Index invalid " outside them, position 0 of
    /// an aggregate with lower bound 1 included, and where there is no such element.
    virtual T& at(int position) {
        if (position < this->lowerBound() || position > this->upperBound() || position < 0 ||
            static_cast<std::uint32_t>(position) >= this->m_count)
            throw KpIfcException(470, "Index invalid ", "");
        return this->data()[position];
    }
    /// Removes one element; eRefused outside 0 <= position < count.
    virtual KP::ErrorStatus removeAt(int position) {
        if (position < 0 || static_cast<std::uint32_t>(position) >= this->m_count) return KP::eRefused;
        this->eraseAt(static_cast<std::size_t>(position));
        return KP::eOk;
    }
    virtual const T& at(int position) const { return const_cast<KpIfcOrderedAggrImp*>(this)->at(position); }
    /// Replaces the elements, in array order; the bounds are not checked.
    virtual void assign(const T* values, std::size_t count) { this->replaceByCopies(values, count); }
    void append(const T& value) { this->insertAt(this->m_count, value); }
    /// The position of the first equal element; count() where there is none.
    std::size_t find(const T& value) const {
        std::size_t i = 0;
        while (i < this->m_count && !(this->data()[i] == value)) ++i;
        return i;
    }
    bool contains(const T& value) const { return find(value) < this->m_count; }
    /// Elements have positions here: what has none is refused.
    virtual KP::ErrorStatus add(const T&) { return KP::eRefused; }

    /// Brings values into the order in which they are kept; how many of them are kept.
    static std::size_t arrange(T*, std::size_t count) { return count; }

protected:
    constexpr explicit KpIfcOrderedAggrImp(KpIfcAggrImp::Room room) : KpIfcAggrElements<T>(room) {}
    bool containsElement(const T& value) const override { return contains(value); }
    KP::ErrorStatus addElement(const T& value) override {
        append(value);
        return KP::eOk;
    }
    KP::ErrorStatus removeElement(const T& value) override { return removeAt(static_cast<int>(find(value))); }
};

/// What lists and arrays offer alike.
template <class T>
class KpIfcPositionedAggr : public KpIfcTypedAggr<T, KpIfcOrderedAggr, KpIfcOrderedAggrImp<T>> {
    using Typed = KpIfcTypedAggr<T, KpIfcOrderedAggr, KpIfcOrderedAggrImp<T>>;

public:
    /// The element at a position within the declared bounds and below count(); throws KpIfcException 470.
    const T& at(int position) const { return this->imp().at(position); }
    T& at(int position) { return const_cast<T&>(this->imp().at(position)); }
    using Typed::begin;
    using Typed::end;
    /// Elements may be changed in place: for (double& x : point->getCoordinates()) ...
    T* begin() { return const_cast<T*>(this->imp().begin()); }
    T* end() { return const_cast<T*>(this->imp().end()); }
    bool contains(const T& value) const { return this->imp().contains(value); }
    void append(const T& value) { this->changeable().append(value); }
    /// eRefused unless 0 <= position < count().
    KP::ErrorStatus removeAt(int position) {
        return this->isNil() ? KP::eRefused : this->changeable().removeAt(position);
    }

    friend bool operator==(const KpIfcPositionedAggr& a, const KpIfcPositionedAggr& b) {
        if (a.size() != b.size()) return false;
        for (std::size_t i = 0; i < a.size(); ++i)
            if (!(a[i] == b[i])) return false;
        return true;
    }

protected:
    explicit KpIfcPositionedAggr(KpIfcAggrImp* imp) : Typed(imp) {}
    KpIfcPositionedAggr(const KpIfcPositionedAggr&) = default;
};

} // namespace KP_SDAI
