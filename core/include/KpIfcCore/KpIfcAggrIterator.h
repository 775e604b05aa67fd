#pragma once

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcCoreApi.h>

namespace KP_SDAI {

/// Walks an aggregate whose element type the caller need not know. Adding or removing elements ends its use.
class KPIFCCORE_EXPORT KpIfcAggrConstIterator {
public:
    virtual ~KpIfcAggrConstIterator();
    /// Back to the first element.
    virtual void beginning() = 0;
    /// To the next element; false when there is none.
    virtual bool next() = 0;
    /// True while the iterator stands on an element.
    virtual bool valid() const = 0;
    /// The element on which it stands; false where it stands on none.
    virtual bool current(KpIfcVariant& value) const = 0;
};

class KPIFCCORE_EXPORT KpIfcAggrIterator : public KpIfcAggrConstIterator {
public:
    ~KpIfcAggrIterator() override;
};

namespace detail {

template <class Base, class T, class Elements>
class AggrWalk : public Base {
public:
    explicit AggrWalk(Elements& elements) : m_elements(&elements) {}
    void beginning() override { m_position = 0; }
    bool next() override {
        if (m_position < m_elements->count()) ++m_position;
        return valid();
    }
    bool valid() const override { return m_position < m_elements->count(); }
    bool current(KpIfcVariant& value) const override { return m_elements->getElement(m_position, value); }
    /// The element on which the iterator stands; only while valid().
    const T& current() const { return m_elements->begin()[m_position]; }

protected:
    Elements* m_elements;
    std::size_t m_position = 0;
};

/// A new iterator over the elements of `imp`; null where `aggr` is nil or has another implementation.
template <class Iterator, class Imp>
Iterator* iteratorOver(const KpIfcAggr& aggr, Imp& imp) {
    return aggr.isNil() || aggr.implementation() != &imp ? nullptr : new Iterator(imp);
}

} // namespace detail

/// Iterators over lists (tag std::list) and arrays (tag std::vector); the tag names the kind, not the storage.
template <template <class...> class Kind, class T>
class KpIfcAggrIteratorImp : public detail::AggrWalk<KpIfcAggrIterator, T, KpIfcAggrElements<T>> {
    using Walk = detail::AggrWalk<KpIfcAggrIterator, T, KpIfcAggrElements<T>>;

public:
    using Walk::Walk;
    void setCurrent(const T& value) { this->m_elements->begin()[this->m_position] = value; }
};
template <template <class...> class Kind, class T>
class KpIfcAggrConstIteratorImp : public detail::AggrWalk<KpIfcAggrConstIterator, T, const KpIfcAggrElements<T>> {
    using Walk = detail::AggrWalk<KpIfcAggrConstIterator, T, const KpIfcAggrElements<T>>;

public:
    using Walk::Walk;
};

/// Iterators over sets (tag std::set), in ascending order of the elements.
template <template <class...> class Kind, class T>
class KpIfcAggrSetInteratorImp : public detail::AggrWalk<KpIfcAggrIterator, T, KpIfcAggrElements<T>> {
    using Walk = detail::AggrWalk<KpIfcAggrIterator, T, KpIfcAggrElements<T>>;

public:
    using Walk::Walk;
};
template <template <class...> class Kind, class T>
class KpIfcAggrSetConstIteratorImp : public detail::AggrWalk<KpIfcAggrConstIterator, T, const KpIfcAggrElements<T>> {
    using Walk = detail::AggrWalk<KpIfcAggrConstIterator, T, const KpIfcAggrElements<T>>;

public:
    using Walk::Walk;
};

} // namespace KP_SDAI
