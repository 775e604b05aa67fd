#include "SmallModel.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

using Json = nlohmann::ordered_json;

namespace {

struct Case {
    const char* name;
    const char* target;
    const char* value;
    const char* record;      ///< of the target, as it is written then
    const char* told = "";   ///< on standard error, beside what was done
    const char* got = value; ///< what get prints then
};

class SetTest : public testing::TestWithParam<Case> {};

TEST_P(SetTest, ChangesOneRecord) {
    const WorkFolder folder;
    folder.write("model.ifc", smallModel());
    const Case& test = GetParam();
    const std::string assignment = std::string(test.target) + '=' + test.value;
    const Outcome outcome = folder.run("kpifc set model.ifc " + ::quoted(assignment) + " -o new.ifc");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find("model.ifc -> new.ifc: 19 instances, 1 attribute set\n"), std::string::npos)
        << outcome.err;
    EXPECT_NE(outcome.err.find(test.told), std::string::npos) << outcome.err;
    EXPECT_EQ(linesOf(outcome.err).size(), *test.told ? 2u : 1u) << outcome.err;
    EXPECT_EQ(folder.run("kpifc get new.ifc " + ::quoted(test.target)).out, std::string(test.got) + '\n');

    folder.run("kpifc convert model.ifc -o converted.ifc");
    const std::string name = std::string(test.record).substr(0, std::string(test.record).find('=') + 1);
    std::string expected;
    for (const std::string& line : linesOf(contentOf(folder.path("converted.ifc")))) {
        expected += (line.starts_with(name) ? test.record : line) + '\n';
    }
    EXPECT_EQ(contentOf(folder.path("new.ifc")), expected);
}

