#include "Environment.h"

#include <IFC2X3/IfcPerson.h>
#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcCheck.h>

#include <gtest/gtest.h>

#include <ostream>
#include <string>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

/// "kind #n Attribute; ..." of all findings, in their order.
std::string told(const KpIfcReport& report) {
    std::string text;
    for (const KpIfcReportEntry& entry : report.entries()) {
        text += text.empty() ? "" : "; ";
        text += findingName(entry.finding);
        if (entry.instanceName) {
            text += " #" + std::to_string(entry.instanceName);
        } else if (!entry.entity.empty()) {
            text += ' ' + entry.entity;
        }
        text += entry.attribute.empty() ? "" : ' ' + entry.attribute;
    }
    return text;
}

/// What is right, to refer to.
constexpr const char* kFrame = "#90=IFCOWNERHISTORY(#91,#92,$,.ADDED.,$,$,$,0);\n"
                               "#91=IFCPERSONANDORGANIZATION(#93,#94,$);\n"
                               "#92=IFCAPPLICATION(#94,'1','Tool','T');\n"
                               "#93=IFCPERSON($,'Doe',$,$,$,$,$,$);\n"
                               "#94=IFCORGANIZATION($,'Works',$,$,$);\n"
                               "#95=IFCCARTESIANPOINT((0.,0.));\n"
                               "#96=IFCCARTESIANPOINT((1.,0.));\n"
                               "#97=IFCCARTESIANPOINT((1.,1.));\n"
                               "#98=IFCAXIS2PLACEMENT2D(#95,$);\n";

struct Case {
    const char* records;
    const char* expected;
};

void PrintTo(const Case& one, std::ostream* out) {
    *out << one.records;
}

KpIfcReport checked(const std::string& records) {
    KpIfcFile file = openedRecords(records + kFrame);
    return checkFile(file);
}

class Check : public testing::TestWithParam<Case> {};

TEST_P(Check, TellsWhatIsWrongAndNothingElse) {
    EXPECT_EQ(told(checked(GetParam().records)), GetParam().expected);
}

const Case kValues[] = {
    {"", ""},
    // mandatory and optional attributes of each kind
    {"#1=IFCORGANIZATION($,$,$,$,$);", "missing-value #1 Name"},
    {"#1=IFCDIMENSIONALEXPONENTS(1,0,$,0,0,0,0);", "missing-value #1 TimeExponent"},
    {"#1=IFCCIRCLE(#98,$);#2=IFCCIRCLE($,1.);", "missing-value #1 Radius; missing-value #2 Position"},
    {"#1=IFCACTORROLE($,$,$);#2=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);#3=IFCSIUNIT(*,.LENGTHUNIT.,$,$);",
     "missing-value #1 Role; missing-value #3 Name"},
    {"#1=IFCMEASUREWITHUNIT($,#2);#2=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);", "missing-value #1 ValueComponent"},
    {"#1=IFCTABLEROW((IFCLABEL('x')),$);#2=IFCTABLE('t',(#1));", "missing-value #1 IsHeading"},
    {"#1=IFCCOMPOSITECURVE((#2),$);#2=IFCCOMPOSITECURVESEGMENT(.CONTINUOUS.,.T.,#3);#3=IFCPOLYLINE((#95,#96));",
     "missing-value #1 SelfIntersect"},
    {"#1=IFCWALL($,$,$,$,$,$,$,$);", "missing-value #1 GlobalId; missing-value #1 OwnerHistory"},
    {"#1=IFCORIENTEDEDGE(*,*,#2,.T.);#2=IFCEDGE(#3,#3);#3=IFCVERTEX();", ""},
    // what reading could not hold is told by reading alone
    {"#1=IFCORGANIZATION($,7,$,$,$);", "wrong-value #1 Name"},
    {"#1=IFCACTORROLE(.KING.,$,$);", "unknown-literal #1 Role"},
    {"#1=IFCMEASUREWITHUNIT(IFCWALL(1),#2);#2=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);",
     "wrong-alternative #1 ValueComponent"},
    {"#1=IFCMEASUREWITHUNIT(IFCLABEL($),#2);#2=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);", "wrong-value #1 ValueComponent"},
    {"#1=IFCCIRCLE(#55,1.);", "dangling-reference #1 Position"},
    {"#1=IFCORGANIZATION($);", "attribute-count #1"},
    {"#1=IFCPERSONANDORGANIZATION($);", "attribute-count #1; missing-value #1 ThePerson"},
    {"#1=IFCFOO(1);#2=IFCCIRCLE(#1,1.);", "unknown-entity #1"},
    {"#1=IFCROOT('0000000000000000000001',#90,$,$);", "abstract-entity #1"},
};
INSTANTIATE_TEST_SUITE_P(Values, Check, testing::ValuesIn(kValues));

