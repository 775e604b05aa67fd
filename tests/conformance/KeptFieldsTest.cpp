#include "StepFiles.h"

#include <IFC2X3/IfcCalendarDate.h>
#include <IFC2X3/IfcLocalPlacement.h>
#include <IFC2X3/IfcPropertySingleValue.h>
#include <IFC2X3/IfcRelAggregates.h>
#include <IFC2X3/IfcSite.h>

#include <gtest/gtest.h>

#include <functional>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

/// The records that are written after a change to what was read.
std::string recordsAfter(std::string_view records, const std::function<void(KpIfcModel&)>& change) {
    KpIfcFile file = opened(stepFile(records));
    change(*file.model());
    return recordsOf(saved(file));
}

TEST(KeptFields, GoWhenTheirMemberChangesAndOthersStay) {
    const std::string site = "#1=IFCSITE('short',#99,5,$,$,$,$,$,.COMPLEXX.,(1,2,99999999999),(1,2,3),'1.',$,#98);\n";
    EXPECT_EQ(recordsAfter(site, [](KpIfcModel&) {}), site);
    EXPECT_EQ(recordsAfter(site,
                           [](KpIfcModel& model) {
                               auto* changed = as<IfcSite>(model.find(1));
                               changed->setGlobalId(KpIfcGUID("0123456789012345678901"));
                               changed->setRefElevation(2);
                           }),
              "#1=IFCSITE('0123456789012345678901',#99,5,$,$,$,$,$,.COMPLEXX.,(1,2,99999999999),(1,2,3),2.,$,#98);\n");
    EXPECT_EQ(recordsAfter(site,
                           [](KpIfcModel& model) {
                               auto* changed = as<IfcSite>(model.find(1));
                               changed->setName("");
                               changed->setCompositionType(kIfcElementCompositionEnum_COMPLEX);
                               changed->setRefLatitude(KpIfcArray<int>{4, 5, 6});
                               changed->setSiteAddress(changed->objectId());
                           }),
              "#1=IFCSITE('short',#99,'',$,$,$,$,$,.COMPLEX.,(4,5,6),(1,2,3),'1.',$,#1);\n");
    // What is set to what it was keeps its text; fields without kept text go their own way.
    EXPECT_EQ(recordsAfter(site,
                           [](KpIfcModel& model) {
                               auto* changed = as<IfcSite>(model.find(1));
                               changed->setRefElevation(2);
                               changed->setRefElevation(Consts::KpRealUnset);
                               changed->setDescription("new");
                           }),
              "#1=IFCSITE('short',#99,5,'new',$,$,$,$,.COMPLEXX.,(1,2,99999999999),(1,2,3),'1.',$,#98);\n");
}

TEST(KeptFields, OfAggregatesGoWhenAMemberChanges) {
    const std::string records = "#1=IFCRELAGGREGATES('0123456789012345678901',$,$,$,#2,(#98,#2));\n"
                                "#2=IFCSITE('0123456789012345678901',$,$,$,$,$,$,$,$,(1,2,2147483647),$,$,$,$);\n";
    EXPECT_EQ(recordsAfter(records,
                           [](KpIfcModel& model) {
                               as<IfcRelAggregates>(model.find(1))->getRelatedObjects().add(model.find(1));
                               as<IfcSite>(model.find(2))->getRefLatitude().removeAt(0);
                           }),
              "#1=IFCRELAGGREGATES('0123456789012345678901',$,$,$,#2,($,#1,#2));\n"
              "#2=IFCSITE('0123456789012345678901',$,$,$,$,$,$,$,$,(2),$,$,$,$);\n");
}

TEST(KeptFields, OfAWrongNumberOfParametersGoWithTheFirstChange) {
    const std::string records = "#1=IFCLOCALPLACEMENT(#98,#99,'more');\n#2=IFCCALENDARDATE(1,99999999999);\n";
    EXPECT_EQ(recordsAfter(records, [](KpIfcModel&) {}), records);
    EXPECT_EQ(recordsAfter(records,
                           [](KpIfcModel& model) {
                               as<IfcLocalPlacement>(model.find(1))->setPlacementRelTo(model.find(2));
                               as<IfcCalendarDate>(model.find(2))->setYearComponent(2024);
                           }),
              "#1=IFCLOCALPLACEMENT(#2,#99);\n#2=IFCCALENDARDATE(1,99999999999,2024);\n");
}

/// A select's text stays while the select is what reading made of it, whatever alternative that is.
TEST(KeptFields, OfSelects) {
    const std::string records = "#1=IFCPROPERTYSINGLEVALUE('a',$,IFCTEXT($),$);\n"
                                "#2=IFCPROPERTYSINGLEVALUE('a',$,IFCNOTHING(5),$);\n";
    EXPECT_EQ(recordsAfter(records,
                           [](KpIfcModel& model) {
                               IfcValue value;
                               value.setIfcText("");
                               as<IfcPropertySingleValue>(model.find(1))->setNominalValue(value);
                               as<IfcPropertySingleValue>(model.find(2))->setName("b");
                           }),
              "#1=IFCPROPERTYSINGLEVALUE('a',$,IFCTEXT(''),$);\n"
              "#2=IFCPROPERTYSINGLEVALUE('b',$,IFCNOTHING(5),$);\n");
}

TEST(Header, RecordsStayAsTheyWereUntilChanged) {
    const std::string head = "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION ( ('a') , '2;1' );\nfile_name('n',$);\n"
                             "FILE_SCHEMA(('ifc2x3'));\n!MINE( 1 );\n";
    const std::string data = "ENDSEC;\nDATA;\nENDSEC;\nEND-ISO-10303-21;\n";
    KpIfcFile file = opened(head + data);
    EXPECT_EQ(file.header().author(), std::vector<std::string>());
    EXPECT_EQ(saved(file), head + data);
    file.header().setText("FILE_NAME", 5, "J\xC3\xBC's");
    file.header().setTexts("FILE_NAME", 2, {"x", "y"});
    EXPECT_EQ(file.header().originatingSystem(), "J\xC3\xBC's");
    EXPECT_EQ(saved(file), "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION ( ('a') , '2;1' );\n"
                           "FILE_NAME('n',$,('x','y'),'','','J\\X2\\00FC\\X0\\''s');\n"
                           "FILE_SCHEMA(('ifc2x3'));\n!MINE( 1 );\n" +
                               data);
    EXPECT_TRUE(file.header().remove("!MINE"));
    EXPECT_FALSE(file.header().remove("!MINE"));
    file.header().set({"FILE_DESCRIPTION", {KpStepValue::list({}), KpStepValue{}}});
    EXPECT_EQ(saved(file), "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((),$);\n"
                           "FILE_NAME('n',$,('x','y'),'','','J\\X2\\00FC\\X0\\''s');\n"
                           "FILE_SCHEMA(('ifc2x3'));\n" +
                               data);
}

} // namespace
