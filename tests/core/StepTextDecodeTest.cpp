#include <KpIfcCore/KpStepText.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
namespace text = KP_SDAI::KpStepText;

struct Decoding {
    const char* name;
    std::string_view encoded;
    std::string_view utf8;
    unsigned issues;
};

class Decoded : public testing::TestWithParam<Decoding> {};

TEST_P(Decoded, IsUtf8WithIssues) {
    const Decoding& param = GetParam();
    std::string utf8 = "what was there before";
    unsigned issues = 0;
    text::decode(param.encoded, utf8, issues);
    EXPECT_EQ(utf8, param.utf8);
    EXPECT_EQ(issues, param.issues);
    EXPECT_EQ(text::decode(param.encoded), param.utf8);
}

const Decoding kPlain[] = {
    {"Empty", "", "", 0},
    {"Ascii", "IfcWall #1=(,);/*~", "IfcWall #1=(,);/*~", 0},
    {"DoubledApostrophe", "it''s", "it's", 0},
    {"DoubledSolidus", R"(a\\b\\)", R"(a\b\)", 0},
    {"FourSolidi", R"(\\\\srv\\share)", R"(\\srv\share)", 0},
    {"Controls", "a\r\nb\tc", "a\r\nb\tc", text::kLineEnd},
    {"EmbeddedZero", "a\0b"sv, "a\0b"sv, text::kControl},
};
const Decoding kDirectives[] = {
    {"S", R"(\S\Drger)", "Ärger", 0},
    {"SApostrophe", R"(abc\S\'def)", "abc§def", 0},
    {"SSolidus", R"(\S\\x)", "Üx", 0},
    {"SBlank", R"(a\S\ b)", "a\u00A0b", 0},
    {"X", R"(M\X\E9tal)", "Métal", 0},
    {"XControl", R"(\X\0A\X\8E)", "\n\u008E", 0},
    {"XLowerCase", R"(\X\e9)", "é", text::kLowerHex},
    {"X2", R"(\X2\03B103B203B3\X0\)", "αβγ", 0},
    {"X2LowerCase", R"(\X2\00fc\X0\)", "ü", text::kLowerHex},
    {"X2Empty", R"(a\X2\\X0\b)", "ab", text::kEmptyRun},
    {"X2LineFeed", R"(a\X2\000A\X0\b)", "a\nb", 0},
    {"X4", R"(\X4\0001D11E\X0\)", "\U0001D11E", 0},
    {"X4OfBasicPlane", R"(\X4\000000E90000263A\X0\)", "é☺", 0},
    {"X4Empty", R"(\X4\\X0\)", "", text::kEmptyRun},
    {"X4Last", R"(\X4\0010FFFF\X0\)", "\U0010FFFF", 0},
    {"PageLasts", R"(\PE\\S\*\S\U\S\b)", "Њет", 0},
    {"PageChanges", R"(\PG\\S\a\PB\\S\a\PA\\S\a)", "αáá", 0},
    {"PageDoesNotTouchX", R"(\PE\\X\E9)", "é", 0},
};
const Decoding kTraps[] = {
    {"PlainSBetweenRuns", R"(\X2\3010\X0\S\X2\3011\X0\)", "【S】", 0},
    {"EscapedSolidusBeforeX2", R"(\\X2\30B3\X0\)", R"(\X2\30B3\X0\)", text::kBadDirective},
    {"EscapedSolidusBeforeS", R"(\\S\\D)", R"(\S\D)", 0},
    {"RunThenEscapedSolidus", R"(\X2\00FC\X0\\\)", R"(ü\)", 0},
    {"DirectivesTouch", R"(\X\E9\X2\00FC\X0\\X\E9\\)", R"(éüé\)", 0},
};
const Decoding kFaults[] = {
    {"WindowsPath", R"(C:\temp\new)", R"(C:\temp\new)", text::kBadDirective},
    {"LoneSolidusAtEnd", R"(a\)", R"(a\)", text::kBadDirective},
    {"SCutShort", R"(a\S\)", R"(a\S\)", text::kBadDirective},
    {"XCutShort", R"(a\X\E)", R"(a\X\E)", text::kBadDirective},
    {"XNoHex", R"(C:\X\house)", R"(C:\X\house)", text::kBadDirective},
    {"X2WithoutEnd", R"(a\X2\00FC)", R"(a\X2\00FC)", text::kBadDirective},
    {"X2OddDigits", R"(\X2\00FC0\X0\)", R"(\X2\00FC0\X0\)", text::kBadDirective},
    {"X2ForeignInside", R"(\X2\00FC 00FC\X0\)", R"(\X2\00FC 00FC\X0\)", text::kBadDirective},
    {"X4FourDigits", R"(\X4\00FC\X0\)", R"(\X4\00FC\X0\)", text::kBadDirective},
    {"X0Alone", R"(\X0\)", R"(\X0\)", text::kBadDirective},
    {"PageUnknown", R"(\PJ\x)", R"(\PJ\x)", text::kBadDirective},
    {"LowerCaseDirective", R"(\x\e9)", R"(\x\e9)", text::kBadDirective},
    {"LoneApostrophe", "it's", "it's", 0},
    {"SurrogatePair", R"(\X2\D834DD1E\X0\)", "\U0001D11E", text::kSurrogates},
    {"HighAlone", R"(\X2\D834\X0\a)", "\uFFFDa", text::kBadCodePoint},
    {"HighBeforeOther", R"(\X2\D83400FC\X0\)", "\uFFFDü", text::kBadCodePoint},
    {"HighHighLow", R"(\X2\D834D834DD1E\X0\)", "\uFFFD\U0001D11E", text::kBadCodePoint | text::kSurrogates},
    {"LowAlone", R"(\X2\DD1E00FC\X0\)", "\uFFFDü", text::kBadCodePoint},
    {"BeyondUnicode", R"(\X4\00110000\X0\)", "\uFFFD", text::kBadCodePoint},
    {"FarBeyondUnicode", R"(\X4\FFFFFFFF\X0\)", "\uFFFD", text::kBadCodePoint},
    {"SurrogateInX4", R"(\X4\0000D834\X0\)", "\uFFFD", text::kBadCodePoint},
};
const Decoding kRaw[] = {
    {"Utf8", "Gr\xC3\xBC\xC3\x9F", "Grüß", text::kRawUtf8},
    {"Utf8FourBytes", "\xF0\x9D\x84\x9E", "\U0001D11E", text::kRawUtf8},
    {"Latin1", "Gr\xFC\xDF", "Grüß", text::kRawLatin1},
    {"Latin1CutSequence", "a\xC3", "aÃ", text::kRawLatin1},
    {"OverlongIsNotUtf8", "\xC0\xAF", "\u00C0\u00AF", text::kRawLatin1},
    {"Overlong3IsNotUtf8", "\xE0\x80\xAF", "\u00E0\u0080\u00AF", text::kRawLatin1},
    {"SurrogateIsNotUtf8", "\xED\xA0\x80", "\u00ED\u00A0\u0080", text::kRawLatin1},
    {"BeyondUnicodeIsNotUtf8", "\xF4\x90\x80\x80", "\u00F4\u0090\u0080\u0080", text::kRawLatin1},
    {"BesideDirectives", "\xC3\xBC\\X\\E9", "üé", text::kRawUtf8},
    {"BehindS", "\\S\\\xC3\xA9", "\\S\\é", text::kRawUtf8 | text::kBadDirective},
};