const Case kReferences[] = {
    {"#1=IFCCIRCLE(#98,1.);", ""},
    {"#1=IFCCIRCLE(#95,1.);", "wrong-reference #1 Position"},
    {"#1=IFCPERSONANDORGANIZATION(#94,#94,$);", "wrong-reference #1 ThePerson"},
    {"#1=IFCPOLYLINE((#95,#98,#2,#96));#2=IFCPOLYLINE((#95,#96));", "wrong-reference #1 Points"},
    {"#1=IFCPOLYLINE((#95,#55,#98));", "dangling-reference #1 Points; wrong-reference #1 Points"},
    {"#1=IFCPRESENTATIONSTYLEASSIGNMENT((#95,IFCNULLSTYLE(.NULL.)));", "wrong-reference #1 Styles"},
};
INSTANTIATE_TEST_SUITE_P(References, Check, testing::ValuesIn(kReferences));

const Case kAggregates[] = {
    {"#1=IFCPOLYLINE((#95,#96,#95));", ""},
    {"#1=IFCPOLYLINE((#95));#2=IFCPOLYLINE(());", "aggregate-size #1 Points; aggregate-size #2 Points"},
    {"#1=IFCPOLYLINE($);", "missing-value #1 Points"},
    {"#1=IFCCARTESIANPOINT((1.,2.,3.,4.));", "aggregate-size #1 Coordinates"},
    {"#1=IFCCARTESIANPOINT((1.,$,3.));#2=IFCPOLYLINE(($,#95));",
     "missing-value #1 Coordinates; missing-value #2 Points"},
    // an optional one without elements
    {"#1=IFCPERSON($,'Doe',$,(),$,$,$,$);#2=IFCPERSON($,'Doe',$,$,$,$,$,$);", "aggregate-size #1 MiddleNames"},
    // bounds of a defined type, and of an alternative of a select
    {"#1=IFCSITE('0000000000000000000001',#90,$,$,$,$,$,$,.ELEMENT.,(1,2),(1,2,3,4),$,$,$);",
     "aggregate-size #1 RefLatitude"},
    {"#1=IFCPROPERTYSINGLEVALUE('a',$,IFCCOMPLEXNUMBER((1.,2.)),$);"
     "#2=IFCPROPERTYSINGLEVALUE('b',$,IFCCOMPLEXNUMBER((1.,2.,3.)),$);",
     "aggregate-size #2 NominalValue"},
    // the same element twice: in a set, in a list of unique ones, few and many
    {"#1=IFCUNITASSIGNMENT((#2,#2));#2=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);", "repeated-member #1 Units"},
    {"#1=IFCPOLYLOOP((#95,#96,#97));#2=IFCPOLYLOOP((#95,#96,#97,#95));", "repeated-member #2 Polygon"},
    {"#1=IFCPOLYLOOP((#95,#96,#97,#11,#12,#13,#14,#15,#16,#17,#18,#19,#20,#97));"
     "#11=IFCCARTESIANPOINT((1.));#12=IFCCARTESIANPOINT((1.));#13=IFCCARTESIANPOINT((1.));"
     "#14=IFCCARTESIANPOINT((1.));#15=IFCCARTESIANPOINT((1.));#16=IFCCARTESIANPOINT((1.));"
     "#17=IFCCARTESIANPOINT((1.));#18=IFCCARTESIANPOINT((1.));#19=IFCCARTESIANPOINT((1.));"
     "#20=IFCCARTESIANPOINT((1.));",
     "repeated-member #1 Polygon"},
    {"#1=IFCPROPERTYENUMERATION('a',(IFCLABEL('x'),IFCTEXT('x'),IFCLABEL('y')),$);"
     "#2=IFCPROPERTYENUMERATION('b',(IFCLABEL('x'),IFCLABEL('y'),IFCLABEL('x')),$);",
     "repeated-member #2 EnumerationValues"},
    {"#1=IFCCLOSEDSHELL((#2,#2,#55));#2=IFCFACE((#3));#3=IFCFACEBOUND(#4,.T.);#4=IFCPOLYLOOP((#95,#96,#97));",
     "dangling-reference #1 CfsFaces; repeated-member #1 CfsFaces"},
    // widths: a binary of 32 bits, one of 36, and one of 36 that leaves 3 of them unused
    {"#1=IFCPIXELTEXTURE(.T.,.F.,.TEXTURE.,$,1,1,4,(\"0FFFFFFFF\"));", ""},
    {"#1=IFCPIXELTEXTURE(.T.,.F.,.TEXTURE.,$,1,2,4,(\"0FF\",\"01FFFFFFFF\"));", "too-long #1 Pixel"},
    {"#1=IFCPIXELTEXTURE(.T.,.F.,.TEXTURE.,$,1,1,4,(\"31FFFFFFFF\"));", "too-long #1 Pixel"},
};
INSTANTIATE_TEST_SUITE_P(Aggregates, Check, testing::ValuesIn(kAggregates));