const Case kCases[] = {
    {"Text", "#1.FamilyName", "'Meier'", "#1=IFCPERSON('007','Meier',$,('A','B'),$,$,(#3),$);"},
    {"TextWithEveryDelimiter", "#1.FamilyName", "'a=b, (c'';.#1$'",
     "#1=IFCPERSON('007','a=b, (c'';.#1$',$,('A','B'),$,$,(#3),$);"},
    {"EmptyText", "#1.FamilyName", "''", "#1=IFCPERSON('007','',$,('A','B'),$,$,(#3),$);"},
    {"EncodedText", "#3.Description", "'\\X2\\03B1\\X0\\\\X\\E9\\\\\\X\\00'",
     "#3=IFCACTORROLE(.ARCHITECT.,$,'\\X2\\03B100E9\\X0\\\\\\\\X2\\0000\\X0\\');", "",
     "'\\X2\\03B100E9\\X0\\\\\\\\X2\\0000\\X0\\'"},
    {"TextFromTheKeyboard", "#3.Description", "'Zoë'", "#3=IFCACTORROLE(.ARCHITECT.,$,'Zo\\X2\\00EB\\X0\\');", "",
     "'Zo\\X2\\00EB\\X0\\'"},
    {"Unset", "#1.FamilyName", "$", "#1=IFCPERSON('007',$,$,('A','B'),$,$,(#3),$);"},
    {"GlobalId", "23emzg5$r6fA3IIhCrx3ZR.Name", "'Plot'",
     "#10=IFCSITE('23emzg5$r6fA3IIhCrx3ZR',#11,'Plot',$,$,$,$,$,.ELEMENT.,(47,30,15,250000),$,440.,$,$);"},
    {"NewGlobalId", "#10.globalid", "'0000000000000000000000'",
     "#10=IFCSITE('0000000000000000000000',#11,'Site',$,$,$,$,$,.ELEMENT.,(47,30,15,250000),$,440.,$,$);"},
    {"Real", "#10.RefElevation", "-1.25E-07",
     "#10=IFCSITE('23emzg5$r6fA3IIhCrx3ZR',#11,'Site',$,$,$,$,$,.ELEMENT.,(47,30,15,250000),$,-1.25E-07,$,$);"},
    {"IntegerForReal", "#10.RefElevation", " +7 ",
     "#10=IFCSITE('23emzg5$r6fA3IIhCrx3ZR',#11,'Site',$,$,$,$,$,.ELEMENT.,(47,30,15,250000),$,7.,$,$);", "", "7."},
    {"Integer", "#8.MassExponent", "-3", "#8=IFCDIMENSIONALEXPONENTS(1,-3,0,0,0,0,0);"},
    {"Boolean", "#17.Sizeable", ".T.",
     "#17=IFCDOORSTYLE('0xGO74I1L2sOBnKbLTH2I2',#11,$,$,$,$,$,$,.NOTDEFINED.,.NOTDEFINED.,.T.,.T.);"},
    {"Logical", "#9.LayerOn", ".U.", "#9=IFCPRESENTATIONLAYERWITHSTYLE('a',$,(#4),$,.U.,.F.,.U.,(#18));"},
    {"LiteralInAnyLetterCase", "#3.Role", ".supplier.", "#3=IFCACTORROLE(.SUPPLIER.,$,$);", "", ".SUPPLIER."},
    {"Reference", "#15.Points", "(#16,#4,#16)", "#15=IFCPOLYLINE((#16,#4,#16));"},
    {"SubtypeOfTheDeclaredEntity", "#6.Unit", "#5", "#6=IFCPROPERTYSINGLEVALUE('P',$,IFCLABEL('x'),#5);"},
    {"Reals", "#4.Coordinates", "( 1 , /* y */ 2.5 )", "#4=IFCCARTESIANPOINT((1.,2.5));", "", "(1.,2.5)"},
    {"Texts", "#1.MiddleNames", "('C','')", "#1=IFCPERSON('007','Doe',$,('C',''),$,$,(#3),$);"},
    {"Binaries", "#14.Pixel", "(\"31FF\")", "#14=IFCPIXELTEXTURE(.T.,.F.,.TEXTURE.,$,1,2,3,(\"31FF\"));"},
    {"AggregateOfADefinedType", "#10.RefLongitude", "(8,43,0)",
     "#10=IFCSITE('23emzg5$r6fA3IIhCrx3ZR',#11,'Site',$,$,$,$,$,.ELEMENT.,(47,30,15,250000),(8,43,0),440.,$,$);"},
    {"EmptyAggregateIsNoValue", "#1.MiddleNames", "()", "#1=IFCPERSON('007','Doe',$,$,$,$,(#3),$);", "", "$"},
    {"OtherAlternative", "#6.NominalValue", "IFCLENGTHMEASURE(2.5)",
     "#6=IFCPROPERTYSINGLEVALUE('P',$,IFCLENGTHMEASURE(2.5),#5);"},
    {"AlternativeInAnyLetterCase", "#6.NominalValue", "IfcText('y')",
     "#6=IFCPROPERTYSINGLEVALUE('P',$,IFCTEXT('y'),#5);", "", "IFCTEXT('y')"},
    {"AlternativeThatIsAnAggregate", "#6.NominalValue", "IFCCOMPOUNDPLANEANGLEMEASURE((47,30,15))",
     "#6=IFCPROPERTYSINGLEVALUE('P',$,IFCCOMPOUNDPLANEANGLEMEASURE((47,30,15)),#5);"},
    {"SelectWithoutValue", "#6.NominalValue", "$", "#6=IFCPROPERTYSINGLEVALUE('P',$,$,#5);"},
    {"ListOfAlternatives", "#7.ListValues", "(IFCLOGICAL(.U.),IFCREAL(1.))",
     "#7=IFCPROPERTYLISTVALUE('L',$,(IFCLOGICAL(.U.),IFCREAL(1.)),$);"},
    {"SetOfAlternatives", "#19.Styles", "(IFCNULLSTYLE(.NULL.))",
     "#19=IFCPRESENTATIONSTYLEASSIGNMENT((IFCNULLSTYLE(.NULL.)));"},
    {"MandatoryWithoutValue", "#2.Name", "$", "#2=IFCORGANIZATION($,$,$,$,$);", "is not optional"},
    {"TooManyMembers", "#4.Coordinates", "(1.,2.,3.,4.)", "#4=IFCCARTESIANPOINT((1.,2.,3.,4.));",
     "4 members now, not LIST [1:3] OF IfcLengthMeasure"},
    {"TooFewMembers", "#15.Points", "(#4)", "#15=IFCPOLYLINE((#4));", "1 member now, not LIST [2:?]"},
    {"MembersThatComeAgain", "#9.AssignedItems", "(#4,#16,#4)",
     "#9=IFCPRESENTATIONLAYERWITHSTYLE('a',$,(#4,#16),$,.T.,.F.,.U.,(#18));", "1 of 3 members left out", "(#4,#16)"},
};

INSTANTIATE_TEST_SUITE_P(Values, SetTest, testing::ValuesIn(kCases), [](const auto& test) { return test.param.name; });

struct Refusal {
    const char* name;
    const char* assignment;
    const char* said;
};

class SetRefusalTest : public testing::TestWithParam<Refusal> {};

TEST_P(SetRefusalTest, WritesNothingAndTellsWhy) {
    const WorkFolder folder;
    folder.write("model.ifc", smallModel());
    const Outcome outcome =
        folder.run("kpifc set model.ifc '#2.Name=$' " + ::quoted(GetParam().assignment) + " \"#1.Id='2'\" -o new.ifc");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(GetParam().said), std::string::npos) << outcome.err;
    EXPECT_EQ(linesOf(outcome.err).size(), 1u) << outcome.err; // nothing of what the first one would have done
    EXPECT_FALSE(std::filesystem::exists(folder.path("new.ifc")));
    EXPECT_EQ(contentOf(folder.path("model.ifc")), smallModel());
}

