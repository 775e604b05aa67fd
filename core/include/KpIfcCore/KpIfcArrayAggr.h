#pragma once

#include <KpIfcCore/KpIfcOrderedAggrImp.h>

#include <vector>

namespace KP_SDAI {

/// ARRAY OF T without stated bounds. Iteration is in index order.
template <class T>
class KpIfcArrayAggr : public KpIfcPositionedAggr<T> {
public:
    using Family = KpIfcArrayAggr; ///< of the bounded classes, too

    class KpIfcArrayAggrImp : public KpIfcAggrImpOf<KpIfcArrayAggrImp, KpIfcOrderedAggrImp<T>,
                                                    KpIfcAggrContainerType::array, 0, kOpenBound> {
    public:
        using KpIfcArrayAggrImp::KpIfcAggrImpOf::KpIfcAggrImpOf;
        KpIfcAggrIterator* createIterator(KpIfcAggr& aggr) override {
            return detail::iteratorOver<KpIfcAggrIteratorImp<std::vector, T>>(aggr, *this);
        }
        KpIfcAggrConstIterator* createConstIterator(const KpIfcAggr& aggr) const override {
            return detail::iteratorOver<KpIfcAggrConstIteratorImp<std::vector, T>>(aggr, *this);
        }
    };

    KpIfcArrayAggr() : KpIfcArrayAggr(KpIfcArrayAggrImp::nil()) {}
    KpIfcArrayAggr(const KpIfcArrayAggr&) = default;
    KpIfcArrayAggr& operator=(const KpIfcArrayAggr& other) {
        this->copy(other);
        return *this;
    }

protected:
    explicit KpIfcArrayAggr(KpIfcAggrImp* imp) : KpIfcPositionedAggr<T>(imp) {}
};

/// ARRAY [lo:hi] OF T; an open upper bound is kOpenBound.
template <class T, int lo, int hi>
class KpIfcArrayAggrBounded : public KpIfcArrayAggr<T> {
public:
    class KpIfcArrayBoundedImp
        : public KpIfcAggrImpOf<KpIfcArrayBoundedImp, typename KpIfcArrayAggr<T>::KpIfcArrayAggrImp,
                                KpIfcAggrContainerType::array, lo, hi> {
    public:
        using KpIfcArrayBoundedImp::KpIfcAggrImpOf::KpIfcAggrImpOf;
    };

    KpIfcArrayAggrBounded() : KpIfcArrayAggr<T>(KpIfcArrayBoundedImp::nil()) {}
    KpIfcArrayAggrBounded(const KpIfcArrayAggrBounded&) = default;
    KpIfcArrayAggrBounded& operator=(const KpIfcArrayAggrBounded& other) {
        this->copy(other);
        return *this;
    }
};

} // namespace KP_SDAI
