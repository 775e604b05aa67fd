#pragma once

#include <KpIfcCore/KpIfcOrderedAggrImp.h>

#include <list>

namespace KP_SDAI {

/// LIST OF T without stated bounds. Iteration is in list order.
///
///     for (double x : point->getCoordinates()) ...
template <class T>
class KpIfcListAggr : public KpIfcPositionedAggr<T> {
public:
    using Family = KpIfcListAggr; ///< of the bounded classes, too

    class KpIfcListAggrImp : public KpIfcOrderedAggrImp<T> {
    public:
        constexpr explicit KpIfcListAggrImp(KpIfcAggrImp::Room room) : KpIfcOrderedAggrImp<T>(room) {}
        KpIfcAggrIterator* createIterator(KpIfcAggr& aggr) override {
            if (aggr.isNil() || aggr.implementation() != this) return nullptr;
            return new KpIfcAggrIteratorImp<std::list, T>(*this);
        }
        KpIfcAggrConstIterator* createConstIterator(const KpIfcAggr& aggr) const override {
            if (aggr.isNil() || aggr.implementation() != this) return nullptr;
            return new KpIfcAggrConstIteratorImp<std::list, T>(*this);
        }
        int lowerBound() const override { return 0; }
        int upperBound() const override { return kOpenBound; }
        KpIfcAggrContainerType aggrContainerType() const override { return KpIfcAggrContainerType::list; }
        KpIfcAggrImp* placeholder() const override { return KpIfcAggrImpDummy<T, KpIfcListAggrImp, 2, 0>::get(); }

    protected:
        KpIfcAggrImp* create(KpArena* arena, std::size_t room) const override {
            return this->template createAs<KpIfcListAggrImp>(arena, room);
        }
    };

    KpIfcListAggr() : KpIfcListAggr(KpIfcAggrImpDummy<T, KpIfcListAggrImp, 2, 0>::get()) {}
    KpIfcListAggr(const KpIfcListAggr&) = default;
    KpIfcListAggr& operator=(const KpIfcListAggr& other) {
        this->copy(other);
        return *this;
    }

protected:
    explicit KpIfcListAggr(KpIfcAggrImp* imp) : KpIfcPositionedAggr<T>(imp) {}
};

/// LIST [lo:hi] OF T; an open upper bound is kOpenBound.
template <class T, int lo, int hi>
class KpIfcListAggrBounded : public KpIfcListAggr<T> {
public:
    class KpIfcListAggrBoundedImp : public KpIfcListAggr<T>::KpIfcListAggrImp {
    public:
        constexpr explicit KpIfcListAggrBoundedImp(KpIfcAggrImp::Room room)
            : KpIfcListAggr<T>::KpIfcListAggrImp(room) {}
        int lowerBound() const override { return lo; }
        int upperBound() const override { return hi; }
        KpIfcAggrImp* placeholder() const override {
            return KpIfcAggrImpDummy<T, KpIfcListAggrBoundedImp, 2, 0>::get();
        }

    protected:
        KpIfcAggrImp* create(KpArena* arena, std::size_t room) const override {
            return this->template createAs<KpIfcListAggrBoundedImp>(arena, room);
        }
    };

    KpIfcListAggrBounded() : KpIfcListAggr<T>(KpIfcAggrImpDummy<T, KpIfcListAggrBoundedImp, 2, 0>::get()) {}
    KpIfcListAggrBounded(const KpIfcListAggrBounded&) = default;
    KpIfcListAggrBounded& operator=(const KpIfcListAggrBounded& other) {
        this->copy(other);
        return *this;
    }
};

} // namespace KP_SDAI
