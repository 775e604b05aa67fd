#include "Counted.h"
#include "VariantText.h"

#include <KpIfcCore/KpIfcAggrAccess.h>
#include <KpIfcCore/KpIfcVariantTypes.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace KP_SDAI {

// A value too large to lie in a variant, and one that fits but is no plain bytes.
struct Large {
    Counted value;
    char room[64] = {};
    friend bool operator==(const Large& a, const Large& b) { return a.value == b.value; }
};
template <>
struct KpIfcDescOf<Large> {
    static KpIfcVariantType& value() {
        static KpIfcVariantTypeForObject<Large> descriptor(L"Large", true);
        return descriptor;
    }
};

} // namespace KP_SDAI

namespace {

using namespace KP_SDAI;
using namespace variant_text;

TEST(Variant, KeepsWhatItHoldsThroughEveryWayOfCopying) {
    const KpIfcVariant values[] = {
        {},
        5,
        2.5,
        "text",
        KpAnsiString("a text of its own"),
        unicode("\xC3\x84"),
        KpIfcGUID("2O2Fr$t4X7Zf8NOew3FLOH"),
        KpIfcArray<double>{1, 2},
        KpIfcArray<KpAnsiString>{"a", "b"},
        Variants{1, "two", Variants{unicode("three")}},
    };
    for (const KpIfcVariant& value : values) {
        const std::string text = textOf(value);
        KpIfcVariant copy(value);
        EXPECT_EQ(textOf(copy), text);
        EXPECT_TRUE(value.type() != nullptr || copy == value);
        KpIfcVariant& self = copy;
        copy = self;
        EXPECT_EQ(textOf(copy), text);
        copy = std::move(self);
        EXPECT_EQ(textOf(copy), text);
        copy.swap(self);
        EXPECT_EQ(textOf(copy), text);
        KpIfcVariant moved(std::move(copy));
        EXPECT_EQ(textOf(moved), text);
        EXPECT_TRUE(copy.isEmpty());
        for (const KpIfcVariant& former : values) {
            KpIfcVariant assigned(former);
            assigned = value;
            EXPECT_EQ(textOf(assigned), text);
            assigned = former;
            KpIfcVariant source(value);
            assigned = std::move(source);
            EXPECT_EQ(textOf(assigned), text);
            KpIfcVariant other(former);
            const std::string formerText = textOf(other);
            other.swap(assigned);
            EXPECT_EQ(textOf(other) + textOf(assigned), text + formerText);
            EXPECT_EQ(value == former, &value == &former) << text << ' ' << formerText;
        }
        moved.clear();
        EXPECT_TRUE(moved.isEmpty());
        EXPECT_EQ(textOf(value), text);
    }
}

TEST(Variant, MayBeAssignedAPartOfItself) {
    const auto array = [] { return KpIfcVariant(Variants{1, KpAnsiString("two"), Variants{2.5}}); };
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string expected = textOf((*array().getIf<Variants>())[i]);
        KpIfcVariant value = array();
        value = std::as_const((*value.getIf<Variants>())[i]);
        EXPECT_EQ(textOf(value), expected);
        value = array();
        value = std::move((*value.getIf<Variants>())[i]);
        EXPECT_EQ(textOf(value), expected);
        value = array();
        value.getIf<Variants>()->append(value); // an element that is the whole
        EXPECT_EQ(value.getIf<Variants>()->length(), 4u);
    }
    KpIfcVariant value = KpIfcArray<double>{1.5, 2.5};
    value.set((*value.getIf<KpIfcArray<double>>())[1]);
    EXPECT_EQ(textOf(value), "double:2.5");
    value = KpIfcArray<KpAnsiString>{"a", "b"};
    value.set((*value.getIf<KpIfcArray<KpAnsiString>>())[1]);
    EXPECT_EQ(textOf(value), "KpAnsiString:'b'");
}

TEST(Variant, OwnsOneObjectPerCopy) {
    const int alive = Counted::alive();
    {
        KpIfcVariant value = Large{Counted(7)};
        EXPECT_EQ(Counted::alive(), alive + 1);
        KpIfcVariant copy(value);
        EXPECT_EQ(Counted::alive(), alive + 2);
        EXPECT_TRUE(copy == value);
        EXPECT_NE(copy.getIf<Large>(), value.getIf<Large>());
        const Large* const place = value.getIf<Large>();
        KpIfcVariant moved(std::move(value));
        EXPECT_EQ(moved.getIf<Large>(), place);
        EXPECT_EQ(Counted::alive(), alive + 2);
        moved.set(*moved.getIf<Large>());
        copy = moved;
        EXPECT_EQ(Counted::alive(), alive + 2);
        moved.getIf<Large>()->value = Counted(8);
        EXPECT_FALSE(copy == moved);
        moved = 1;
        EXPECT_EQ(Counted::alive(), alive + 1);
        copy.setHeapStorageValue(Large{Counted(9)}, false, false, false);
        EXPECT_EQ(copy.getIf<Large>()->value.value(), 9);
    }
    EXPECT_EQ(Counted::alive(), alive);
}

