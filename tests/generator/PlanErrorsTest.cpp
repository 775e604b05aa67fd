#include "SchemaFiles.h"
#include "plan/ModulePlan.h"

namespace {

using namespace kpifcgen;

class PlanErrors : public testing::TestWithParam<ErrorCase> {};

TEST_P(PlanErrors, NameTheDeclaration) {
    facts::Diagnostics diagnostics;
    EXPECT_FALSE(plan::planModule(loadSound(GetParam().text), "f", diagnostics).has_value());
    EXPECT_EQ(facts::format("f", diagnostics), GetParam().errors);
}

constexpr ErrorCase cases[] = {
    {"TypesWithoutClass",
     "schema S 1\nenum E\n  A\nentity X\n  B: bag [0:?] of real\n  N: set [0:?] of list [1:2] of real\n"
     "  F: list [0:?] of E\n  L: list [0:?] of logical\n  G: real\n",
     "f:5:3: attribute 'B': there is no class for a 'bag [0:?] of real'\n"
     "f:6:3: attribute 'N': there is no class for a 'set [0:?] of list [1:2] of real'\n"
     "f:7:3: attribute 'F': there is no class for a 'list [0:?] of E'\n"
     "f:8:3: attribute 'L': there is no class for a 'list [0:?] of logical'\n"},
    {"BagsInTheDictionary",
     "schema S 1\nentity X\n  R: Y\n  derive B: bag [0:?] of real\nentity Y\n  inverse I: bag [0:?] of X for R\n",
     "f:4:10: attribute 'B': the dictionary has no class for a 'bag [0:?] of real'\n"
     "f:6:11: attribute 'I': the dictionary has no class for a 'bag [0:?] of X'\n"},
    {"SelectOfBinary", "schema S 1\ntype B = binary(32)\nselect X\n  B\n",
     "f:3:8: select 'X': there is no code for a value of 'B'\n"},
    {"HeadersOfTheModule", "schema S 1\nentity Types\nenum s\n  A\n",
     "f:2:8: the module has a header of its own named 'Types'\n"
     "f:3:6: the module has a header of its own named 's'\n"},
    {"SameGeneratedName", "schema S 1\nenum A\n  B_C\nenum A_B\n  C\nentity class\nentity class_\n",
     "f:4:6: the generated name 'kA_B_C' of 'A_B' is already one of 'A'\n"
     "f:7:8: the generated name 'class_' of 'class_' is already one of 'class'\n"},
};

INSTANTIATE_TEST_SUITE_P(Schemas, PlanErrors, testing::ValuesIn(cases), caseName);

} // namespace
