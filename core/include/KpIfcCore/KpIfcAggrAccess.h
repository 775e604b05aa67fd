#pragma once

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcArrayAggr.h>
#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcElementCopier.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcListAggr.h>
#include <KpIfcCore/KpIfcSelect.h>
#include <KpIfcCore/KpIfcSetAggr.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include <type_traits>
#include <utility>
#include <vector>

/// How aggregate attributes stand in STEP files and are reached by name: one class for all aggregates of a family and
/// an element type, whatever their bounds.
namespace KP_SDAI {

namespace detail {

template <class T>
constexpr KpIfcElementKind elementKind() {
    if constexpr (std::is_same_v<T, double>) return KpIfcElementKind::real;
    if constexpr (std::is_same_v<T, int>) return KpIfcElementKind::integer;
    if constexpr (std::is_same_v<T, KpAnsiString>) return KpIfcElementKind::string;
    if constexpr (std::is_same_v<T, KpDbObjectId>) return KpIfcElementKind::reference;
    if constexpr (std::is_base_of_v<KpIfcSelect, T>) return KpIfcElementKind::select;
}

/// What KpIfcAggrFacts points at.
template <class Family, bool binary = false>
struct AggrAccess {
    using T = typename Family::Element;

    /// Bounds are not enforced; a member that cannot be read ends the aggregate.
    static void read(KpSpfFilerBase& filer, KpIfcAggr& field, bool optional, bool separator) {
        auto& aggregate = static_cast<Family&>(field);
        aggregate.clear();
        const KpSpfFilerBase::AggregateStart start = filer.beginAggregate(optional, separator);
        if (start == KpSpfFilerBase::AggregateStart::none) return;
        if constexpr (std::is_base_of_v<KpIfcSelect, T>) {
            std::vector<T> members;
            readMembers(filer, aggregate, start, members);
        } else {
            readMembers(filer, aggregate, start, filer.members<T>());
        }
    }

    static void write(KpSpfFilerBase& filer, const KpIfcAggr& field, bool optional, bool separator) {
        const auto& aggregate = static_cast<const Family&>(field);
        if (separator) filer.wrChar(',');
        if (optional && aggregate.empty()) return filer.wrChar('$');
        filer.wrChar('(');
        bool next = false;
        for (const T& member : aggregate) {
            if (next) filer.wrChar(',');
            if constexpr (binary)
                filer.wrBinary(member);
            else
                filer.wrPrimitive(member);
            next = true;
        }
        filer.wrChar(')');
    }

    static void copy(KpIfcAggr& to, const KpIfcAggr& from, KpIfcElementCopier& copier) {
        if (from.isNil()) return;
        std::vector<T> elements;
        elements.reserve(from.size());
        for (const T& original : static_cast<const Family&>(from)) {
            elements.push_back(original);
            if constexpr (!std::is_arithmetic_v<T>)
                if (!copier.adapt(elements.back())) elements.pop_back();
        }
        static_cast<Family&>(to).load(copier.arena(), elements.data(), elements.size());
    }

    static void rearrange(KpIfcAggr& field) { static_cast<Family&>(field).rearrange(); }

    /// Of selects only; a template so that instantiating the class for other elements leaves it out.
    template <class Selects = Family>
    static const KpIfcSelect& selectAt(const KpIfcAggr& field, std::size_t index) {
        return static_cast<const Selects&>(field)[index];
    }

    static void get(KpIfcAggr& field, KpIfcVariant& value) { value.set(static_cast<Family*>(&field)); }

    static void toArray(const KpIfcAggr& field, KpIfcVariant& value) {
        KpIfcArray<T> elements(8);
        static_cast<const Family&>(field).copyTo(elements);
        value.set(elements);
    }

    static const KpIfcVariantType& arrayType() { return KpIfcVariantType::Desc<KpIfcArray<T>>::value(); }

    static void keepOnly(KpIfcAggr& field, const KpIfcArray<bool>& kept) {
        if (field.empty()) return;
        auto& elements = static_cast<KpIfcAggrElements<T>&>(*field.implementation());
        T* next = elements.begin();
        for (std::size_t i = 0; i < kept.size(); ++i) {
            if (!kept[i]) continue;
            if (next != elements.begin() + i) *next = std::move(elements.begin()[i]);
            ++next;
        }
        elements.shrinkTo(static_cast<std::size_t>(next - elements.begin()));
    }

