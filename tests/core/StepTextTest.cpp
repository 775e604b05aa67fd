#include <KpIfcCore/KpStepText.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
namespace text = KP_SDAI::KpStepText;

const auto nameOf = [](const auto& info) { return std::string(info.param.name); };

struct Encoding {
    const char* name;
    std::string_view utf8;
    std::string_view encoded;
};
class Encoded : public testing::TestWithParam<Encoding> {};

TEST_P(Encoded, IsAppended) {
    const Encoding& param = GetParam();
    std::string encoded = "before";
    text::encode(param.utf8, encoded);
    EXPECT_EQ(encoded, "before" + std::string(param.encoded));
    EXPECT_TRUE(text::isEncoded(encoded));
}

const Encoding kEncodings[] = {
    {"Empty", "", ""},
    {"Printable", " ~azAZ09#;,()", " ~azAZ09#;,()"},
    {"Apostrophes", "''", "''''"},
    {"Solidus", R"(C:\X\E9)", R"(C:\\X\\E9)"},
    {"OneRun", "aαβγb", R"(a\X2\03B103B203B3\X0\b)"},
    {"BeyondBasicPlane", "é\U0001D11E\U0010FFFDé", R"(\X2\00E9\X0\\X4\0001D11E0010FFFD\X0\\X2\00E9\X0\)"},
    {"ControlsAndDelete", "\t\n\x7F", R"(\X2\0009000A007F\X0\)"},
    {"EmbeddedZero", "a\0b"sv, R"(a\X2\0000\X0\b)"},
    {"LastOfBasicPlane", "\uFFFF\U00010000", R"(\X2\FFFF\X0\\X4\00010000\X0\)"},
    {"NotUtf8", "a\xFC-", R"(a\X2\00FC\X0\-)"},
    {"SurrogateBytes", "\xED\xA0\x80", R"(\X2\00ED00A00080\X0\)"},
    {"CutSequence", "a\xE2\x82", R"(a\X2\00E20082\X0\)"},
};
INSTANTIATE_TEST_SUITE_P(StepText, Encoded, testing::ValuesIn(kEncodings), nameOf);

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
        return;
    }
    static constexpr char32_t kLead[] = {0, 0xC0, 0xE0, 0xF0};
    const unsigned tail = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    out += static_cast<char>(kLead[tail] | c >> (6 * tail));
    for (unsigned i = tail; i-- > 0;) out += static_cast<char>(0x80 | ((c >> (6 * i)) & 0x3F));
}

TEST(StepText, EncodedRandomCodePointsDecodeToThemselves) {
    std::mt19937 random(1);
    static constexpr char32_t kCount[] = {0x80, 0x100, 0x10000, 0x110000};
    for (int round = 0; round < 200'000; ++round) {
        std::string utf8;
        for (auto length = random() % 12; length; --length) {
            const auto c = static_cast<char32_t>(random() % kCount[random() % 4]);
            appendUtf8(utf8, c >= 0xD800 && c < 0xE000 ? U'\\' : c);
        }
        std::string encoded;
        text::encode(utf8, encoded);
        for (const char c : encoded) ASSERT_TRUE(c >= ' ' && c <= '~') << encoded;
        ASSERT_TRUE(text::isEncoded(encoded)) << encoded;
        std::string back;
        unsigned issues = 0;
        text::decode(encoded, back, issues);
        ASSERT_EQ(back, utf8) << encoded;
        ASSERT_EQ(issues, 0u) << encoded;
    }
}

struct End {
    const char* name;
    std::string_view behindOpening;
    int end; ///< of the string, its closing apostrophe included; -1 where it does not end
};
class StringEnd : public testing::TestWithParam<End> {};

TEST_P(StringEnd, IsBehindTheClosingApostrophe) {
    const std::string_view bytes = GetParam().behindOpening;
    const char* end = text::stringEnd(bytes.data(), bytes.data() + bytes.size());
    EXPECT_EQ(end ? end - bytes.data() : -1, GetParam().end);
}

const End kEnds[] = {
    {"Empty", "',", 1},
    {"AtTheEndOfTheBytes", "abc'", 4},
    {"Missing", "abc", -1},
    {"MissingBehindDoubled", "abc''", -1},
    {"Doubled", "a''b',", 5},
    {"DoubledThenEnd", "''',", 3},
    {"DoubledSolidusThenEnd", R"(a\\',)", 4},
    {"LoneSolidusThenEnd", R"(C:\',)", 4},
    {"S", R"(a\S\'',)", 6},
    {"STakesASolidus", R"(\S\\',)", 5},
    {"SCutShort", R"(a\S\)", -1},
    {"EscapedSolidusThenS", R"(\\S\',)", 5},
    {"SBehindPage", R"(\PE\\S\'',)", 9},
    {"SBehindRun", R"(\X2\03B1\X0\\S\'',)", 17},
    {"SolidusBehindPage", R"(\PE\\\',)", 7},
    {"PathOfUnknownPage", R"(D:\PJ\\S\',)", 10},
    {"EscapedSolidusBehindRun", R"(\X2\00FC\X0\\\',)", 15},
    {"RunWithoutEnd", R"(\X2\00FC',)", 9},
    {"Comment", "/* ' */", 4},
};
INSTANTIATE_TEST_SUITE_P(StepText, StringEnd, testing::ValuesIn(kEnds), nameOf);

TEST(StepText, TellsWhatCanStandBetweenApostrophes) {
    for (const char* yes :
         {"", "abc", "it''s", R"(a\\)", R"(C:\temp\new)", R"(\S\')", R"(\X2\00FC\X0\)", R"(\PE\\S\')", R"(\S\\\\)"})
        EXPECT_TRUE(text::isEncoded(yes)) << yes;
    for (const char* no : {"'", "it's", "a'", R"(a\)", R"(a\\\)", R"(\S\)", R"(\')", R"(\\S\')", R"(\X2\00FC\X0\')"})
        EXPECT_FALSE(text::isEncoded(no)) << no;
}

/// Random texts of what matters to directives.
std::string randomText(std::mt19937& random) {
    static constexpr std::string_view kPieces[] = {"\\", "'",    "S",     "P",      "X",      "E",
                                                   "0",  "2",    "4",     "J",      "\xC3",   "\xA9",
                                                   "''", "\\\\", "\\S\\", "\\X2\\", "\\X0\\", "\\PE\\"};
    std::string out;
    for (auto length = random() % 12; length; --length) out += kPieces[random() % std::size(kPieces)];
    return out;
}

TEST(StepText, AnEncodedTextEndsAtItsClosingApostrophe) {
    std::mt19937 random(2);
    int encodedTexts = 0;
    for (int round = 0; round < 300'000; ++round) {
        const std::string body = randomText(random);
        if (!text::isEncoded(body)) continue;
        ++encodedTexts;
        const std::string field = body + "',";
        ASSERT_EQ(text::stringEnd(field.data(), field.data() + field.size()), field.data() + body.size() + 1) << body;
    }
    EXPECT_GT(encodedTexts, 10'000);
}

TEST(StepText, WhateverIsDecodedSurvivesBeingWritten) {
    std::mt19937 random(3);
    for (int round = 0; round < 300'000; ++round) {
        const std::string body = randomText(random);
        const std::string utf8 = text::decode(body);
        std::string encoded;
        text::encode(utf8, encoded);
        ASSERT_EQ(text::decode(encoded), utf8) << body;
    }
}

} // namespace