const Refusal kRefusals[] = {
    {"NoInstance", "#99.Name='x'", "no instance #99"},
    {"NoAttribute", "#1.FamilNyame='x'", "did you mean FamilyName?"},
    {"WholeInstance", "#1='x'", "\"#1\" names no attribute"},
    {"NoAssignment", "#1.Id", "\"#1.Id\" is no assignment"},
    {"Inverse", "#1.EngagedIn=(#12)", "is inverse and cannot be set; IfcPersonAndOrganization.ThePerson of"},
    {"Derived", "#4.Dim=3", "#4.Dim of IfcCartesianPoint is derived"},
    {"RedeclaredAsDerived", "#5.Dimensions=#8", "#5.Dimensions of IfcSIUnit is derived"},
    {"NoValue", "#1.FamilyName=", "found nothing"},
    {"TextWithoutApostrophes", "#1.FamilyName=Meier", "found Meier, which is no value"},
    {"TextThatDoesNotEnd", "#1.FamilyName='Meier''", "which is no value"},
    {"TwoValues", "#1.FamilyName='a','b'", "which is no value"},
    {"ListThatDoesNotEnd", "#4.Coordinates=(1.,2.", "which is no value"},
    {"DeepList", "#4.Coordinates=((1.),(2.))", "member 1: found (1.), expected IfcLengthMeasure, which is REAL"},
    {"NumberForText", "#1.FamilyName=3", "found 3, expected IfcLabel, which is STRING"},
    {"TypedValueForText", "#1.FamilyName=IFCLABEL('x')", "found IFCLABEL('x'), expected IfcLabel, which is STRING"},
    {"ShortGlobalId", "#10.GlobalId='abc'", "#10.GlobalId of IfcSite: found 3 characters, expected 22"},
    {"NumberForGlobalId", "#10.GlobalId=1", "found 1, expected IfcGloballyUniqueId"},
    {"TextForReal", "#10.RefElevation='1.'", "found '1.', expected IfcLengthMeasure, which is REAL"},
    {"NoNumber", "#10.RefElevation=1.2.3", "found 1.2.3, expected IfcLengthMeasure"},
    {"NumberThatIsTooLarge", "#10.RefElevation=1.E999", "found 1.E999, expected"},
    {"RealForInteger", "#8.MassExponent=3.", "found 3., expected INTEGER"},
    {"IntegerThatIsTooLarge", "#8.MassExponent=2147483648", "found 2147483648, expected INTEGER"},
    {"IntegerThatStandsForNone", "#8.MassExponent=2147483647", "found 2147483647, expected INTEGER"},
    {"LogicalForBoolean", "#17.Sizeable=.U.", "found .U., expected BOOLEAN"},
    {"LongBoolean", "#17.Sizeable=.TRUE.", "found .TRUE., expected BOOLEAN"},
    {"UnknownLiteral", "#5.Prefix=.MEGGA.", "found .MEGGA., expected IfcSIPrefix, which is ENUMERATION OF (EXA, PETA"},
    {"TextForLiteral", "#5.Prefix='MEGA'", "found 'MEGA', expected IfcSIPrefix"},
    {"ReferenceToNothing", "#15.Points=(#4,#99)",
     "member 2: found #99, which is no instance, expected IfcCartesianPoint"},
    {"ReferenceToOtherEntity", "#15.Points=(#4,#1)", "member 2: found #1, an IfcPerson, expected IfcCartesianPoint"},
    {"NoMember", "#15.Points=(#4,$)", "member 2: found $, expected IfcCartesianPoint"},
    {"OneForList", "#15.Points=#4", "found #4, expected LIST [2:?] OF IfcCartesianPoint"},
    {"ListForOne", "#6.Unit=(#5)",
     "found (#5), expected IfcUnit, which is one of IfcDerivedUnit, IfcNamedUnit, IfcMonetaryUnit"},
    {"NoAlternative", "#6.Unit=IFCLABEL('m')", "found IFCLABEL('m'), expected IfcUnit, which is one of"},
    {"EntityOfNoAlternative", "#6.Unit=#1", "found #1, an IfcPerson, expected IfcUnit"},
    {"SelectWithoutType", "#6.NominalValue='x'", "found 'x', expected IfcValue, which is one of"},
    {"WrongValueOfAlternative", "#6.NominalValue=IFCLENGTHMEASURE('x')", "found 'x', expected IfcLengthMeasure"},
    {"AlternativeWithoutValue", "#6.NominalValue=IFCLABEL($)", "found IFCLABEL($), expected IfcValue"},
    {"AlternativeInList", "#7.ListValues=(IFCREAL(1.),IFCPERSON(1))",
     "member 2: found IFCPERSON(1), expected IfcValue"},
    {"NoBinary", "#14.Pixel=(\"0FG\")", "member 1: found \"0FG\", expected BINARY"},
    {"Asterisk", "#1.FamilyName=*", "found *, expected IfcLabel"},
};

