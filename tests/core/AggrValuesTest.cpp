#include <KpIfcCore/KpIfcArrayAggr.h>
#include <KpIfcCore/KpIfcListAggr.h>
#include <KpIfcCore/KpIfcSetAggr.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace KP_SDAI;

namespace {

template <class Iterator>
std::string walked(Iterator* iterator) {
    const std::unique_ptr<Iterator> owner(iterator);
    std::string text;
    for (owner->beginning(); owner->valid(); owner->next()) {
        KpIfcVariant value;
        int whole = 0;
        if (owner->current(value) && value.get(whole)) text += std::to_string(whole) + ' ';
    }
    KpIfcVariant none;
    return owner->current(none) ? text + "and more" : text;
}

TEST(AggregateValues, ASetChangesByValuesOfOtherTypesWithinItsBounds) {
    KpIfcSetAggrBounded<int, 1, 2> set;
    EXPECT_NE(nullptr, set.implementation()->unorderedManiplator());
    EXPECT_FALSE(set.containsValue(7));
    EXPECT_EQ(KP::eRefused, set.removeValue(7)); // nil
    EXPECT_EQ(KP::eOk, set.addValue(7.0));
    EXPECT_EQ(KP::eRefused, set.addValue(7.5));
    EXPECT_EQ(KP::eRefused, set.addValue("seven"));
    EXPECT_EQ(KP::eRefused, set.addValue(KpIfcVariant()));
    EXPECT_EQ(KP::eRefused, set.removeValue(7)); // at the lower bound
    EXPECT_EQ(KP::eOk, set.addValue("3"));
    EXPECT_EQ(KP::eOk, set.addValue(3ul)); // there already
    EXPECT_EQ(KP::eRefused, set.addValue(5));
    EXPECT_TRUE(set.containsValue(3.0));
    EXPECT_FALSE(set.containsValue(KpIfcBoolean(true)));
    EXPECT_EQ("3 7 ", walked(set.createIterator()));
    EXPECT_EQ(KP::eRefused, set.removeValue(4));
    EXPECT_EQ(KP::eOk, set.removeValue(7));
    EXPECT_EQ("3 ", walked(set.createConstIterator()));
    EXPECT_EQ(&KpIfcVariantType::Desc<int>::value(), set.implementation()->elementType());
}

TEST(AggregateValues, ListsAndArraysKeepPositionsAndDuplicates) {
    KpIfcListAggrBounded<int, 1, 3> list;
    EXPECT_EQ(nullptr, list.implementation()->unorderedManiplator());
    for (const int value : {4, 2, 4, 9}) EXPECT_EQ(KP::eOk, list.addValue(value)); // bounds are not checked here
    EXPECT_EQ("4 2 4 9 ", walked(list.createIterator()));
    EXPECT_EQ(KP::eOk, list.removeValue(4)); // the first one
    EXPECT_EQ(KP::eRefused, list.removeValue(5));
    EXPECT_EQ("2 4 9 ", walked(list.createConstIterator()));
    EXPECT_TRUE(list.containsValue("9"));
    for (int& value : list) value *= 2;
    EXPECT_EQ("4 8 18 ", walked(list.createConstIterator()));
    KpIfcVariant element;
    EXPECT_TRUE(list.getElement(2, element));
    EXPECT_EQ(KpIfcVariant(18), element);
    EXPECT_FALSE(list.getElement(3, element));

    KpIfcArrayAggr<double> reals;
    EXPECT_EQ(nullptr, reals.implementation()->unorderedManiplator());
    EXPECT_EQ(KP::eOk, reals.addValue(1));
    EXPECT_TRUE(reals.contains(1.0));
}

TEST(AggregateValues, ARefusedValueLeavesANilAggregateNil) {
    KpIfcSetAggr<int> set;
    KpIfcListAggr<double> list;
    EXPECT_EQ(KP::eRefused, set.addValue("seven"));
    EXPECT_EQ(KP::eRefused, list.addValue(KpIfcBoolean(true)));
    EXPECT_TRUE(set.isNil());
    EXPECT_TRUE(list.isNil());
}

TEST(AggregateValues, AssigningASetTakesWhatItHoldsWhateverTheBounds) {
    KpIfcSetAggrBounded<int, 1, 2> full, other;
    full.replace({3, 1, 2}); // as a file may have it
    other = full;
    EXPECT_EQ("1 2 3 ", walked(other.createConstIterator()));
    EXPECT_EQ("1 2 3 ", walked(KpIfcSetAggrBounded<int, 1, 2>(full).createConstIterator()));
    other.assign(KpIfcArray<int>{5, 4, 6});
    EXPECT_EQ("4 5 ", walked(other.createConstIterator())); // an array is added value by value
}

TEST(AggregateValues, ALargeShuffledSetIsAssignedOnceSorted) {
    KpIfcSetAggr<int> set;
    KpIfcArray<int> values;
    constexpr int many = 65'536;
    values.reserve(2 * many);
    for (int i = 0; i < 2 * many; ++i) values.append(static_cast<int>(i * 40'503u % many)); // each twice
    set.assign(values);
    ASSERT_EQ(static_cast<std::size_t>(many), set.size());
    for (int i = 0; i < many; ++i) ASSERT_EQ(i, set[static_cast<std::size_t>(i)]);
}

} // namespace