/// The descriptors of pointers to aggregates of the runtime's own elements.
TEST(Variant, PointersToAggregates) {
    KpIfcListAggrBounded<double, 1, 3> reals;
    const KpIfcVariant nil = static_cast<KpIfcListAggr<double>*>(&reals);
    KpIfcVariant untouched = 5;
    EXPECT_TRUE(nil.type()->toValueType(to<Variants>(), nil, untouched));
    EXPECT_EQ(textOf(untouched), "int:5");
    KpIfcArray<double> elements{1, 2};
    EXPECT_TRUE(nil.get(elements));
    EXPECT_TRUE(elements.empty());

    reals.assign(KpIfcArray<double>{2.5, 1});
    const KpIfcVariant value = nil; // points at it still
    EXPECT_TRUE(value.type()->isAggregate());
    EXPECT_FALSE(value.type()->isSelect());
    EXPECT_EQ(value.type()->aggregate(value.data()), &reals);
    const struct {
        const KpIfcVariantType& target;
        const char* expected;
    } cases[] = {
        {to<KpIfcArray<double>>(), "doubles(double:2.5 double:1.)"},
        {to<Variants>(), "variants(double:2.5 double:1.)"},
        {to<KpIfcArray<int>>(), nullptr},
        {to<KpIfcListAggr<int>*>(), nullptr},
        {to<KpIfcArrayAggr<double>*>(), nullptr},
        {to<double>(), nullptr},
        {to<KpTypeCodeKind>(), nullptr},
    };
    for (const auto& c : cases) {
        KpIfcVariant scratch;
        const KpIfcVariant* converted = value.convert(c.target, scratch);
        EXPECT_EQ(converted ? textOf(*converted) : "refused", c.expected ? c.expected : "refused");
    }
    KpIfcAggr* generic = nullptr;
    ASSERT_TRUE(value.get(generic));
    EXPECT_EQ(generic, &reals);
    // From the pointer of no particular type the elements can be had, too.
    EXPECT_TRUE(KpIfcVariant(generic).get(elements));
    EXPECT_EQ(elements, (KpIfcArray<double>{2.5, 1}));
    KpIfcArray<int> ints{9};
    EXPECT_FALSE(KpIfcVariant(generic).get(ints));
    EXPECT_EQ(ints, KpIfcArray<int>{9});
    EXPECT_FALSE(value == value); // pointers to aggregates are never equal
    KcString text;
    EXPECT_FALSE(value.toString(text));
    KpIfcVariant made;
    EXPECT_TRUE(value.type()->createVariant(made));
    EXPECT_EQ(*made.getIf<KpIfcListAggr<double>*>(), nullptr);
    EXPECT_FALSE(made.get(elements));
}

/// A value without content, of every type that the runtime describes.
TEST(Variant, CreatedWithoutContent) {
    const struct {
        const KpIfcVariantType& type;
        const char* expected;
    } cases[] = {
        {to<int>(), "int:$"},
        {to<unsigned long>(), "unsigned long:0"},
        {to<double>(), "double:$"},
        {to<bool>(), "bool:.F."},
        {to<KpIfcBoolean>(), "KpIfcBoolean:$"},
        {to<KpIfcLogical>(), "KpIfcLogical:$"},
        {to<const char*>(), "const char*:$"},
        {to<KpAnsiString>(), "KpAnsiString:$"},
        {to<KcString>(), "KcString:''"},
        {to<KpIfcGUID>(), "KpIfcGUID:$"},
        {to<KpDbObjectId>(), "KpDbObjectId:$"},
        {to<KpTypeCodeKind>(), "KpTypeCodeKind:0"},
        {to<KpIfcEnumDescription>(), "KpIfcEnumDescription:$"},
        {to<KpIfcAggr*>(), "KpIfcAggr*:no text"},
        {to<KpIfcArray<int>>(), "ints()"},
        {to<KpIfcArray<double>>(), "doubles()"},
        {to<KpIfcArray<KpAnsiString>>(), "texts()"},
        {to<KpIfcArray<KpDbObjectId>>(), "handles()"},
        {to<Variants>(), "variants()"},
        {to<KpIfcSetAggr<KpDbObjectId>*>(), "KpIfcSetAggr<KpDbObjectId>*:no text"},
        {to<KpIfcListAggr<KpDbObjectId>*>(), "KpIfcListAggr<KpDbObjectId>*:no text"},
        {to<KpIfcListAggr<KpAnsiString>*>(), "KpIfcListAggr<KpAnsiString>*:no text"},
        {to<KpIfcListAggr<double>*>(), "KpIfcListAggr<double>*:no text"},
        {to<KpIfcListAggr<int>*>(), "KpIfcListAggr<int>*:no text"},
        {to<KpIfcArrayAggr<double>*>(), "KpIfcArrayAggr<double>*:no text"},
    };
    for (const auto& c : cases) {
        KpIfcVariant value = Variants{1};
        EXPECT_TRUE(c.type.createVariant(value)) << c.expected;
        EXPECT_EQ(textOf(value), c.expected);
        EXPECT_EQ(value.type(), &c.type) << c.expected;
        EXPECT_EQ(c.type.typePath(value), nullptr) << c.expected;
        EXPECT_EQ(c.type.storedSelect(value), nullptr) << c.expected;
    }
}

} // namespace
