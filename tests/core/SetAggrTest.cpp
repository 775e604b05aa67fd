#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpIfcSetAggr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <set>
#include <string>

namespace {

using namespace KP_SDAI;
using testing::ElementsAre;

using Trims = KpIfcSetAggrBounded<int, 1, 2>;
using Open = KpIfcSetAggrBounded<int, 1, 65536>;

TEST(SetAggr, AFullSetRefusesOnlyWhatIsNew) {
    Trims trims;
    EXPECT_EQ(trims.add(2), KP::eOk);
    EXPECT_EQ(trims.add(1), KP::eOk);
    EXPECT_EQ(trims.add(1), KP::eOk);
    EXPECT_EQ(trims.add(2), KP::eOk);
    EXPECT_EQ(static_cast<int>(trims.add(3)), 2);
    EXPECT_EQ(static_cast<int>(trims.add(0)), 2);
    EXPECT_THAT(trims, ElementsAre(1, 2));
}

TEST(SetAggr, RemoveStopsAtTheLowerBound) {
    Open set;
    EXPECT_EQ(static_cast<int>(set.remove(1)), 2);
    EXPECT_TRUE(set.isNil()); // what is refused changes nothing
    set.assign(KpIfcArray<int>{1, 2});
    EXPECT_EQ(static_cast<int>(set.remove(3)), 2);
    EXPECT_EQ(set.remove(1), KP::eOk);
    EXPECT_EQ(static_cast<int>(set.remove(2)), 2);
    EXPECT_THAT(set, ElementsAre(2));
    set.clear();
    EXPECT_TRUE(set.empty());
    EXPECT_FALSE(set.isNil());

    KpIfcSetAggr<int> unbounded;
    unbounded.add(1);
    EXPECT_EQ(unbounded.remove(*unbounded.begin()), KP::eOk);
    EXPECT_EQ(static_cast<int>(unbounded.remove(1)), 2);
}

TEST(SetAggr, RemoveFromASetBeyondItsBounds) {
    KpArena arena;
    Trims trims; // files may hold more than the bounds allow
    int read[] = {4, 3, 2, 1};
    EXPECT_TRUE(trims.load(arena, read, 4));
    EXPECT_EQ(static_cast<int>(trims.add(5)), 2);
    EXPECT_EQ(trims.add(3), KP::eOk);
    EXPECT_EQ(trims.remove(3), KP::eOk);
    EXPECT_EQ(trims.remove(1), KP::eOk);
    EXPECT_EQ(trims.remove(4), KP::eOk);
    EXPECT_EQ(static_cast<int>(trims.remove(2)), 2);
    EXPECT_THAT(trims, ElementsAre(2));
}

TEST(SetAggr, BehavesAsAnOrderedSet) {
    std::mt19937 random(5);
    std::set<int> expected;
    KpIfcSetAggr<int> set;
    for (int round = 0; round < 20'000; ++round) {
        const int value = static_cast<int>(random() % 300);
        switch (random() % 3) {
        case 0: EXPECT_EQ(set.remove(value), expected.erase(value) ? KP::eOk : KP::eRefused); break;
        case 1: EXPECT_EQ(set.contains(value), expected.count(value) == 1); break;
        default: EXPECT_EQ(set.add(value), KP::eOk); expected.insert(value);
        }
        ASSERT_EQ(set.size(), expected.size());
    }
    EXPECT_TRUE(std::equal(set.begin(), set.end(), expected.begin(), expected.end()));
}

TEST(SetAggr, AnOpenBoundNeverRefuses) {
    Open set;
    for (int i = 0; i < 70'000; ++i) ASSERT_EQ(set.add(i), KP::eOk);
    EXPECT_EQ(set.count(), 70'000u);
    EXPECT_EQ(*(set.end() - 1), 69'999);
    KpIfcArray<int> values;
    set.copyTo(values);
    KpIfcSetAggr<int> unbounded;
    unbounded.assign(values);
    EXPECT_EQ(unbounded.count(), 70'000u);
}

TEST(SetAggr, AssignKeepsTheFirstThatFit) {
    Trims trims;
    trims.assign(KpIfcArray<int>{9, 7, 9, 8, 6});
    EXPECT_THAT(trims, ElementsAre(7, 9));
    KpIfcSetAggr<int> set;
    set.assign(KpIfcArray<int>{3, 1, 2, 3, 1});
    EXPECT_THAT(set, ElementsAre(1, 2, 3));
    set.assign(KpIfcArray<int>{});
    EXPECT_TRUE(set.empty());
}

/// Equal where the keys are, whatever else they hold.
struct Tagged {
    int key;
    int tag;
    friend bool operator<(const Tagged& a, const Tagged& b) { return a.key < b.key; }
};

TEST(SetAggr, OnlyTheLessThanOfElementsCounts) {
    KpIfcSetAggr<Tagged> set;
    set.add({2, 1});
    set.add({1, 1});
    set.add({2, 2});
    ASSERT_EQ(set.count(), 2u);
    EXPECT_EQ(set.begin()[1].tag, 1); // the one that was there stays
    EXPECT_TRUE(set.contains({1, 99}));

    KpIfcSetAggr<KpAnsiString> texts;
    for (const char* text : {"b", "\xC3\xA4", "", "a", "b", "B"}) texts.add(text);
    EXPECT_THAT(texts, ElementsAre("", "B", "a", "b", "\xC3\xA4"));
}

TEST(SetAggr, RearrangeRestoresOrderAndUniqueness) {
    KpIfcSetAggr<KpAnsiString> texts;
    for (const char* text : {"a", "b", "c", "d"}) texts.add(text);
    auto& elements = static_cast<KpIfcAggrElements<KpAnsiString>&>(*texts.implementation());
    elements.begin()[0] = "z";
    elements.begin()[2] = "b";
    texts.rearrange();
    EXPECT_THAT(texts, ElementsAre("b", "d", "z"));
    EXPECT_TRUE(texts.contains("z"));
    KpIfcSetAggr<KpAnsiString> nil;
    nil.rearrange();
    EXPECT_TRUE(nil.isNil());
}

TEST(SetAggr, IteratorsAscend) {
    Open set;
    set.assign(KpIfcArray<int>{3, 1, 2});
    const std::unique_ptr<KpIfcAggrIterator> it(set.createIterator());
    const std::unique_ptr<KpIfcAggrConstIterator> constant(std::as_const(set).createConstIterator());
    auto* typed = dynamic_cast<KpIfcAggrSetInteratorImp<std::set, int>*>(it.get());
    auto* typedConstant = dynamic_cast<KpIfcAggrSetConstIteratorImp<std::set, int>*>(constant.get());
    ASSERT_TRUE(typed && typedConstant);
    for (int expected = 1; expected <= 3; ++expected) {
        ASSERT_TRUE(it->valid() && constant->valid());
        EXPECT_EQ(typed->current(), expected);
        EXPECT_EQ(typedConstant->current(), expected);
        EXPECT_EQ(it->next(), expected < 3);
        constant->next();
    }
    EXPECT_FALSE(it->next());
    EXPECT_FALSE(constant->valid());
    constant->beginning();
    EXPECT_EQ(typedConstant->current(), 1);
}

TEST(SetAggr, KindAndBounds) {
    const Trims trims;
    EXPECT_EQ(trims.containerType(), KpIfcAggrContainerType::set);
    EXPECT_FALSE(trims.implementation()->isOrdered());
    EXPECT_TRUE(trims.implementation()->isUnique());
    EXPECT_EQ(trims.lowerBound(), 1);
    EXPECT_EQ(trims.upperBound(), 2);
    EXPECT_EQ(Open().upperBound(), 65'536);
}

} // namespace
