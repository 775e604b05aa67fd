#pragma once

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcArray.h>

#include <cstddef>
#include <utility>

/// What the families of aggregates (lists, sets, arrays) have in common.

namespace KP_SDAI {

/// Room for elements that stands for an open upper bound ("?"); it never refuses an element.
inline constexpr int kOpenBound = 65536;

/// What every typed aggregate offers; `Imp` is the implementation class that its family shares. Assigning takes the
/// elements and whether it is nil, and keeps the bounds.
template <class T, class Base, class Imp>
class KpIfcTypedAggr : public Base {
public:
    using Element = T;
    using value_type = T;
    using const_iterator = const T*;

    const T* begin() const { return imp().begin(); }
    const T* end() const { return imp().end(); }
    /// The element at a position below size(), unchecked.
    const T& operator[](std::size_t position) const { return imp().begin()[position]; }
    template <class Reallocator>
    void copyTo(KpIfcArray<T, Reallocator>& out) const {
        imp().copyTo(out);
    }
    /// Replaces the elements by those of an array, which may come from this aggregate; creates it where nil.
    template <class Reallocator>
    void assign(const KpIfcArray<T, Reallocator>& values) {
        changeable(values.size()).assign(values.begin(), values.size());
    }
    /// The same without a look at bounds; takes over the elements.
    void replace(KpIfcArray<T>&& values) {
        changeable().replace(values.begin(), Imp::arrange(values.begin(), values.size()));
    }
    // The same for attributes of an instance. Where it was nil, it is created in the memory of the instance's model,
    // which keeps that place even if the aggregate becomes nil again.
    template <class Reallocator>
    void assign(const KpIfcArray<T, Reallocator>& values, const KpIfcEntityBase& owner) {
        createFor(owner, values.size());
        assign(values);
    }
    void replace(KpIfcArray<T>&& values, const KpIfcEntityBase& owner) {
        createFor(owner, values.size());
        replace(std::move(values));
    }
    /// Replaces the elements by values just read, which are moved into `arena`. False where some were equal and a set
    /// kept one of them.
    bool load(KpArena& arena, T* values, std::size_t count) {
        const std::size_t kept = Imp::arrange(values, count);
        KpIfcAggrImp* filled = imp().createFilled(arena, values, kept);
        this->dispose();
        this->m_imp = filled;
        return kept == count;
    }
    /// Restores order and uniqueness after elements were changed in place.
    void rearrange() {
        if (this->isNil()) return;
        Imp& imp = changeable();
        imp.shrinkTo(Imp::arrange(imp.data(), imp.count()));
    }

protected:
    explicit KpIfcTypedAggr(KpIfcAggrImp* imp) : Base(imp) {}
    KpIfcTypedAggr(const KpIfcTypedAggr& other)
        : Base(other.isNil() ? other.m_imp->placeholder() : other.m_imp->clone()) {}
    void copy(const KpIfcTypedAggr& other) {
        if (this == &other) return;
        if (!other.isNil()) {
            // In order already; no bound refuses what the other holds.
            changeable(other.size()).replaceByCopies(other.begin(), other.size());
        } else if (!this->isNil()) {
            KpIfcAggrImp* const nil = this->m_imp->placeholder();
            this->dispose();
            this->m_imp = nil;
        }
    }

    const Imp& imp() const { return static_cast<const Imp&>(*this->m_imp); }
    Imp& changeable() {
        this->createEmpty();
        return static_cast<Imp&>(*this->m_imp);
    }
    void createFor(const KpIfcEntityBase& owner, std::size_t room) {
        if (this->isNil()) this->m_imp = imp().createWithRoom(room, arenaOf(owner));
    }
    /// Where nil, with room for so many elements.
    Imp& changeable(std::size_t room) {
        if (this->isNil()) this->m_imp = imp().createWithRoom(room);
        return static_cast<Imp&>(*this->m_imp);
    }
};

/// The shared placeholder behind every nil aggregate of one class.
template <class T, class Imp, int kind, int unique>
class KpIfcAggrImpDummy final : public Imp {
public:
    constexpr KpIfcAggrImpDummy() : Imp(KpIfcAggrImp::Room{KpIfcAggrImp::kPlaceholder}) {}
    /// Never written: every change replaces it by an implementation first.
    static KpIfcAggrImp* get() { return const_cast<KpIfcAggrImpDummy*>(&s_dummy); }

private:
    static const KpIfcAggrImpDummy s_dummy;
};
template <class T, class Imp, int kind, int unique>
inline constexpr KpIfcAggrImpDummy<T, Imp, kind, unique> KpIfcAggrImpDummy<T, Imp, kind, unique>::s_dummy{};

/// What the implementation class `Self` of one aggregate class adds to `Base`: its bounds, its placeholder and how to
/// make another one.
template <class Self, class Base, KpIfcAggrContainerType kind, int lo, int hi>
class KpIfcAggrImpOf : public Base {
public:
    constexpr explicit KpIfcAggrImpOf(KpIfcAggrImp::Room room) : Base(room) {}
    int lowerBound() const override { return lo; }
    int upperBound() const override { return hi; }
    KpIfcAggrContainerType aggrContainerType() const override { return kind; }
    KpIfcAggrImp* placeholder() const override { return nil(); }
    static KpIfcAggrImp* nil() {
        return KpIfcAggrImpDummy<typename Base::Element, Self, static_cast<int>(kind),
                                 kind == KpIfcAggrContainerType::set>::get();
    }

protected:
    KpIfcAggrImp* create(KpArena* arena, std::size_t room) const override {
        return this->template createAs<Self>(arena, room);
    }
};

} // namespace KP_SDAI
