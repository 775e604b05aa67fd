#pragma once

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcAggrValues.h>
#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcListAggr.h>
#include <KpIfcCore/KpIfcSelect.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include <type_traits>
#include <vector>

/// How aggregates stand in STEP files: one reader and one writer for every class of aggregate.
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

template <bool binary, class T>
KP::ErrorStatus readMember(KpSpfFilerBase& filer, T& member, bool separator) {
    if constexpr (binary)
        return filer.rdBinary(member, separator);
    else
        return filer.rdPrimitive(member, separator);
}

template <class Aggr, bool binary>
void readMembers(KpSpfFilerBase& filer, Aggr& aggregate, KpSpfFilerBase::AggregateStart start,
                 std::vector<typename Aggr::Element>& members) {
    bool separator = false;
    do {
        typename Aggr::Element member{};
        if (readMember<binary>(filer, member, separator) != KP::eOk) break;
        members.push_back(std::move(member));
        separator = true;
    } while (start == KpSpfFilerBase::AggregateStart::open && !filer.atAggregateEnd());
    if (start == KpSpfFilerBase::AggregateStart::bare) filer.endBareAggregate();
    if (!members.empty() && !aggregate.load(filer.arena(), members.data(), members.size())) filer.repeatedMembers();
}

/// Reads an aggregate field. Bounds are not enforced; a member that cannot be read ends the aggregate.
template <class Aggr, bool binary>
void readAggregate(KpSpfFilerBase& filer, KpIfcAggr& field, bool optional, bool separator) {
    auto& aggregate = static_cast<Aggr&>(field);
    aggregate.clear();
    const KpSpfFilerBase::AggregateStart start = filer.beginAggregate(optional, separator);
    if (start == KpSpfFilerBase::AggregateStart::none) return;
    using T = typename Aggr::Element;
    if constexpr (std::is_base_of_v<KpIfcSelect, T>) {
        std::vector<T> members;
        readMembers<Aggr, binary>(filer, aggregate, start, members);
    } else {
        readMembers<Aggr, binary>(filer, aggregate, start, filer.members<T>());
    }
}

template <class Aggr, bool binary>
void writeAggregate(KpSpfFilerBase& filer, const KpIfcAggr& field, bool optional, bool separator) {
    const auto& aggregate = static_cast<const Aggr&>(field);
    if (separator) filer.wrChar(',');
    if (optional && aggregate.empty()) return filer.wrChar('$');
    filer.wrChar('(');
    bool next = false;
    for (const auto& member : aggregate) {
        if (next) filer.wrChar(',');
        if constexpr (binary)
            filer.wrBinary(member);
        else
            filer.wrPrimitive(member);
        next = true;
    }
    filer.wrChar(')');
}

template <class Aggr>
const KpIfcSelect& selectAt(const KpIfcAggr& aggregate, std::size_t index) {
    return static_cast<const Aggr&>(aggregate)[index];
}

template <class Aggr>
KpIfcAggrImp* createImp() {
    return Aggr().implementation()->clone();
}

template <class Aggr>
void rearrange(KpIfcAggr& aggregate) {
    static_cast<Aggr&>(aggregate).rearrange();
}

template <class Aggr, bool binary>
constexpr KpIfcAggrFacts aggregateFacts() {
    constexpr KpIfcElementKind element = binary ? KpIfcElementKind::binary : elementKind<typename Aggr::Element>();
    KpIfcAggrFacts facts{element,
                         !std::is_base_of_v<KpIfcOrderedAggr, Aggr>,
                         readAggregate<Aggr, binary>,
                         writeAggregate<Aggr, binary>,
                         createImp<Aggr>,
                         rearrange<Aggr>,
                         getAggregate<Aggr>,
                         putAggregate<Aggr>};
    if constexpr (element == KpIfcElementKind::select) facts.selectAt = selectAt<Aggr>;
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
