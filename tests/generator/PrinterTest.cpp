#include "emit/Printer.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using kpifcgen::emit::print;
using kpifcgen::emit::PrinterError;

TEST(Printer, FillsHolesAndDropsTheFirstLineFeed) {
    EXPECT_EQ(print("\nclass $name$ : $base$ {\n", {{"name", "A"}, {"base", "B"}}), "class A : B {\n");
    EXPECT_EQ(print("$a$$a$ costs $$5", {{"a", "x"}}), "xx costs $5");
    EXPECT_EQ(print("\n\na", {}), "\na");
}

TEST(Printer, NeverReadsHolesInTexts) {
    EXPECT_EQ(print("$a$ $b$", {{"a", "$b$"}, {"b", "$"}}), "$b$ $");
}

TEST(Printer, KeepsTheIndentationOfAHole) {
    EXPECT_EQ(print("{\n    $body$\n}\n", {{"body", "a;\n\n  b;\n"}}), "{\n    a;\n\n      b;\n}\n");
    EXPECT_EQ(print("  f($arguments$);\n", {{"arguments", "a,\n  b"}}), "  f(a,\n    b);\n");
    EXPECT_EQ(print("  $body$", {{"body", "a\n"}}), "  a");
}

TEST(Printer, RemovesTheLineOfAnEmptyBlock) {
    EXPECT_EQ(print("{\n    $body$\n}\n", {{"body", ""}}), "{\n}\n");
    EXPECT_EQ(print("a $body$\n", {{"body", ""}}), "a \n");
    EXPECT_EQ(print("$a$ $b$\n", {{"a", ""}, {"b", ""}}), " \n");
}

TEST(Printer, RefusesWhatDoesNotFit) {
    const auto refused = [](std::string_view skeleton, std::initializer_list<kpifcgen::emit::Value> values) {
        try {
            return print(skeleton, values);
        } catch (const PrinterError& error) {
            return std::string(error.what());
        }
    };
    EXPECT_EQ(refused("a $b$", {}), "no text is given for the hole 'b' in the skeleton:\na $b$");
    EXPECT_EQ(refused("  $b$\n", {}), "no text is given for the hole 'b' in the skeleton:\n  $b$\n");
    EXPECT_EQ(refused("a", {{"b", "x"}}), "no hole is named 'b' in the skeleton:\na");
    EXPECT_EQ(refused("$b$", {{"b", ""}, {"b", ""}}), "two texts are given for the hole 'b' in the skeleton:\n$b$");
    EXPECT_EQ(refused("a $b\nc$", {{"b", ""}}), "a hole does not end '$b' in the skeleton:\na $b\nc$");
}

} // namespace
