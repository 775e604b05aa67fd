#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpArena.h>
#include <KpIfcCore/KpTextCase.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace KP_SDAI;
using namespace std::string_view_literals;

TEST(AnsiString, CopiesOutliveTheModelsMemory) {
    auto arena = std::make_unique<KpArena>();
    KpAnsiString assigned = "before";
    std::unique_ptr<KpAnsiString> copied;
    {
        KpAnsiString inModel;
        inModel.refer(KpAnsiString::place(*arena, "Außenwand"));
        EXPECT_EQ(inModel.length(), 10);
        copied = std::make_unique<KpAnsiString>(inModel);
        assigned = inModel;
        inModel = "changed"; // lets go of the model's memory, does not write to it
        EXPECT_EQ(assigned, "Außenwand");
    }
    arena.reset();
    EXPECT_EQ(*copied, "Außenwand");
    EXPECT_EQ(assigned, "Außenwand");
}

TEST(AnsiString, ReferringFreesWhatItOwned) {
    KpArena arena;
    KpAnsiString text("a text long enough for the heap"); // a leak shows under the address sanitizer
    text.refer(KpAnsiString::place(arena, "x"));
    EXPECT_EQ(text, "x");
    const KpAnsiString moved = std::move(text);
    EXPECT_EQ(moved, "x");
}

TEST(AnsiString, UnsetIsNotEmpty) {
    const KpAnsiString empty;
    const KpAnsiString unset = KpAnsiString::unset();
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_FALSE(empty.isUnset());
    EXPECT_TRUE(unset.isUnset());
    EXPECT_FALSE(unset.isEmpty());
    EXPECT_FALSE(empty == unset);
    EXPECT_EQ(static_cast<std::uint64_t>(unset.length()), Consts::KpStringUnsetLength);

    // Whoever spells the marker means it, wherever the bytes lie.
    const std::string bytes = Consts::KpStringUnset;
    KpAnsiString text = "set";
    text = Consts::KpStringUnset;
    EXPECT_TRUE(text.isUnset());
    text = "set";
    EXPECT_FALSE(text.isUnset());
    text = bytes.c_str();
    EXPECT_TRUE(text.isUnset());
    EXPECT_TRUE(KpAnsiString(text).isUnset());
    text = "";
    EXPECT_FALSE(text.isUnset());
}

TEST(AnsiString, TakesNullPointersAsEmpty) {
    KpAnsiString text(nullptr);
    EXPECT_STREQ(text.constStr(), "");
    text = "x";
    text = static_cast<const char*>(nullptr);
    EXPECT_TRUE(text.isEmpty());
    EXPECT_TRUE(KpAnsiString(nullptr, 5, code_page_id::utf8).isEmpty());
    EXPECT_EQ(text.compare(static_cast<const char*>(nullptr)), 0);
    EXPECT_GT(KpAnsiString("x").compareNoCase(nullptr), 0);
}

TEST(AnsiString, KeepsEmbeddedZeros) {
    const KpAnsiString text("a\0b"sv);
    ASSERT_EQ(text.length(), 3);
    KpAnsiString copy;
    copy = text;
    EXPECT_EQ(copy.view(), "a\0b"sv);
    EXPECT_EQ(copy.constStr()[3], '\0');
    EXPECT_FALSE(copy == KpAnsiString("a"));
    EXPECT_TRUE(KpAnsiString("a") < copy);
    EXPECT_EQ(KpAnsiString("a\0b", 3, code_page_id::latin1).length(), 3);
}

TEST(AnsiString, CanBeAssignedFromItself) {
    KpAnsiString text("a text long enough for the heap");
    const KpAnsiString& self = text;
    text = self;
    EXPECT_EQ(text, "a text long enough for the heap");
    text = text.constStr() + 7;
    EXPECT_EQ(text, "long enough for the heap");
    text = std::move(text);
    EXPECT_EQ(text, "long enough for the heap");
}

TEST(AnsiString, MovesLeaveAUsableString) {
    KpAnsiString from("from");
    KpAnsiString to(std::move(from));
    from = "again";
    EXPECT_EQ(from, "again");
    from = std::move(to);
    EXPECT_EQ(from, "from");
    std::vector<KpAnsiString> texts;
    for (int i = 0; i < 1000; ++i) texts.emplace_back(std::string_view(std::to_string(i)));
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(texts[static_cast<std::size_t>(i)], std::to_string(i).c_str());
}

TEST(AnsiString, ConvertsLatin1) {
    EXPECT_EQ(KpAnsiString("Gr\xFC\xDF"
                           "e!",
                           5, code_page_id::latin1),
              "Grüße");
    EXPECT_EQ(KpAnsiString("Grüße", 4, code_page_id::utf8), "Grü");
    EXPECT_TRUE(KpAnsiString("abc", 0, code_page_id::utf8).isEmpty());
    EXPECT_TRUE(KpAnsiString("abc", -1, code_page_id::latin1).isEmpty());
}

TEST(AnsiString, ComparesBytesAndAsciiCase) {
    EXPECT_LT(KpAnsiString("Wall").compare("wall"), 0);
    EXPECT_GT(KpAnsiString("wall").compare(KpAnsiString("Wall")), 0);
    EXPECT_EQ(KpAnsiString("IfcWall").compareNoCase("IFCWALL"), 0);
    EXPECT_LT(KpAnsiString("IfcWall").compareNoCase("IFCWALLSTANDARDCASE"), 0);
    EXPECT_NE(KpAnsiString("\xC3\xA4").compareNoCase("\xC3\x84"), 0); // only ASCII has letter case here
    EXPECT_TRUE(KpAnsiString("z") < KpAnsiString("\xC3\xA4"));        // bytes above 127 come last
    EXPECT_GT(KpAnsiString("\xC3\xA4").compareNoCase("z"), 0);
}

TEST(TextCase, IgnoresOnlyAsciiCase) {
    EXPECT_TRUE(equalNoCase("IfcWall...", 7, "IFCWALL"));
    EXPECT_FALSE(equalNoCase("IfcWall", 7, "IFCWAL"));
    EXPECT_FALSE(equalNoCase("IfcWal", 6, "IFCWALL"));
    EXPECT_FALSE(equalNoCase("@", 1, "`")); // neighbours of the letters, 32 apart as they are
    EXPECT_FALSE(equalNoCase("[", 1, "{"));
    EXPECT_TRUE(equalNoCase("", 0, ""));
}

TEST(Arena, PiecesAreAlignedDistinctAndStay) {
    KpArena arena;
    std::vector<std::pair<unsigned char*, std::size_t>> pieces;
    // Beyond the first blocks, with large pieces in between that get a block to themselves.
    for (std::size_t i = 1; i < 3000; ++i) {
        const std::size_t size = i % 100 == 0 ? i * 700 : i % 61;
        auto* piece = static_cast<unsigned char*>(arena.allocate(size));
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(piece) % 8, 0u);
        if (size) std::memset(piece, static_cast<int>(i % 251), size);
        pieces.emplace_back(piece, size);
    }
    for (std::size_t i = 0; i < pieces.size(); ++i)
        for (std::size_t k = 0; k < pieces[i].second; ++k) ASSERT_EQ(pieces[i].first[k], (i + 1) % 251) << i;
    std::size_t used = 0;
    for (const auto& piece : pieces) used += piece.second;
    EXPECT_GE(arena.reserved(), used);
    EXPECT_LT(arena.reserved(), used * 2);
}

} // namespace