const Case kUniqueness[] = {
    {"#1=IFCRELVOIDSELEMENT('0000000000000000000001',#90,$,$,#2,#3);"
     "#2=IFCWALL('0000000000000000000002',#90,$,$,$,$,$,$);"
     "#3=IFCOPENINGELEMENT('0000000000000000000001',#90,$,$,$,$,$,$);",
     "not-unique #3 GlobalId"},
    {"#1=IFCAPPLICATION(#94,'1','Tool','U');#2=IFCAPPLICATION(#94,'2','Tool','V');"
     "#3=IFCAPPLICATION(#94,'3','Other','U');",
     "not-unique #3 ApplicationIdentifier; not-unique #92 ApplicationFullName, Version"},
    {"#1=IFCAPPLICATION(#94,$,'Tool','U');#2=IFCAPPLICATION(#94,$,'Tool','V');",
     "missing-value #1 Version; missing-value #2 Version"},
    {"#1=IFCMATERIAL('a');#2=IFCGENERALMATERIALPROPERTIES(#1,$,$,$);#3=IFCTHERMALMATERIALPROPERTIES(#1,$,$,$,$);"
     "#4=IFCGENERALMATERIALPROPERTIES(#1,$,$,$);",
     "not-unique #4 Material"},
    // form of GlobalIds
    {"#1=IFCWALL('3$_zzzzzzzzzzzzzzzzzzz',#90,$,$,$,$,$,$);", ""},
    {"#1=IFCWALL('4000000000000000000000',#90,$,$,$,$,$,$);#2=IFCWALL('00000000000000000000-0',#90,$,$,$,$,$,$);",
     "global-id #1 GlobalId; global-id #2 GlobalId"},
    {"#1=IFCWALL('00000000000000000000001',#90,$,$,$,$,$,$);#2=IFCWALL('00000000000000000000002',#90,$,$,$,$,$,$);",
     "wrong-value #1 GlobalId; wrong-value #2 GlobalId"},
};
INSTANTIATE_TEST_SUITE_P(Uniqueness, Check, testing::ValuesIn(kUniqueness));