INSTANTIATE_TEST_SUITE_P(Assignments, SetRefusalTest, testing::ValuesIn(kRefusals),
                         [](const auto& test) { return test.param.name; });

TEST(SetFilesTest, NeverOverwritesTheInput) {
    const WorkFolder folder;
    folder.write("model.ifc", smallModel());
    std::filesystem::create_symlink("model.ifc", folder.path("link.ifc"));
    for (const std::string name : {"model.ifc", "./model.ifc", "link.ifc"}) {
        const Outcome outcome = folder.run("kpifc set model.ifc \"#1.Id='1'\" -o " + name);
        EXPECT_EQ(outcome.exitCode, 2) << name;
        EXPECT_NE(outcome.err.find("is the input"), std::string::npos) << outcome.err;
    }
    EXPECT_EQ(contentOf(folder.path("model.ifc")), smallModel());
}

TEST(SetFilesTest, KeepsWhatItDoesNotUnderstand) {
    const WorkFolder folder;
    folder.write("model.ifc", stepFile("#1=IFCNOSUCHTHING('x',(1,2),.Y.);\n#2=IFCSIUNIT(*,.NOSUCHUNIT.,$,.METRE.);\n"
                                       "#3=IFCBLOBTEXTURE(.T.,.F.,.TEXTURE.,$,'png',\"0FF\");"));
    const Outcome outcome = folder.run("kpifc set model.ifc '#2.Name=.GRAM.' -o new.ifc");
    EXPECT_EQ(outcome.exitCode, 1) << outcome.err;
    EXPECT_NE(outcome.err.find("1 attribute set, 1 record kept as text; read with"), std::string::npos) << outcome.err;
    const std::string written = contentOf(folder.path("new.ifc"));
    EXPECT_NE(written.find("#1=IFCNOSUCHTHING('x',(1,2),.Y.);\n"), std::string::npos) << written;
    EXPECT_NE(written.find("#2=IFCSIUNIT(*,.NOSUCHUNIT.,$,.GRAM.);\n"), std::string::npos) << written;

    for (const std::string assignment : {"#1.Name=$", "#3.RasterCode=\"0FE\""}) {
        EXPECT_EQ(folder.run("kpifc set model.ifc " + ::quoted(assignment) + " -o newer.ifc").exitCode, 2)
            << assignment;
    }
    EXPECT_FALSE(std::filesystem::exists(folder.path("newer.ifc")));
}

TEST(SetFilesTest, ReplacesTextThatTheAttributeCouldNotHold) {
    const WorkFolder folder;
    folder.write("model.ifc", stepFile("#1=IFCSIUNIT(*,.NOSUCHUNIT.,.NOSUCHPREFIX.,.METRE.);#2=IFCVERTEXPOINT(#9);"));
    const Outcome outcome = folder.run("kpifc set model.ifc '#1.Prefix=$' '#2.VertexGeometry=$' -o new.ifc");
    EXPECT_EQ(outcome.exitCode, 1) << outcome.err;
    const std::string written = contentOf(folder.path("new.ifc"));
    EXPECT_NE(written.find("#1=IFCSIUNIT(*,.NOSUCHUNIT.,$,.METRE.);#2=IFCVERTEXPOINT($);\n"), std::string::npos)
        << written;
}

TEST(SetFilesTest, WhatGetPrintsChangesNothing) {
    const WorkFolder folder;
    const std::string house = ::quoted(std::filesystem::path(KP_SOURCE_DIR) / "examples/small_house.ifc");
    std::vector<std::string> names;
    for (const std::string& line : linesOf(folder.run("kpifc dump " + house).out)) {
        const Json instance = Json::parse(line);
        for (const auto& [attribute, value] : instance["attributes"].items()) {
            names.push_back('#' + instance["id"].dump() + '.' + attribute);
        }
    }
    ASSERT_GT(names.size(), 500u);
    std::string asked;
    for (const std::string& name : names) {
        asked += ' ' + ::quoted(name);
    }
    const std::vector<std::string> values = linesOf(folder.run("kpifc get " + house + asked).out);
    ASSERT_EQ(values.size(), names.size());
    std::string assignments;
    for (std::size_t i = 0; i < names.size(); ++i) {
        assignments += ' ' + ::quoted(names[i] + '=' + values[i]);
    }
    const Outcome outcome = folder.run("kpifc set " + house + assignments + " -o new.ifc");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(linesOf(outcome.err).size(), 1u) << outcome.err;
    folder.run("kpifc convert " + house + " -o converted.ifc");
    EXPECT_EQ(contentOf(folder.path("new.ifc")), contentOf(folder.path("converted.ifc")));
}

} // namespace
