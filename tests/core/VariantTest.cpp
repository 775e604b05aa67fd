#include "Counted.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcAggrValues.h>
#include <KpIfcCore/KpIfcSettings.h>
#include <KpIfcCore/KpIfcVariantTypes.h>
#include <KpRx/KcString.h>

#include <gtest/gtest.h>

#include <limits>
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

using Variants = KpIfcArray<KpIfcVariant>;

KcString unicode(const char* utf8) {
    return KcString(utf8, KcString::Encoding::utf8);
}

template <class T>
std::string joined(const KpIfcArray<T>& elements);

/// "type:text", the text as files have it; of arrays, the elements between brackets.
std::string textOf(const KpIfcVariant& value) {
    if (value.isEmpty()) return "nothing";
    if (const auto* ints = value.getIf<KpIfcArray<int>>()) return "ints" + joined(*ints);
    if (const auto* doubles = value.getIf<KpIfcArray<double>>()) return "doubles" + joined(*doubles);
    if (const auto* texts = value.getIf<KpIfcArray<KpAnsiString>>()) return "texts" + joined(*texts);
    if (const auto* handles = value.getIf<KpIfcArray<KpDbObjectId>>()) return "handles" + joined(*handles);
    if (const auto* variants = value.getIf<Variants>()) return "variants" + joined(*variants);
    std::string out;
    for (const wchar_t* c = value.type()->displayName(); *c; ++c) out += static_cast<char>(*c);
    KcString text;
    return out + ':' + (value.toString(text, kFormatStep) ? text.utf8Ptr() : "no text");
}

template <class T>
std::string joined(const KpIfcArray<T>& elements) {
    std::string out = "(";
    for (const T& element : elements) out += (out.size() > 1 ? " " : "") + textOf(KpIfcVariant(element));
    return out + ')';
}

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

template <class T>
const KpIfcVariantType& to() {
    return KpIfcVariantType::Desc<T>::value();
}

