#include "Counted.h"

#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpArena.h>
#include <KpIfcCore/KpIfcArrayAggr.h>
#include <KpIfcCore/KpIfcListAggr.h>
#include <KpIfcCore/KpIfcSetAggr.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

/// What every family does alike: nil and empty, ownership, copies, growth, the model's memory.
namespace {

using namespace KP_SDAI;

template <class Aggr>
class AggrStorage : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(Counted::alive(), 0); }

    static void put(Aggr& aggregate, int value) {
        if constexpr (std::is_base_of_v<KpIfcUnOrderedAggr, Aggr>)
            EXPECT_EQ(aggregate.add(value), KP::eOk);
        else
            aggregate.append(value);
    }
    static Aggr filled(int count) {
        Aggr aggregate;
        for (int i = 0; i < count; ++i) put(aggregate, i);
        return aggregate;
    }
    static bool holds(const Aggr& aggregate, int count) {
        if (aggregate.size() != static_cast<std::size_t>(count)) return false;
        int expected = 0;
        for (const Counted& element : aggregate)
            if (element.value() != expected++) return false;
        return true;
    }
};

using Families =
    testing::Types<KpIfcListAggr<Counted>, KpIfcListAggrBounded<Counted, 1, 65536>, KpIfcArrayAggr<Counted>,
                   KpIfcArrayAggrBounded<Counted, 1, 2>, KpIfcSetAggr<Counted>, KpIfcSetAggrBounded<Counted, 1, 65536>>;
TYPED_TEST_SUITE(AggrStorage, Families);

TYPED_TEST(AggrStorage, IsNilUntilCreated) {
    TypeParam aggregate;
    EXPECT_TRUE(aggregate.isNil());
    EXPECT_TRUE(aggregate.empty());
    EXPECT_EQ(aggregate.begin(), aggregate.end());
    aggregate.clear();
    EXPECT_TRUE(aggregate.isNil());
    aggregate.createEmpty();
    EXPECT_FALSE(aggregate.isNil());
    EXPECT_TRUE(aggregate.empty());
    KpIfcAggrImp* const created = aggregate.implementation();
    aggregate.createEmpty();
    EXPECT_EQ(aggregate.implementation(), created);
    EXPECT_TRUE(TypeParam().isNil()); // the placeholder they share is untouched

    TypeParam assigned;
    assigned.assign(KpIfcArray<Counted>());
    EXPECT_FALSE(assigned.isNil());
}

TYPED_TEST(AggrStorage, GrowsBeyondItsFirstRoomInPlace) {
    TypeParam aggregate;
    aggregate.createEmpty();
    KpIfcAggrImp* const implementation = aggregate.implementation();
    for (int i = 0; i < 1000; ++i) {
        this->put(aggregate, i);
        ASSERT_TRUE(this->holds(aggregate, i + 1));
    }
    EXPECT_EQ(aggregate.implementation(), implementation);
    EXPECT_EQ(Counted::alive(), 1000);
    aggregate.clear();
    EXPECT_EQ(Counted::alive(), 0);
    this->put(aggregate, 0);
    EXPECT_TRUE(this->holds(aggregate, 1));
}

TYPED_TEST(AggrStorage, CopiesAreIndependent) {
    for (const int count : {0, 1, 2, 100}) {
        TypeParam original = this->filled(count);
        TypeParam copy(original);
        TypeParam assigned = this->filled(5);
        assigned = original;
        EXPECT_EQ(copy.isNil(), original.isNil());
        EXPECT_EQ(assigned.isNil(), original.isNil());
        original.clear();
        this->put(original, 777);
        EXPECT_TRUE(this->holds(copy, count));
        EXPECT_TRUE(this->holds(assigned, count));
        const TypeParam& self = assigned;
        assigned = self;
        EXPECT_TRUE(this->holds(assigned, count));
        EXPECT_EQ(Counted::alive(), 2 * count + 1);
    }
}

TYPED_TEST(AggrStorage, AnEmptyOneIsCopiedAsEmptyNotAsNil) {
    TypeParam empty;
    empty.createEmpty();
    EXPECT_FALSE(TypeParam(empty).isNil());
    TypeParam assigned = this->filled(3);
    assigned = empty;
    EXPECT_FALSE(assigned.isNil());
    EXPECT_TRUE(assigned.empty());
}

TYPED_TEST(AggrStorage, TakesItsOwnElements) {
    TypeParam aggregate = this->filled(2);
    if constexpr (std::is_base_of_v<KpIfcOrderedAggr, TypeParam>) {
        for (int i = 0; i < 100; ++i) aggregate.append(aggregate[0]);
        for (std::size_t i = 2; i < aggregate.size(); ++i) ASSERT_EQ(aggregate[i].value(), 0);
    } else {
        EXPECT_EQ(aggregate.add(*aggregate.begin()), KP::eOk);
        EXPECT_EQ(aggregate.remove(*aggregate.begin()), KP::eOk);
        EXPECT_EQ(aggregate.begin()->value(), 1);
    }
}

