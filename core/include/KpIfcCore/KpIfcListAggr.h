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

    class KpIfcListAggrImp
        : public KpIfcAggrImpOf<KpIfcListAggrImp, KpIfcOrderedAggrImp<T>, KpIfcAggrContainerType::list, 0, kOpenBound> {
    public:
        using KpIfcListAggrImp::KpIfcAggrImpOf::KpIfcAggrImpOf;
        KpIfcAggrIterator* createIterator(KpIfcAggr& aggr) override {
            return detail::iteratorOver<KpIfcAggrIteratorImp<std::list, T>>(aggr, *this);
        }
        KpIfcAggrConstIterator* createConstIterator(const KpIfcAggr& aggr) const override {
            return detail::iteratorOver<KpIfcAggrConstIteratorImp<std::list, T>>(aggr, *this);
        }
    };

    KpIfcListAggr() : KpIfcListAggr(KpIfcListAggrImp::nil()) {}
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
    class KpIfcListAggrBoundedImp
        : public KpIfcAggrImpOf<KpIfcListAggrBoundedImp, typename KpIfcListAggr<T>::KpIfcListAggrImp,
                                KpIfcAggrContainerType::list, lo, hi> {
    public:
        using KpIfcListAggrBoundedImp::KpIfcAggrImpOf::KpIfcAggrImpOf;
    };

    KpIfcListAggrBounded() : KpIfcListAggr<T>(KpIfcListAggrBoundedImp::nil()) {}
    KpIfcListAggrBounded(const KpIfcListAggrBounded&) = default;
    KpIfcListAggrBounded& operator=(const KpIfcListAggrBounded& other) {
        this->copy(other);
        return *this;
    }
};

} // namespace KP_SDAI