TEST(Variant, ConvertsBetweenTheTypesOfTheRuntime) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr int kLowest = std::numeric_limits<int>::min();
    const KpIfcVariant unsetText(Consts::KpStringUnset);
    static constexpr const char* kNo = nullptr;
    const struct {
        KpIfcVariant value;
        const KpIfcVariantType& target;
        const char* expected; ///< null: refused
    } cases[] = {
        {5, to<int>(), "int:5"},
        {5, to<double>(), "double:5."},
        {Consts::KpIntUnset, to<double>(), "double:$"},
        {5, to<unsigned long>(), "unsigned long:5"},
        {-5, to<unsigned long>(), kNo},
        {5, to<bool>(), kNo},
        {5, to<KpIfcLogical>(), kNo},
        {5, to<const char*>(), kNo},
        {5, to<KpAnsiString>(), kNo},
        {5, to<KpDbObjectId>(), kNo},
        {5, to<KpIfcArray<int>>(), kNo},
        {5, to<KpTypeCodeKind>(), "KpTypeCodeKind:2"},
        {7ul, to<int>(), "int:7"},
        {2147483648ul, to<int>(), kNo},
        {2147483648ul, to<double>(), "double:2147483648."},
        {2.0, to<int>(), "int:2"},
        {-0.0, to<int>(), "int:0"},
        {2.5, to<int>(), kNo},
        {double(kLowest), to<int>(), "int:-2147483648"},
        {2147483648.0, to<int>(), kNo},
        {-2147483649.0, to<int>(), kNo},
        {kInfinity, to<int>(), kNo},
        {std::numeric_limits<double>::quiet_NaN(), to<int>(), kNo},
        {Consts::KpRealUnset, to<int>(), "int:$"},
        {Consts::KpRealUnset, to<unsigned long>(), kNo},
        {-1.0, to<unsigned long>(), kNo},
        {18446744073709549568.0, to<unsigned long>(), "unsigned long:18446744073709549568"},
        {18446744073709551616.0, to<unsigned long>(), kNo},
        {"12", to<int>(), "int:12"},
        {"+12", to<int>(), "int:12"},
        {KpAnsiString("-12"), to<int>(), "int:-12"},
        {"-1", to<unsigned long>(), kNo},
        {"2147483648", to<int>(), kNo},
        {"2.5", to<int>(), kNo},
        {"2.5", to<double>(), "double:2.5"},
        {"+2.5e1", to<double>(), "double:25."},
        {"1.", to<double>(), "double:1."},
        {"1e999", to<double>(), kNo},
        {"inf", to<double>(), kNo},
        {"-nan", to<double>(), kNo},
        {"+-5", to<int>(), kNo},
        {"++5", to<double>(), kNo},
        {"+-5.", to<double>(), kNo},
        {"-", to<double>(), kNo},
        {"+", to<int>(), kNo},
        {" 5", to<int>(), kNo},
        {"5 ", to<double>(), kNo},
        {"", to<int>(), kNo},
        {unsetText, to<double>(), kNo},
        {static_cast<const char*>(nullptr), to<int>(), kNo},
        {unicode("5"), to<int>(), kNo},
        {true, to<KpIfcBoolean>(), "KpIfcBoolean:.T."},
        {true, to<KpIfcLogical>(), "KpIfcLogical:.T."},
        {true, to<int>(), kNo},
        {KpIfcBoolean(false), to<bool>(), "bool:.F."},
        {KpIfcBoolean(), to<bool>(), kNo},
        {KpIfcBoolean(), to<KpIfcLogical>(), "KpIfcLogical:$"},
        {KpIfcLogical(true), to<bool>(), "bool:.T."},
        {KpIfcLogical(false), to<KpIfcBoolean>(), "KpIfcBoolean:.F."},
        {KpIfcLogical(KpIfcLogical::Unknown), to<bool>(), kNo},
        {KpIfcLogical(KpIfcLogical::Unknown), to<KpIfcBoolean>(), kNo},
        {KpIfcLogical(), to<KpIfcBoolean>(), "KpIfcBoolean:$"},
        {KpIfcLogical(), to<bool>(), kNo},
        {"T", to<bool>(), kNo},
        {"it's", to<KpAnsiString>(), "KpAnsiString:'it''s'"},
        {static_cast<const char*>(nullptr), to<KpAnsiString>(), "KpAnsiString:$"},
        {KpAnsiString("\xC3\x84"), to<KcString>(), "KcString:'\\X2\\00C4\\X0\\'"},
        {unicode("\xC3\x84"), to<KpAnsiString>(), "KpAnsiString:'\\X2\\00C4\\X0\\'"},
        {unicode("a"), to<const char*>(), "const char*:'a'"},
        {"0123456789012345678901", to<KpIfcGUID>(), "KpIfcGUID:'0123456789012345678901'"},
        {"01234567890123456789012", to<KpIfcGUID>(), kNo},
        {unsetText, to<KpIfcGUID>(), "KpIfcGUID:$"},
        {KpIfcGUID("id"), to<KpAnsiString>(), "KpAnsiString:'id'"},
        {KpIfcGUID("5"), to<int>(), "int:5"},
        {KpDbObjectId(), to<int>(), kNo},
        {KpDbObjectId(), to<KpTypeCodeKind>(), "KpTypeCodeKind:13"},
        {KpIfcArray<int>{1, 2}, to<Variants>(), "variants(int:1 int:2)"},
        {KpIfcArray<int>{1, 2}, to<KpIfcArray<double>>(), kNo},
        {KpIfcArray<KpAnsiString>{"a"}, to<Variants>(), "variants(KpAnsiString:'a')"},
        {KpIfcArray<double>(), to<Variants>(), "variants()"},
        {KpIfcArray<double>{1}, to<double>(), kNo},
        {KpIfcArray<double>{1}, to<KpTypeCodeKind>(), "KpTypeCodeKind:16"},
        {Variants{1, 2.0, "3"}, to<KpIfcArray<int>>(), "ints(int:1 int:2 int:3)"},
        {Variants{1, 2.5, "3"}, to<KpIfcArray<int>>(), kNo},
        {Variants{1, 2.5, "3"}, to<KpIfcArray<double>>(), "doubles(double:1. double:2.5 double:3.)"},
        {Variants{"a", unicode("b"), KpIfcGUID("c")}, to<KpIfcArray<KpAnsiString>>(),
         "texts(KpAnsiString:'a' KpAnsiString:'b' KpAnsiString:'c')"},
        {Variants{1, KpIfcVariant()}, to<KpIfcArray<int>>(), kNo},
        {Variants(), to<KpIfcArray<KpDbObjectId>>(), "handles()"},
        {static_cast<KpIfcAggr*>(nullptr), to<Variants>(), kNo},
        {KpIfcVariant(), to<int>(), kNo},
        {KpIfcVariant(), to<Variants>(), kNo},
    };
    for (const auto& c : cases) {
        const std::string before = textOf(c.value);
        KpIfcVariant scratch;
        const KpIfcVariant* converted = c.value.convert(c.target, scratch);
        std::string target;
        for (const wchar_t* w = c.target.displayName(); *w; ++w) target += static_cast<char>(*w);
        EXPECT_EQ(converted ? textOf(*converted) : "refused", c.expected ? c.expected : "refused")
            << before << " to " << target;
        EXPECT_TRUE(converted || scratch.isEmpty()) << before << " to " << target;
        EXPECT_EQ(textOf(c.value), before);
    }
}

