#include "VariantText.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcSettings.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

namespace {

using namespace KP_SDAI;
using namespace variant_text;

TEST(VariantConversion, BetweenTheTypesOfTheRuntime) {
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

TEST(VariantConversion, RefusedLeavesTheVariableAlone) {
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
TEST(VariantConversion, TextsOfValues) {
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
TEST(VariantConversion, TextsThatStayEncoded) {
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

} // namespace
