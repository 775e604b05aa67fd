#include <KpIfcCore/KpIfcHeader.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace KP_SDAI;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = KpStepValue::Kind;

std::vector<std::string> keywords(const KpIfcHeader& header) {
    std::vector<std::string> found;
    for (const KpIfcHeaderRecord& record : header.records()) found.push_back(record.keyword);
    return found;
}

TEST(Header, ANewOneHasTheThreeRecordsOfTheStandard) {
    const KpIfcHeader header = KpIfcHeader::standard("IFC2X3");
    ASSERT_THAT(keywords(header), ElementsAre("FILE_DESCRIPTION", "FILE_NAME", "FILE_SCHEMA"));
    EXPECT_EQ(header.source(0), "FILE_DESCRIPTION((''),'2;1')");
    EXPECT_EQ(header.source(1), "FILE_NAME('','',(''),(''),'','','')");
    EXPECT_EQ(header.source(2), "FILE_SCHEMA(('IFC2X3'))");
    EXPECT_THAT(header.schemaIdentifiers(), ElementsAre("IFC2X3"));
}

TEST(Header, FieldsAreReadWhereverFilesPutThem) {
    KpIfcHeader header;
    EXPECT_EQ(header.fileName(), "");
    EXPECT_THAT(header.author(), IsEmpty());
    // A plain text for a list, a list for a plain text, "$", and fields that are missing.
    header.append({"FILE_NAME",
                   {KpStepValue::list({KpStepValue::string("house.ifc")}), KpStepValue{}, KpStepValue::string("me"),
                    KpStepValue::list({KpStepValue{}, KpStepValue::string("we")})}},
                  "FILE_NAME ( ('house.ifc'),$,'me',($,'we') )");
    EXPECT_EQ(header.fileName(), "house.ifc");
    EXPECT_EQ(header.timeStamp(), "");
    EXPECT_THAT(header.author(), ElementsAre("me"));
    EXPECT_THAT(header.organization(), ElementsAre("we"));
    EXPECT_EQ(header.authorization(), "");
    EXPECT_EQ(header.source(0), "FILE_NAME ( ('house.ifc'),$,'me',($,'we') )");
}

TEST(Header, AChangedRecordIsWrittenAnewTheOthersAsTheyWere) {
    KpIfcHeader header;
    header.append({"FILE_DESCRIPTION", {KpStepValue::list({KpStepValue::string("v")}), KpStepValue::string("2;1")}},
                  "FILE_DESCRIPTION( ('v') , '2;1' )");
    header.append({"FILE_NAME", {KpStepValue::string("a")}}, "FILE_NAME( 'a' )");
    header.append({"!MINE", {}}, "!MINE( /* kept */ )");
    header.setText("FILE_NAME", 0, "Grüße's.ifc");
    EXPECT_EQ(header.fileName(), "Grüße's.ifc");
    EXPECT_EQ(header.source(0), "FILE_DESCRIPTION( ('v') , '2;1' )");
    EXPECT_EQ(header.source(1), R"(FILE_NAME('Gr\X2\00FC00DF\X0\e''s.ifc'))");
    EXPECT_EQ(header.source(2), "!MINE( /* kept */ )");

    header.setTexts("FILE_NAME", 3, {"one", "two"});
    EXPECT_EQ(header.source(1), R"(FILE_NAME('Gr\X2\00FC00DF\X0\e''s.ifc','','',('one','two')))");
    EXPECT_THAT(header.organization(), ElementsAre("one", "two"));
}

TEST(Header, SettersMakeTheRecordsThatAreMissing) {
    KpIfcHeader header;
    header.setTexts("FILE_SCHEMA", 0, {"IFC2X3"});
    header.setText("FILE_NAME", 5, "the program");
    header.setText("FILE_DESCRIPTION", 1, "2;1");
    EXPECT_THAT(keywords(header), ElementsAre("FILE_SCHEMA", "FILE_NAME", "FILE_DESCRIPTION"));
    EXPECT_EQ(header.originatingSystem(), "the program");
    EXPECT_EQ(header.source(1), "FILE_NAME('','',(''),(''),'','the program','')");
    EXPECT_EQ(header.implementationLevel(), "2;1");
}

TEST(Header, OfSeveralRecordsOfOneKeywordTheFirstCounts) {
    KpIfcHeader header;
    header.append({"SECTION_LANGUAGE", {KpStepValue::string("first")}}, "SECTION_LANGUAGE('first')");
    header.append({"SECTION_LANGUAGE", {KpStepValue::string("second")}}, "SECTION_LANGUAGE('second')");
    EXPECT_EQ(header.text("SECTION_LANGUAGE", 0), "first");
    header.set({"SECTION_LANGUAGE", {KpStepValue::string("changed")}});
    EXPECT_EQ(header.source(0), "SECTION_LANGUAGE('changed')");
    EXPECT_EQ(header.source(1), "SECTION_LANGUAGE('second')");
    EXPECT_TRUE(header.remove("SECTION_LANGUAGE"));
    ASSERT_EQ(header.records().size(), 1u);
    EXPECT_EQ(header.source(0), "SECTION_LANGUAGE('second')");
    EXPECT_TRUE(header.remove("SECTION_LANGUAGE"));
    EXPECT_FALSE(header.remove("SECTION_LANGUAGE"));
    header.set({"SECTION_CONTEXT", {KpStepValue{}, KpStepValue::string("new")}});
    EXPECT_EQ(header.source(0), "SECTION_CONTEXT($,'new')");
}

TEST(Header, WritesEveryKindOfValue) {
    KpIfcHeader header;
    const KpStepValue number{Kind::number, "1.50", {}};
    header.set({"!ALL",
                {KpStepValue{},
                 {Kind::derived, "", {}},
                 number,
                 {Kind::enumeration, "T", {}},
                 {Kind::binary, "0F0", {}},
                 {Kind::reference, "#12", {}},
                 KpStepValue::list({}),
                 {Kind::typed, "IFCLABEL", {KpStepValue::list({number, number})}}}});
    EXPECT_EQ(header.source(0), R"(!ALL($,*,1.50,.T.,"0F0",#12,(),IFCLABEL((1.50,1.50))))");
}

} // namespace
