#include <KpIfcCore/KpIfcArrayAggr.h>
#include <KpIfcCore/KpIfcException.h>
#include <KpIfcCore/KpIfcListAggr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace {

using namespace KP_SDAI;
using testing::ElementsAre;

/// What access to a position throws; nothing where it gives an element.
template <class Aggr>
std::optional<unsigned> thrownAt(Aggr& aggregate, int position) {
    try {
        aggregate.at(position);
        return std::nullopt;
    } catch (const KpIfcException& error) {
        EXPECT_STREQ(error.message(), "Index invalid ");
        EXPECT_STREQ(error.where(), "");
        return error.code();
    }
}

struct PositionCase {
    int count;
    int position;
    bool valid;
};

template <class Aggr>
void expectPositions(std::initializer_list<PositionCase> cases) {
    for (const PositionCase& c : cases) {
        SCOPED_TRACE("position " + std::to_string(c.position) + " of " + std::to_string(c.count));
        Aggr aggregate;
        for (int i = 0; i < c.count; ++i) aggregate.append(i * 10);
        const Aggr& constant = aggregate;
        const std::optional<unsigned> expected = c.valid ? std::nullopt : std::optional(470u);
        EXPECT_EQ(thrownAt(aggregate, c.position), expected);
        EXPECT_EQ(thrownAt(constant, c.position), expected);
        if (c.valid) {
            EXPECT_EQ(constant.at(c.position), c.position * 10);
        }
    }
}

TEST(ListAggr, ChecksPositionsAgainstBoundsAndCount) {
    expectPositions<KpIfcListAggr<int>>({{3, 0, true}, {3, 2, true}, {3, 3, false}, {3, -1, false}, {0, 0, false}});
    expectPositions<KpIfcListAggrBounded<int, 1, 65536>>({{3, 0, false}, {3, 1, true}, {3, 2, true}, {3, 3, false}});
    expectPositions<KpIfcListAggrBounded<int, 3, 4>>({{4, 2, false}, {4, 3, true}, {4, 4, false}});
    // More elements than the bounds allow: only positions within the bounds are given out.
    expectPositions<KpIfcListAggrBounded<int, 1, 2>>({{5, 2, true}, {5, 3, false}, {5, 4, false}});
    expectPositions<KpIfcArrayAggrBounded<int, 1, 2>>({{2, 0, false}, {2, 1, true}, {2, 2, false}, {3, 2, true}});
    expectPositions<KpIfcArrayAggr<int>>({{2, 0, true}, {2, 2, false}});
}

