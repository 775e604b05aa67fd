#include "Counted.h"

#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpIfcArray.h>

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <utility>

namespace {

using namespace KP_SDAI;

TEST(Array, AppendsItsOwnElements) {
    KpIfcArray<KpAnsiString> texts(1);
    texts.append("the first text, long enough for the heap");
    for (int i = 0; i < 1000; ++i) texts.append(texts[0]);
    for (const KpAnsiString& text : texts) ASSERT_EQ(text, "the first text, long enough for the heap");
    KpIfcArray<double> numbers(1);
    numbers.append(1.5);
    for (int i = 0; i < 1000; ++i) numbers.append(numbers[numbers.size() - 1]);
    for (const double number : numbers) ASSERT_EQ(number, 1.5);
}

TEST(Array, OwnsItsElements) {
    {
        KpIfcArray<Counted> values;
        for (int i = 0; i < 500; ++i) values.append(Counted(i));
        ASSERT_EQ(Counted::alive(), 500);
        KpIfcArray<Counted> copy(values);
        copy[0] = Counted(-1);
        EXPECT_EQ(values[0].value(), 0);
        EXPECT_EQ(Counted::alive(), 1000);
        copy.setLogicalLength(10);
        EXPECT_EQ(Counted::alive(), 510);
        copy.setLogicalLength(20);
        EXPECT_EQ(copy[19].value(), 0);
        KpIfcArray<Counted> moved(std::move(copy));
        EXPECT_EQ(moved.length(), 20u);
        values = moved;
        EXPECT_EQ(values.length(), 20u);
        EXPECT_TRUE(values == moved);
        const KpIfcArray<Counted>& self = values;
        values = self;
        EXPECT_EQ(values.length(), 20u);
        values.clear();
        EXPECT_TRUE(values.isEmpty());
        EXPECT_EQ(Counted::alive(), 20);
    }
    EXPECT_EQ(Counted::alive(), 0);
}

TEST(Array, NestsArrays) {
    KpIfcArray<KpIfcArray<int>> rows(1);
    for (int i = 0; i < 100; ++i) {
        rows.append(KpIfcArray<int>());
        for (int k = 0; k < i; ++k) rows[static_cast<std::size_t>(i)].append(k);
    }
    rows.append(rows[99]);
    KpIfcArray<KpIfcArray<int>> copy;
    copy = rows;
    rows.clear();
    ASSERT_EQ(copy.length(), 101u);
    for (std::size_t i = 0; i < 100; ++i) {
        ASSERT_EQ(copy[i].size(), i);
        ASSERT_EQ(std::accumulate(copy[i].begin(), copy[i].end(), 0u), i * (i ? i - 1 : 0) / 2);
    }
    EXPECT_TRUE(copy[100] == copy[99]);
}

TEST(Array, GrowsByItsStepAtLeast) {
    KpIfcArray<int> values(50);
    values.append(1);
    EXPECT_EQ(values.growLength(), 50u);
    EXPECT_GE(values.physicalLength(), 50u);
    const int* place = values.asArrayPtr();
    for (int i = 0; i < 49; ++i) values.append(i);
    EXPECT_EQ(values.asArrayPtr(), place);
    KpIfcArray<int> stepless(0);
    stepless.append(7);
    EXPECT_EQ(stepless[0], 7);
}

TEST(Array, NewElementsAreValueInitialised) {
    KpIfcArray<int> numbers;
    for (int i = 0; i < 8; ++i) numbers.append(-1);
    numbers.resize(0);
    numbers.resize(8);
    for (const int number : numbers) EXPECT_EQ(number, 0);
    KpIfcArray<KpAnsiString> texts;
    texts.resize(3);
    EXPECT_TRUE(texts[2].isEmpty());
}

} // namespace