TEST(Variant, RefusedConversionsLeaveTheVariableAlone) {
    int whole = 3;
    double real = 3;
    KpAnsiString text("before");
    KpIfcArray<double> reals{3};
    EXPECT_FALSE(KpIfcVariant("x").get(whole));
    EXPECT_FALSE(KpIfcVariant("x").get(real));
    EXPECT_FALSE(KpIfcVariant(5).get(text));
    EXPECT_FALSE(KpIfcVariant(Variants{1, "x"}).get(reals));
    EXPECT_EQ(whole, 3);
    EXPECT_EQ(real, 3);
    EXPECT_EQ(text.view(), "before");
    EXPECT_EQ(reals, KpIfcArray<double>{3});
    EXPECT_TRUE(KpIfcVariant(static_cast<const char*>(nullptr)).get(text));
    EXPECT_TRUE(text.isUnset());
}

/// What a value shows to people and in files.
TEST(Variant, TextsOfValues) {
    const struct {
        KpIfcVariant value;
        const char* plain;
        const char* step;
    } cases[] = {
        {5, "5", "5"},
        {Consts::KpIntUnset, "", "$"},
        {7ul, "7", "7"},
        {0.1, "0.1", "0.1"},
        {1e300, "1.E300", "1.E300"},
        {Consts::KpRealUnset, "", "$"},
        {std::numeric_limits<double>::quiet_NaN(), "", "$"},
        {true, "true", ".T."},
        {KpIfcBoolean(false), "false", ".F."},
        {KpIfcBoolean(), "", "$"},
        {KpIfcLogical(KpIfcLogical::Unknown), "unknown", ".U."},
        {KpIfcLogical(), "", "$"},
        {"it's \xC3\x84", "it's \xC3\x84", "'it''s \\X2\\00C4\\X0\\'"},
        {"", "", "''"},
        {Consts::KpStringUnset, "", "$"},
        {static_cast<const char*>(nullptr), "", "$"},
        {KpAnsiString::unset(), "", "$"},
        {KpIfcGUID(), "", "$"},
        {KpIfcGUID("id"), "id", "'id'"},
        {unicode(""), "", "''"},
        {unicode("\xC3\x84"), "\xC3\x84", "'\\X2\\00C4\\X0\\'"},
        {KpDbObjectId(), "", "$"},
        {KpIfcEnumDescription{"METRE"}, "METRE", ".METRE."},
        {KpIfcEnumDescription{nullptr}, "", "$"},
        {KpIfcArray<int>{1}, nullptr, nullptr},
        {Variants{1}, nullptr, nullptr},
        {static_cast<KpIfcAggr*>(nullptr), nullptr, nullptr},
        {KpIfcVariant(), nullptr, nullptr},
    };
    for (const auto& c : cases) {
        for (const auto& [format, expected] : {std::pair(kFormatPlain, c.plain), std::pair(kFormatStep, c.step)}) {
            KcString text = unicode("before");
            EXPECT_EQ(c.value.toString(text, format), expected != nullptr) << textOf(c.value);
            EXPECT_STREQ(text.utf8Ptr(), expected ? expected : "before") << textOf(c.value);
        }
    }
}

/// Narrow texts are as files have them where the program says so; the host's texts are Unicode all the same.
TEST(Variant, TextsThatStayEncoded) {
    struct Encoded {
        Encoded() { settings().set_useUTF8(false); }
        ~Encoded() { settings().set_useUTF8(true); }
    } const encoded;
    const KpIfcVariant host = unicode("\xC3\x84 it's");
    const KpIfcVariant narrow = "\\X2\\00C4\\X0\\ it''s";
    KpAnsiString text;
    ASSERT_TRUE(host.get(text));
    KcString back;
    ASSERT_TRUE(KpIfcVariant(text).get(back));
    EXPECT_EQ(back, *host.getIf<KcString>());
    const char* chars = nullptr;
    EXPECT_FALSE(host.get(chars)); // there are no such characters to point at
    KcString shown;
    ASSERT_TRUE(KpIfcVariant(text).toString(shown));
    EXPECT_EQ(shown.view(), "\xC3\x84 it's");
    ASSERT_TRUE(KpIfcVariant(text).toString(shown, kFormatStep));
    EXPECT_EQ(shown.view(), "'\\X2\\00C4\\X0\\ it''s'");
    EXPECT_EQ(text.view(), *narrow.getIf<const char*>());
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