const auto nameOf = [](const auto& info) { return std::string(info.param.name); };
INSTANTIATE_TEST_SUITE_P(Plain, Decoded, testing::ValuesIn(kPlain), nameOf);
INSTANTIATE_TEST_SUITE_P(Directive, Decoded, testing::ValuesIn(kDirectives), nameOf);
INSTANTIATE_TEST_SUITE_P(Trap, Decoded, testing::ValuesIn(kTraps), nameOf);
INSTANTIATE_TEST_SUITE_P(Fault, Decoded, testing::ValuesIn(kFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Raw, Decoded, testing::ValuesIn(kRaw), nameOf);

/// What \S\c gives on a page for c from ' ' to '~': bytes A0 to FE of ISO 8859-1 to -9; U+FFFD where none is assigned.
struct Page {
    char letter;
    std::string_view utf8;
};
const Page kPages[] = {
    {'A', "\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞßàáâãäåæçèéêëìíîïðñòóôõ"
          "ö÷øùúûüýþ"},
    {'B', "\u00A0Ą˘Ł¤ĽŚ§¨ŠŞŤŹ\u00ADŽŻ°ą˛ł´ľśˇ¸šşťź˝žżŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢßŕáâăäĺćçčéęëěíîďđńňóôő"
          "ö÷řůúűüýţ"},
    {'C', "\u00A0Ħ˘£¤\uFFFDĤ§¨İŞĞĴ\u00AD\uFFFDŻ°ħ²³´µĥ·¸ışğĵ½\uFFFDżÀÁÂ\uFFFDÄĊĈÇÈÉÊËÌÍÎÏ\uFFFDÑÒÓÔĠÖ×ĜÙÚÛÜ"
          "ŬŜßàáâ\uFFFDäċĉçèéêëìíîï\uFFFDñòóôġö÷ĝùúûüŭŝ"},
    {'D', "\u00A0ĄĸŖ¤ĨĻ§¨ŠĒĢŦ\u00ADŽ¯°ą˛ŗ´ĩļˇ¸šēģŧŊžŋĀÁÂÃÄÅÆĮČÉĘËĖÍÎĪĐŅŌĶÔÕÖ×ØŲÚÛÜŨŪßāáâãäåæįčéęëėíîīđņōķôõ"
          "ö÷øųúûüũū"},
    {'E', "\u00A0ЁЂЃЄЅІЇЈЉЊЋЌ\u00ADЎЏАБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯабвгдежзийклмнопрстуфхцчшщъыьэюя№ёђѓєѕ"
          "іїјљњћќ§ў"},
    {'F', "\u00A0\uFFFD\uFFFD\uFFFD¤\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\u060C\u00AD\uFFFD\uFFFD"
          "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\u061B\uFFFD\uFFFD\uFFFD\u061F"
          "\uFFFD\u0621\u0622\u0623\u0624\u0625\u0626\u0627\u0628\u0629\u062A\u062B\u062C\u062D\u062E\u062F"
          "\u0630\u0631\u0632\u0633\u0634\u0635\u0636\u0637\u0638\u0639\u063A\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"
          "\u0640\u0641\u0642\u0643\u0644\u0645\u0646\u0647\u0648\u0649\u064A\u064B\u064C\u064D\u064E\u064F"
          "\u0650\u0651\u0652\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
    {'G', "\u00A0‘’£€₯¦§¨©ͺ«¬\u00AD\uFFFD―°±²³΄΅Ά·ΈΉΊ»Ό½ΎΏΐΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡ\uFFFDΣΤΥΦΧΨΩΪΫάέήίΰαβγδεζηθικλ"
          "μνξοπρςστυφχψωϊϋόύώ"},
    {'H', "\u00A0\uFFFD¢£¤¥¦§¨©×«¬\u00AD®¯°±²³´µ¶·¸¹÷»¼½¾\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"
          "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"
          "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD‗\u05D0\u05D1\u05D2\u05D3\u05D4\u05D5\u05D6"
          "\u05D7\u05D8\u05D9\u05DA\u05DB\u05DC\u05DD\u05DE\u05DF\u05E0\u05E1\u05E2\u05E3\u05E4\u05E5\u05E6"
          "\u05E7\u05E8\u05E9\u05EA\uFFFD\uFFFD\u200E\u200F"},
    {'I', "\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏĞÑÒÓÔÕÖ×ØÙÚÛÜİŞßàáâãäåæçèéêëìíîïğñòóôõ"
          "ö÷øùúûüış"},
};

TEST(StepText, DecodesTheUpperHalfOfEveryPage) {
    for (const Page& page : kPages) {
        std::string encoded = {'\\', 'P', page.letter, '\\'};
        for (char c = ' '; c <= '~'; ++c) encoded += "\\S\\"s + c;
        EXPECT_EQ(text::decode(encoded), page.utf8) << "page " << page.letter;
    }
}

} // namespace
