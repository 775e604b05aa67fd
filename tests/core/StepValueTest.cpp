#include <KpIfcCore/KpStepValue.h>

#include <gtest/gtest.h>

#include <string>

using KP_SDAI::KpStepValue;
using Kind = KpStepValue::Kind;

namespace {

struct Case {
    const char* text;
    Kind kind;
    const char* spelled;
};

TEST(StepValueTest, ReadsOneValueAndSpellsIt) {
    const Case cases[] = {
        {"$", Kind::unset, "$"},
        {" * ", Kind::derived, "*"},
        {"'it''s \\X\\E9'", Kind::string, "'it''s \\X2\\00E9\\X0\\'"},
        {"''", Kind::string, "''"},
        {"-1.5E-07", Kind::number, "-1.5E-07"},
        {"+7", Kind::number, "+7"},
        {".ELEMENT.", Kind::enumeration, ".ELEMENT."},
        {"\"0FF\"", Kind::binary, "\"0FF\""},
        {"#12", Kind::reference, "#12"},
        {"()", Kind::list, "()"},
        {"( 1 ,/* two */'a,)' , ((#3)) )", Kind::list, "(1,'a,)',((#3)))"},
        {"IFCLABEL ( 'x' )", Kind::typed, "IFCLABEL('x')"},
    };
    for (const Case& test : cases) {
        KpStepValue value;
        ASSERT_TRUE(KpStepValue::read(test.text, value)) << test.text;
        EXPECT_EQ(value.kind, test.kind) << test.text;
        EXPECT_EQ(value.spelled(), test.spelled);
    }
}

TEST(StepValueTest, RefusesWhatIsNotOneValue) {
    for (const std::string text :
         {"",   " ",  "/* */", "1,2",  "1 2",  "$$",   "'a", "'a'b",     "#",         "#x",   "-",
          ".5", ".A", "\"0F",  "(1,2", "(1,)", "(,1)", "1)", "IFCLABEL", "IFCLABEL(", "/* 1", "1 /*"}) {
        KpStepValue value;
        EXPECT_FALSE(KpStepValue::read(text, value)) << text;
    }
    KpStepValue value;
    EXPECT_FALSE(KpStepValue::read(std::string(100'000, '(') + std::string(100'000, ')'), value));
    EXPECT_FALSE(KpStepValue::read(std::string("1\0002", 3), value));
}

} // namespace