const Case kInverses[] = {
    {"#1=IFCWALL('0000000000000000000001',#90,$,$,$,#2,$,$);#2=IFCLOCALPLACEMENT($,#98);", ""},
    {"#2=IFCLOCALPLACEMENT($,#98);", "inverse-count #2 PlacesObject"},
    {"#1=IFCWALL('0000000000000000000001',#90,$,$,$,#2,$,$);#2=IFCLOCALPLACEMENT($,#98);"
     "#3=IFCWALL('0000000000000000000003',#90,$,$,$,#2,$,$);",
     "inverse-count #2 PlacesObject"},
    // who refers there may be in what could not be read
    {"#1=IFCFOO(#2);#2=IFCLOCALPLACEMENT($,#98);", "unknown-entity #1"},
    {"#1=IFCLOCALPLACEMENT(#55,#98);#2=IFCFOO('#1');",
     "dangling-reference #1 PlacementRelTo; inverse-count #1 PlacesObject; unknown-entity #2"},
    // a single-valued one
    {"#1=IFCMATERIALLAYER($,1.,$);", "inverse-count #1 ToMaterialLayerSet"},
    {"#1=IFCMATERIALLAYER($,1.,$);#2=IFCMATERIALLAYERSET((#1),$);", ""},
    // one that does not ask for any
    {"#1=IFCPROPERTYSET('0000000000000000000001',#90,$,$,(#4));"
     "#2=IFCRELDEFINESBYPROPERTIES('0000000000000000000002',#90,$,$,(#5),#1);"
     "#3=IFCRELDEFINESBYPROPERTIES('0000000000000000000003',#90,$,$,(#5),#1);"
     "#4=IFCPROPERTYSINGLEVALUE('a',$,$,$);#5=IFCWALL('0000000000000000000005',#90,$,$,$,$,$,$);"
     "#6=IFCPROPERTYSET('0000000000000000000006',#90,$,$,(#4));",
     "inverse-count #1 PropertyDefinitionOf"},
};
INSTANTIATE_TEST_SUITE_P(Inverses, Check, testing::ValuesIn(kInverses));

class CheckHeader : public testing::TestWithParam<Case> {};

TEST_P(CheckHeader, TellsWhatIsWrongAndNothingElse) {
    KpIfcFile file =
        opened("ISO-10303-21;HEADER;" + std::string(GetParam().records) + "ENDSEC;DATA;ENDSEC;END-ISO-10303-21;");
    EXPECT_EQ(told(checkFile(file)), GetParam().expected);
}

#define DESCRIPTION "FILE_DESCRIPTION((''),'2;1');"
#define NAME "FILE_NAME('','2026-02-28T23:59:60.5+01:00',(''),(''),'','','');"
#define SCHEMA "FILE_SCHEMA(('IFC2X3'));"
const Case kHeaders[] = {
    {DESCRIPTION NAME SCHEMA "FILE_POPULATION('x');", ""},
    {DESCRIPTION SCHEMA, "header FILE_NAME"},
    {SCHEMA DESCRIPTION NAME, "header FILE_DESCRIPTION; header FILE_NAME"},
    {DESCRIPTION NAME NAME SCHEMA, "header FILE_NAME"},
    {DESCRIPTION NAME SCHEMA "FILE_POPULATION 'x';", "header FILE_POPULATION"},
    {"FILE_DESCRIPTION('','2;1');" NAME SCHEMA, "header FILE_DESCRIPTION description"},
    {"FILE_DESCRIPTION((),'two');" NAME SCHEMA,
     "header FILE_DESCRIPTION description; header FILE_DESCRIPTION implementation_level"},
    {DESCRIPTION "FILE_NAME('','2026-01-02',$,('',$),'','');" SCHEMA,
     "header FILE_NAME; header FILE_NAME author; header FILE_NAME organization; header FILE_NAME time_stamp"},
    {DESCRIPTION "FILE_NAME('','2026-02-29T00:00:00Z',(''),(''),'','',$);" SCHEMA,
     "header FILE_NAME authorization; header FILE_NAME time_stamp"},
    {DESCRIPTION NAME "FILE_SCHEMA(('IFC2X3_FINAL','B'));",
     "header FILE_SCHEMA schema_identifiers; header FILE_SCHEMA schema_identifiers"},
    {DESCRIPTION NAME "FILE_SCHEMA(('IFC2X3 { 1 0 10303 }'));", ""},
};
INSTANTIATE_TEST_SUITE_P(Check, CheckHeader, testing::ValuesIn(kHeaders));