TEST(ListAggr, BeyondAnOpenBoundPositionsAreRefused) {
    KpIfcListAggr<int> numbers;
    for (int i = 0; i < 70'000; ++i) numbers.append(i);
    EXPECT_EQ(numbers.at(65'536), 65'536);
    EXPECT_EQ(thrownAt(numbers, 65'537), 470u);
    EXPECT_EQ(numbers[69'999], 69'999);
}

TEST(ListAggr, RefusedAccessLeavesANilListNil) {
    KpIfcListAggrBounded<int, 1, 65536> numbers;
    EXPECT_EQ(thrownAt(numbers, 1), 470u);
    EXPECT_EQ(numbers.removeAt(0), KP::eRefused);
    EXPECT_TRUE(numbers.isNil());
}

TEST(ListAggr, AssignsFromArraysWithoutALookAtTheBounds) {
    KpIfcListAggrBounded<int, 3, 4> angle;
    angle.assign(KpIfcArray<int>{52, 31, 12});
    EXPECT_THAT(angle, ElementsAre(52, 31, 12));
    angle.assign(KpIfcArray<int>{6, 5, 4, 3, 2, 1});
    EXPECT_THAT(angle, ElementsAre(6, 5, 4, 3, 2, 1));
    angle.assign(KpIfcArray<int>{1});
    EXPECT_THAT(angle, ElementsAre(1));

    KpIfcArray<int> out{9};
    angle.append(1);
    angle.copyTo(out);
    EXPECT_EQ(out, (KpIfcArray<int>{9, 1, 1}));
}

TEST(ListAggr, RemovesAtPositionsBelowTheCount) {
    KpIfcListAggrBounded<int, 3, 4> list;
    list.assign(KpIfcArray<int>{0, 1, 2, 3});
    EXPECT_EQ(list.removeAt(4), KP::eRefused);
    EXPECT_EQ(list.removeAt(-1), KP::eRefused);
    EXPECT_EQ(list.removeAt(1), KP::eOk);
    EXPECT_THAT(list, ElementsAre(0, 2, 3));
    EXPECT_EQ(list.removeAt(2), KP::eOk);
    EXPECT_EQ(list.removeAt(0), KP::eOk); // below the lower bound: only sets refuse that
    EXPECT_THAT(list, ElementsAre(2));
    EXPECT_EQ(list.removeAt(0), KP::eOk);
    EXPECT_EQ(list.removeAt(0), KP::eRefused);
    EXPECT_FALSE(list.isNil());
}

TEST(ListAggr, KeepsDuplicatesInTheirOrder) {
    KpIfcListAggr<int> list;
    for (const int value : {3, 1, 3, 2, 1}) list.append(value);
    EXPECT_THAT(list, ElementsAre(3, 1, 3, 2, 1));
    list.rearrange();
    EXPECT_THAT(list, ElementsAre(3, 1, 3, 2, 1));
}

/// What lists and arrays must do alike.
template <class Aggr>
class PositionedAggr : public testing::Test {};
using PositionedAggrs = testing::Types<KpIfcListAggr<int>, KpIfcListAggrBounded<int, 1, 3>, KpIfcArrayAggr<int>,
                                       KpIfcArrayAggrBounded<int, 1, 2>>;
TYPED_TEST_SUITE(PositionedAggr, PositionedAggrs);

TYPED_TEST(PositionedAggr, ElementsCanBeChangedInPlace) {
    TypeParam aggregate;
    aggregate.assign(KpIfcArray<int>{1, 2});
    TypeParam copy(aggregate);
    aggregate.at(1) = 7;
    EXPECT_THAT(aggregate, ElementsAre(1, 7));
    EXPECT_THAT(copy, ElementsAre(1, 2));
    EXPECT_FALSE(copy == aggregate);
}

TYPED_TEST(PositionedAggr, IteratorsWalkInOrderAndChange) {
    TypeParam aggregate;
    aggregate.assign(KpIfcArray<int>{5, 3, 4});
    const std::unique_ptr<KpIfcAggrIterator> it(aggregate.createIterator());
    ASSERT_NE(it, nullptr);
    using List = KpIfcAggrIteratorImp<std::list, int>;
    using Vector = KpIfcAggrIteratorImp<std::vector, int>;
    KpIfcArray<int> seen;
    const auto walk = [&](auto* typed) {
        for (typed->beginning(); typed->valid(); typed->next()) {
            seen.append(typed->current());
            typed->setCurrent(typed->current() * 2);
        }
        EXPECT_FALSE(typed->next());
    };
    if (aggregate.containerType() == KpIfcAggrContainerType::list) {
        ASSERT_NE(dynamic_cast<List*>(it.get()), nullptr);
        walk(static_cast<List*>(it.get()));
    } else {
        ASSERT_NE(dynamic_cast<Vector*>(it.get()), nullptr);
        walk(static_cast<Vector*>(it.get()));
    }
    EXPECT_EQ(seen, (KpIfcArray<int>{5, 3, 4}));
    EXPECT_THAT(aggregate, ElementsAre(10, 6, 8));
}

TEST(AggrKinds, AreKnownOfNilAggregatesToo) {
    const KpIfcListAggrBounded<int, 3, 4> list;
    EXPECT_EQ(list.containerType(), KpIfcAggrContainerType::list);
    EXPECT_EQ(list.lowerBound(), 3);
    EXPECT_EQ(list.upperBound(), 4);
    EXPECT_TRUE(list.implementation()->isOrdered());
    EXPECT_FALSE(list.implementation()->isUnique());
    const KpIfcArrayAggrBounded<double, 1, 2> array;
    EXPECT_EQ(array.containerType(), KpIfcAggrContainerType::array);
    EXPECT_EQ(array.lowerBound(), 1);
    EXPECT_EQ(array.upperBound(), 2);
    const KpIfcListAggr<double> open;
    EXPECT_EQ(open.lowerBound(), 0);
    EXPECT_EQ(open.upperBound(), 65'536);
}

} // namespace
