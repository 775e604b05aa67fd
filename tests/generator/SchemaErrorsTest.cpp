#include "SchemaFiles.h"

namespace {

using namespace kpifcgen::facts;

class SchemaErrors : public testing::TestWithParam<ErrorCase> {};

TEST_P(SchemaErrors, AreReportedWithTheirPlace) {
    Diagnostics diagnostics;
    const auto schema = load(GetParam().text, diagnostics);
    EXPECT_FALSE(schema.has_value());
    EXPECT_EQ(format("f", diagnostics), GetParam().errors);
}

constexpr ErrorCase syntaxCases[] = {
    {"Empty", "", "f:1:1: expected 'schema', found the end of the file\n"},
    {"NoSchemaStatement", "type A = real\ntype B = real\n", "f:1:1: expected 'schema', found 'type'\n"},
    {"SecondSchemaStatement", "schema S 1\nschema T 1\n",
     "f:2:1: expected 'type', 'enum', 'select', 'entity' or 'abstract', found 'schema'\n"},
    {"NoVersion", "schema S\n", "f:1:9: expected a version number, found the end of the line\n"},
    {"UnknownStatementOnce", "schema S 1\nentty E\n  A: real\n  B: real\n",
     "f:2:1: expected 'type', 'enum', 'select', 'entity' or 'abstract', found 'entty'\n"},
    {"StrangeCharacters", "schema S 1\ntype A = re\xC3\xA4l\ntype B = real;\n",
     "f:2:12: unexpected character 0xC3\nf:3:14: unexpected character ';'\n"},
    {"IndentedBelowType", "schema S 1\ntype A = real\n  B: real\n",
     "f:3:3: expected a statement that starts in column 1, found 'B'\n"},
    {"IndentedFirst", "  A: real\nschema S 1\n", "f:1:3: expected 'schema', found 'A'\n"},
    {"NoTypeAfterEquals", "schema S 1\ntype A =\n", "f:2:9: expected a type, found the end of the line\n"},
    {"NoEquals", "schema S 1\ntype A real\n", "f:2:8: expected '=' after type name 'A', found 'real'\n"},
    {"TextAfterType", "schema S 1\ntype A = real real\n", "f:2:15: expected end of line, found 'real'\n"},
    {"ReservedName", "schema S 1\ntype real = real\n", "f:2:6: expected a type name, found the reserved word 'real'\n"},
    {"WidthOfReal", "schema S 1\ntype A = real(3)\n", "f:2:14: a width is for string and binary only, not for real\n"},
    {"WidthZero", "schema S 1\ntype A = string(0)\n", "f:2:16: a width must not be 0\n"},
    {"HugeNumber", "schema S 1\ntype A = string(99999999999)\n", "f:2:17: number 99999999999 is too large\n"},
    {"EmptyEnumeration", "schema S 1\nenum E\nselect T\n",
     "f:2:6: enumeration 'E' has no literals\nf:3:8: select 'T' has no members\n"},
    {"BadLiteral", "schema S 1\nenum E\n  A 1\n", "f:3:5: expected a literal, found '1'\n"},
    {"AbstractWhat", "schema S 1\nabstract type E\n", "f:2:10: expected 'entity' after 'abstract', found 'type'\n"},
    {"NoSupertypeStillReadsAttributes", "schema S 1\nentity E :\n  A real\n",
     "f:2:11: expected a supertype, found the end of the line\n"
     "f:3:5: expected ':' after attribute name 'A', found 'real'\n"},
    {"AggregationBounds",
     "schema S 1\nentity E\n  A: list of real\n  B: set [1:] of real\n  C: set [3:2] of real\n  D: array [1:?] of "
     "real\n",
     "f:3:11: expected '[', found 'of'\n"
     "f:4:13: expected the upper bound or '?', found ']'\n"
     "f:5:11: bounds [3:2] are the wrong way round\n"
     "f:6:6: an array needs an upper bound\n"},
    {"InverseForms",
     "schema S 1\nentity E\n  inverse A: list [0:1] of E for B\n  inverse C: E\n  inverse D: real for E\n",
     "f:3:14: expected an entity, 'set' or 'bag', found 'list'\n"
     "f:4:15: expected 'for' and the attribute that is inverted, found the end of the line\n"
     "f:5:14: expected an entity, found the reserved word 'real'\n"},
    {"DerivedAndUniqueForms", "schema S 1\nentity E\n  derive A.: real\n  unique: A\n  unique U: A,\n",
     "f:3:12: expected the name of the redeclared attribute, found ':'\n"
     "f:4:9: expected a rule label, found ':'\n"
     "f:5:15: expected an attribute name, found the end of the line\n"},
};

constexpr ErrorCase linkCases[] = {
    {"UnknownNames", "schema S 1\ntype A = X\nselect B\n  Y a\nentity C : Z\n  D: list [0:1] of W\n  E: V\n",
     "f:2:10: unknown name 'X'\n"
     "f:4:3: unknown name 'Y'\n"
     "f:4:5: unknown name 'a'; did you mean 'A'?\n"
     "f:5:12: unknown name 'Z'\n"
     "f:6:20: unknown name 'W'\n"
     "f:7:6: unknown name 'V'\n"},
    {"DuplicateNames", "schema S 1\ntype A = real\nentity a\nenum A\n  X Y x\nselect B\n  A A\n",
     "f:3:8: name 'a' is already declared as 'A' in line 2\n"
     "f:4:6: name 'A' is already declared in line 2\n"
     "f:5:7: literal 'x' is already listed as 'X' in line 5\n"
     "f:7:5: member 'A' is already listed in line 7\n"},
    {"WrongKinds", "schema S 1\ntype A = E\nentity E : A\n  inverse I: A for B\n",
     "f:2:10: defined type 'A' must stand for a simple type, a defined type or an aggregation, not for 'E'\n"
     "f:3:12: a supertype must be an entity, 'A' is a defined type\n"
     "f:4:14: the target of an inverse attribute must be an entity, 'A' is a defined type\n"},
    {"SupertypeCycle", "schema S 1\nentity A : B\nentity B : C\nentity C : B\nentity D : D\n",
     "f:3:8: 'B' is its own supertype: B -> C -> B\nf:5:8: 'D' is its own supertype: D -> D\n"},
    {"DefinedTypeCycle", "schema S 1\ntype A = list [0:1] of B\ntype B = A\n",
     "f:2:6: 'A' is defined by itself: A -> B -> A\n"},
    {"SelectCycle", "schema S 1\ntype T = real\nselect A\n  T B\nselect B\n  T A B\n",
     "f:3:8: 'A' is a member of itself: A -> B -> A\nf:5:8: 'B' is a member of itself: B -> B\n"},
    {"DuplicateAttributes",
     "schema S 1\nentity A\n  X: real\n  x: real\n  derive X: real\nentity B : A\n  X: real\n  inverse X: B for Y\n",
     "f:4:3: attribute 'x' is already declared as 'X' in line 3\n"
     "f:5:10: attribute 'X' is already declared in line 3\n"
     "f:7:3: attribute 'X' is already declared in supertype 'A'\n"
     "f:8:11: attribute 'X' is already declared in line 7\n"
     "f:8:20: entity 'B' has no explicit attribute 'Y'\n"},
    {"Redeclarations",
     "schema S 1\nentity A\n  X: real\n  derive Y: real\nentity B : A\n  derive A.Z: real\n  derive A.Y: real\n"
     "  derive C.X: real\nentity C\n  derive C.X: real\n",
     "f:6:12: entity 'A' declares no explicit attribute 'Z'\n"
     "f:7:12: entity 'A' declares no explicit attribute 'Y'\n"
     "f:8:10: 'C' is no supertype of 'B'\n"
     "f:10:10: 'C' is no supertype of 'C'\n"},
    {"InvertedAttributes",
     "schema S 1\nentity A\n  inverse I: B for X\n  inverse J: B for Y\n  inverse K: B for I\nentity B\n  Y: C\n"
     "  derive X: A\nentity C\n",
     "f:3:20: entity 'B' has no explicit attribute 'X'\n"
     "f:4:20: attribute 'B.Y' cannot refer to a 'A'\n"
     "f:5:20: entity 'B' has no explicit attribute 'I'\n"},
    {"UniqueRules", "schema S 1\nentity A\n  X: real\n  unique U: Y\n  unique U: X\n",
     "f:4:13: entity 'A' has no attribute 'Y'\nf:5:10: rule 'U' is already declared in line 4\n"},
};

INSTANTIATE_TEST_SUITE_P(Syntax, SchemaErrors, testing::ValuesIn(syntaxCases), caseName);
INSTANTIATE_TEST_SUITE_P(Links, SchemaErrors, testing::ValuesIn(linkCases), caseName);

} // namespace