TYPED_TEST(AggrStorage, ImplementationsCloneAndDieOnTheirOwn) {
    TypeParam aggregate = this->filled(10);
    const TypeParam copy(aggregate);
    EXPECT_NE(copy.implementation(), aggregate.implementation());
    EXPECT_EQ(copy.lowerBound(), aggregate.lowerBound());
    EXPECT_EQ(copy.upperBound(), aggregate.upperBound());
    EXPECT_EQ(copy.containerType(), aggregate.containerType());
}

TYPED_TEST(AggrStorage, IteratorsAreForTheOwnAggregateOnly) {
    const auto isNull = [](KpIfcAggrConstIterator* it) {
        return std::unique_ptr<KpIfcAggrConstIterator>(it) == nullptr;
    };
    TypeParam nil;
    EXPECT_TRUE(isNull(nil.createIterator()));
    EXPECT_TRUE(isNull(nil.createConstIterator()));
    TypeParam one = this->filled(1);
    TypeParam other = this->filled(1);
    EXPECT_TRUE(isNull(one.implementation()->createIterator(other)));
    EXPECT_TRUE(isNull(one.implementation()->createConstIterator(other)));
    EXPECT_TRUE(isNull(one.implementation()->createIterator(nil)));
    EXPECT_TRUE(isNull(nil.implementation()->createIterator(one)));
    EXPECT_FALSE(isNull(one.createIterator()));
    EXPECT_FALSE(isNull(one.createConstIterator()));
    one.clear();
    const std::unique_ptr<KpIfcAggrIterator> empty(one.createIterator());
    ASSERT_NE(empty, nullptr);
    EXPECT_FALSE(empty->valid());
    EXPECT_FALSE(empty->next());
}

TYPED_TEST(AggrStorage, LivesInAModelsMemory) {
    KpArena arena;
    TypeParam outside;
    {
        TypeParam aggregate = this->filled(3);
        Counted read[] = {0, 1, 2, 3, 4};
        EXPECT_TRUE(aggregate.load(arena, read, 5)); // bounds are not looked at
        EXPECT_TRUE(this->holds(aggregate, 5));
        outside = aggregate;
        if constexpr (std::is_base_of_v<KpIfcUnOrderedAggr, TypeParam>)
            EXPECT_EQ(aggregate.remove(4), KP::eOk);
        else
            EXPECT_EQ(aggregate.removeAt(4), KP::eOk);
        for (int i = 4; i < 100; ++i) this->put(aggregate, i); // outgrows the arena's piece
        EXPECT_TRUE(this->holds(aggregate, 100));
        TypeParam empty;
        EXPECT_TRUE(empty.load(arena, read, 0));
        EXPECT_FALSE(empty.isNil());
        this->put(empty, 0);
        EXPECT_TRUE(this->holds(empty, 1));
    }
    EXPECT_TRUE(this->holds(outside, 5));
}

TEST(AggrLoad, SetsTellWhenTheyKeptOneOfEquals) {
    KpArena arena;
    KpIfcSetAggr<int> set;
    int unordered[] = {3, 1, 2};
    EXPECT_TRUE(set.load(arena, unordered, 3));
    EXPECT_EQ(set[0], 1);
    int doubled[] = {3, 1, 3, 1};
    EXPECT_FALSE(set.load(arena, doubled, 4));
    EXPECT_EQ(set.count(), 2u);
    KpIfcListAggr<int> list;
    int repeated[] = {3, 1, 3, 1};
    EXPECT_TRUE(list.load(arena, repeated, 4));
    EXPECT_EQ(list.count(), 4u);
}

TEST(AggrLoad, CopiesOfTextsOutliveTheModel) {
    auto arena = std::make_unique<KpArena>();
    KpIfcListAggr<KpAnsiString> copy;
    {
        KpAnsiString read[2];
        read[0].refer(KpAnsiString::place(*arena, "a middle name"));
        read[1].refer(KpAnsiString::place(*arena, "another one"));
        KpIfcListAggr<KpAnsiString> names;
        names.load(*arena, read, 2);
        copy = names;
    }
    arena.reset();
    EXPECT_EQ(copy[0], "a middle name");
    EXPECT_EQ(copy[1], "another one");
}

/// An aggregate member costs one word while nil, and 16 bytes and its elements otherwise.
TEST(AggrLoad, CostsLittleMemory) {
    EXPECT_EQ(sizeof(KpIfcSetAggrBounded<KpAnsiString, 1, 65536>), sizeof(void*));
    KpArena arena;
    KpIfcListAggrBounded<double, 1, 3> point;
    double read[] = {1, 2, 3};
    const auto* before = static_cast<const char*>(arena.allocate(8));
    point.load(arena, read, 3);
    EXPECT_EQ(static_cast<const char*>(arena.allocate(8)) - before, 8 + 16 + 3 * 8);
}

} // namespace