TEST(CheckModel, FollowsWhatIsChanged) {
    KpIfcFile file = openedRecords("#1=IFCACTORROLE(.KING.,$,$);\n#2=IFCCIRCLE(#55,1.);\n#3=IFCLOCALPLACEMENT($,#4);\n"
                                   "#4=IFCAXIS2PLACEMENT2D(#5,$);\n#5=IFCCARTESIANPOINT((0.));\n");
    KpIfcModel& model = *file.model();
    EXPECT_EQ(told(checkModel(model)), "inverse-count #3 PlacesObject");
    KpIfcEntityBase* const wall = model.createRooted("IfcWall");
    wall->putAttr("ObjectPlacement", model.find(3));
    wall->putAttr("OwnerHistory", model.find(5));
    KpIfcEntityBase* const person = model.create("IfcPerson");
    as<IfcPerson>(person)->getMiddleNames().createEmpty();
    EXPECT_EQ(told(checkModel(model)), "wrong-reference #56 OwnerHistory");
    // An attribute that lost its value also lost the text that says what is wrong with it.
    model.forgetSource(*model.find(2).openObject(), std::size_t{0});
    EXPECT_EQ(told(checkModel(model)), "missing-value #2 Position; wrong-reference #56 OwnerHistory");
}

TEST(CheckModel, ChangesNothing) {
    KpIfcFile file = openedRecords("#1=IFCPOLYLINE((#2,$));\n#2=IFCCARTESIANPOINT((0.));\n#3=IFCACTORROLE($,$,$);\n");
    file.model()->mode(kAccessUndefined);
    EXPECT_EQ(told(checkModel(*file.model())), "missing-value #1 Points; missing-value #3 Role");
    for (const KpIfcEntityBase* instance : file.model()->instances()) {
        EXPECT_FALSE(instance->isChanged()) << instance->instanceName();
    }
}

TEST(CheckModel, CountsWhatItDoesNotList) {
    std::string records;
    for (int i = 1; i <= 7; ++i) {
        records += '#' + std::to_string(i) + "=IFCACTORROLE($,$,$);\n";
    }
    KpIfcFile file = openedRecords(records);
    const KpIfcReport report = checkModel(*file.model(), 2);
    EXPECT_EQ(told(report), "missing-value #1 Role; missing-value #2 Role");
    EXPECT_EQ(report.count(KpIfcFinding::missingValue), 7u);
    EXPECT_EQ(checkFile(file, KpIfcReport::kAll).entries().size(), 7u);
}

TEST(CheckModel, SaysWhatWasFoundAndWhatExpected) {
    const std::string records = "#1=IFCPOLYLINE((#95,#98,#98));#2=IFCPOLYLINE((#95));#3=IFCCIRCLE($,1.);"
                                "#4=IFCLOCALPLACEMENT($,#98);#5=IFCAPPLICATION(#94,'2','Tool','T');"
                                "#6=IFCWALL('x000000000000000000000',#90,$,$,$,$,$,$);";
    EXPECT_EQ(
        findings(checked(records)),
        "warning: #1 IFCPOLYLINE.Points: found element 2 and 1 more: #98 IfcAxis2Placement2D, expected LIST [2:?] OF "
        "IfcCartesianPoint\n"
        "warning: #2 IFCPOLYLINE.Points: found 1 element, expected LIST [2:?] OF IfcCartesianPoint\n"
        "warning: #3 IFCCIRCLE.Position: found no value, expected IfcAxis2Placement\n"
        "warning: #4 IFCLOCALPLACEMENT.PlacesObject: found no referrer, expected exactly 1: "
        "IfcProduct.ObjectPlacement\n"
        "warning: #6 IFCWALL.GlobalId: found 'x000000000000000000000', expected 22 of the characters "
        "0-9A-Za-z_$, the first one of 0-3\n"
        "warning: #92 IFCAPPLICATION.ApplicationIdentifier: found 'T', as in #5 IfcApplication, expected other "
        "values than all else (IfcApplication.UR1)\n");
}

} // namespace