    static bool put(KpIfcAggr& field, const KpIfcVariant& value, KpIfcEntityBase& owner) {
        KpIfcArray<T> elements; // a copy: the value may be this aggregate
        if (!convert(value, owner, elements)) return false;
        KpIfcChange::before(owner);
        static_cast<Family&>(field).replace(std::move(elements), owner);
        return true;
    }

private:
    static void readMembers(KpSpfFilerBase& filer, Family& aggregate, KpSpfFilerBase::AggregateStart start,
                            std::vector<T>& members) {
        bool separator = false;
        do {
            T member{};
            if (readMember(filer, member, separator) != KP::eOk) break;
            members.push_back(std::move(member));
            separator = true;
        } while (start == KpSpfFilerBase::AggregateStart::open && !filer.atAggregateEnd());
        if (start == KpSpfFilerBase::AggregateStart::bare) filer.endBareAggregate();
        if (!members.empty() && !aggregate.load(filer.arena(), members.data(), members.size())) filer.repeatedMembers();
    }

    static KP::ErrorStatus readMember(KpSpfFilerBase& filer, T& member, bool separator) {
        if constexpr (binary)
            return filer.rdBinary(member, separator);
        else
            return filer.rdPrimitive(member, separator);
    }

    /// The elements that a value stands for; false where it stands for none or one does not convert.
    static bool convert(const KpIfcVariant& value, const KpIfcEntityBase& owner, KpIfcArray<T>& elements) {
        if (const auto* array = value.getIf<KpIfcArray<T>>()) {
            elements = *array;
            return true;
        }
        if (Family* const* aggregate = value.getIf<Family*>()) {
            if (*aggregate) (*aggregate)->copyTo(elements);
            return *aggregate != nullptr;
        }
        if (const auto* variants = value.getIf<KpIfcArray<KpIfcVariant>>()) {
            elements.reserve(variants->length());
            for (const KpIfcVariant& variant : *variants) {
                T element{};
                KpIfcVariant text;
                if (!inModelsForm(variant, owner, text).get(element)) return false;
                elements.append(element);
            }
            return true;
        }
        if constexpr (std::is_base_of_v<KpIfcSelect, T>) {
            if (const auto* handles = value.getIf<KpIfcArray<KpDbObjectId>>()) {
                elements.reserve(handles->length());
                for (const KpDbObjectId& handle : *handles) {
                    T element;
                    if (!element.setHandle(handle)) return false;
                    elements.append(element);
                }
                return true;
            }
        }
        return false;
    }
};

// Those of the runtime's own element types are compiled once, in the runtime.
extern template struct KPIFCCORE_EXPORT AggrAccess<KpIfcListAggr<double>>;
extern template struct KPIFCCORE_EXPORT AggrAccess<KpIfcListAggr<int>>;
extern template struct KPIFCCORE_EXPORT AggrAccess<KpIfcListAggr<KpAnsiString>>;
extern template struct KPIFCCORE_EXPORT AggrAccess<KpIfcListAggr<KpAnsiString>, true>;
extern template struct KPIFCCORE_EXPORT AggrAccess<KpIfcListAggr<KpDbObjectId>>;
extern template struct KPIFCCORE_EXPORT AggrAccess<KpIfcSetAggr<KpDbObjectId>>;
extern template struct KPIFCCORE_EXPORT AggrAccess<KpIfcArrayAggr<double>>;

template <class Aggr>
KpIfcAggrImp* createImp() {
    return Aggr().implementation()->clone();
}

template <class Aggr, bool binary>
constexpr KpIfcAggrFacts aggregateFacts() {
    using Access = AggrAccess<typename Aggr::Family, binary>;
    constexpr KpIfcElementKind element = binary ? KpIfcElementKind::binary : elementKind<typename Aggr::Element>();
    KpIfcAggrFacts facts{.element = element,
                         .isSet = !std::is_base_of_v<KpIfcOrderedAggr, Aggr>,
                         .read = Access::read,
                         .write = Access::write,
                         .create = createImp<Aggr>,
                         .rearrange = Access::rearrange,
                         .get = Access::get,
                         .toArray = Access::toArray,
                         .arrayType = Access::arrayType,
                         .put = Access::put,
                         .copy = Access::copy,
                         .keepOnly = Access::keepOnly};
    if constexpr (element == KpIfcElementKind::select) facts.selectAt = Access::template selectAt<>;
    return facts;
}

} // namespace detail

/// The facts of a class of aggregates.
template <class Aggr>
inline constexpr KpIfcAggrFacts kAggregateFacts = detail::aggregateFacts<Aggr, false>();

/// The facts of lists of binaries, which are held as texts.
inline constexpr KpIfcAggrFacts kBinaryAggregateFacts =
    detail::aggregateFacts<KpIfcListAggrBounded<KpAnsiString, 1, kOpenBound>, true>();

} // namespace KP_SDAI
