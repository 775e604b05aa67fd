#pragma once

#include <KpIfcCore/KpIfcOrderedAggrImp.h>

#include <vector>

namespace KP_SDAI {

/// ARRAY OF T without stated bounds. Iteration is in index order.
template <class T>
class KpIfcArrayAggr : public KpIfcPositionedAggr<T> {
public:
    using Family = KpIfcArrayAggr; ///< of the bounded classes, too

    class KpIfcArrayAggrImp : public KpIfcOrderedAggrImp<T> {
    public:
        constexpr explicit KpIfcArrayAggrImp(KpIfcAggrImp::Room room) : KpIfcOrderedAggrImp<T>(room) {}
        KpIfcAggrIterator* createIterator(KpIfcAggr& aggr) override {
            if (aggr.isNil() || aggr.implementation() != this) return nullptr;
            return new KpIfcAggrIteratorImp<std::vector, T>(*this);
        }
        KpIfcAggrConstIterator* createConstIterator(const KpIfcAggr& aggr) const override {
            if (aggr.isNil() || aggr.implementation() != this) return nullptr;
            return new KpIfcAggrConstIteratorImp<std::vector, T>(*this);
        }
        int lowerBound() const override { return 0; }
        int upperBound() const override { return kOpenBound; }
        KpIfcAggrContainerType aggrContainerType() const override { return KpIfcAggrContainerType::array; }
        KpIfcAggrImp* placeholder() const override { return KpIfcAggrImpDummy<T, KpIfcArrayAggrImp, 1, 0>::get(); }

    protected:
        KpIfcAggrImp* create(KpArena* arena, std::size_t room) const override {
            return this->template createAs<KpIfcArrayAggrImp>(arena, room);
        }
    };

    KpIfcArrayAggr() : KpIfcArrayAggr(KpIfcAggrImpDummy<T, KpIfcArrayAggrImp, 1, 0>::get()) {}
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
    class KpIfcArrayBoundedImp : public KpIfcArrayAggr<T>::KpIfcArrayAggrImp {
    public:
        constexpr explicit KpIfcArrayBoundedImp(KpIfcAggrImp::Room room) : KpIfcArrayAggr<T>::KpIfcArrayAggrImp(room) {}
        int lowerBound() const override { return lo; }
        int upperBound() const override { return hi; }
        KpIfcAggrImp* placeholder() const override { return KpIfcAggrImpDummy<T, KpIfcArrayBoundedImp, 1, 0>::get(); }

    protected:
        KpIfcAggrImp* create(KpArena* arena, std::size_t room) const override {
            return this->template createAs<KpIfcArrayBoundedImp>(arena, room);
        }
    };

    KpIfcArrayAggrBounded() : KpIfcArrayAggr<T>(KpIfcAggrImpDummy<T, KpIfcArrayBoundedImp, 1, 0>::get()) {}
    KpIfcArrayAggrBounded(const KpIfcArrayAggrBounded&) = default;
    KpIfcArrayAggrBounded& operator=(const KpIfcArrayAggrBounded& other) {
        this->copy(other);
        return *this;
    }
};

} // namespace KP_SDAI
