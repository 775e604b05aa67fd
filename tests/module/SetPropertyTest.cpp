#include "Environment.h"
#include "PropertySetsText.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcSettings.h>
#include <KpRx/KcString.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <set>
#include <sstream>

using namespace KP_SDAI;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

/// Walls #1 and #2 share the set A (#4); both are of type #6, which has the set T (#8). #1 alone has the set Own (#13),
/// the quantities Q (#15) and a set whose properties are attributes (#31). Own holds entry #10 of A, too.
constexpr const char* kRecords =
    "#1=IFCWALL('0000000000000000000001',#40,'W1',$,$,$,$,$);\n"
    "#2=IFCWALL('0000000000000000000002',#40,'W2',$,$,$,$,$);\n"
    "#3=IFCRELDEFINESBYPROPERTIES('0000000000000000000003',#40,'r',$,(#1,#2),#4);\n"
    "#4=IFCPROPERTYSET('0000000000000000000004',#40,'A','d',(#10,#11));\n"
    "#6=IFCWALLTYPE('0000000000000000000006',#40,'T',$,$,(#8),$,$,$,.STANDARD.);\n"
    "#7=IFCRELDEFINESBYTYPE('0000000000000000000007',#40,$,$,(#1,#2),#6);\n"
    "#8=IFCPROPERTYSET('0000000000000000000008',#40,'T',$,(#9));\n"
    "#9=IFCPROPERTYSINGLEVALUE('t',$,IFCLABEL('type'),$);\n"
    "#10=IFCPROPERTYSINGLEVALUE('x',$,IFCLENGTHMEASURE(1.),$);\n"
    "#11=IFCCOMPLEXPROPERTY('c',$,'u',(#16));\n"
    "#12=IFCRELDEFINESBYPROPERTIES('0000000000000000000012',#40,$,$,(#1),#13);\n"
    "#13=IFCPROPERTYSET('0000000000000000000013',#40,'Own',$,(#10,#17,#18));\n"
    "#14=IFCRELDEFINESBYPROPERTIES('0000000000000000000014',#40,$,$,(#1),#15);\n"
    "#15=IFCELEMENTQUANTITY('0000000000000000000015',#40,'Q',$,$,(#19));\n"
    "#16=IFCPROPERTYSINGLEVALUE('y',$,IFCINTEGER(1),$);\n"
    "#17=IFCPROPERTYSINGLEVALUE('mine',$,IFCLABEL('a'),$);\n"
    "#18=IFCPROPERTYLISTVALUE('list',$,(IFCINTEGER(1)),$);\n"
    "#19=IFCQUANTITYLENGTH('Width',$,$,300.);\n"
    "#20=IFCCARTESIANPOINT((1.,2.));\n"
    "#30=IFCRELDEFINESBYPROPERTIES('0000000000000000000030',#40,$,$,(#1),#31);\n"
    "#31=IFCDOORPANELPROPERTIES('0000000000000000000031',#40,'Panel',$,0.04,.SWINGING.,$,.LEFT.,$);\n"
    "#40=IFCOWNERHISTORY(#41,#42,$,.ADDED.,$,$,$,0);\n"
    "#41=IFCPERSONANDORGANIZATION(#43,#44,$);\n"
    "#42=IFCAPPLICATION(#44,'1','Tool','T');\n"
    "#43=IFCPERSON($,'Doe',$,$,$,$,$,$);\n"
    "#44=IFCORGANIZATION($,'Works',$,$,$);\n";

KcString text(const char* utf8) {
    return KcString(utf8, KcString::Encoding::utf8);
}

void expectDifferentIds(const KpIfcModel& model) {
    std::set<std::string> ids;
    for (const KpIfcEntityBase* root : model.instances("IfcRoot")) {
        KpIfcVariant id;
        root->getAttr("GlobalId", id);
        EXPECT_TRUE(ids.insert(id.getIf<KpIfcGUID>()->constStr()).second) << root->instanceName();
    }
}

class SetPropertyTest : public testing::Test {
protected:
    KP::ErrorStatus set(std::uint64_t object, const char* set, const char* name, const char* type,
                        const KpIfcVariant& value) {
        m_error.clear();
        return setProperty(*model().find(object).openObject(), set, name, type, value, m_error);
    }
    KpIfcModel& model() { return *m_file.model(); }
    std::vector<std::string> lines(std::uint64_t object) { return linesOf(model(), object); }
    /// The records that are new or other than before.
    std::vector<std::string> changedRecords() {
        const std::string before = kRecords;
        std::vector<std::string> changed;
        std::istringstream now(savedRecords(m_file));
        for (std::string line; std::getline(now, line);) {
            if (before.find(line + '\n') == std::string::npos) changed.push_back(line);
        }
        return changed;
    }

    KpIfcFile m_file = openedRecords(kRecords);
    std::string m_error;
};

TEST_F(SetPropertyTest, ChangesWhatTheObjectAloneHas) {
    EXPECT_EQ(set(1, "Own", "mine", "", text("Tür")), KP::eOk) << m_error;
    EXPECT_EQ(set(1, "Q", "Width", "ifclengthmeasure", 250), KP::eOk) << m_error;
    EXPECT_THAT(changedRecords(), ElementsAre("#17=IFCPROPERTYSINGLEVALUE('mine',$,IFCLABEL('T\\X2\\00FC\\X0\\r'),$);",
                                              "#19=IFCQUANTITYLENGTH('Width',$,$,250.);"));
    EXPECT_EQ(set(1, "Own", "mine", "ifcboolean", true), KP::eOk) << m_error; // another type
    EXPECT_THAT(lines(1), Contains("Own|mine|single|.T.|IfcBoolean|"));
    EXPECT_THAT(lines(2), SizeIs(3));
}

TEST_F(SetPropertyTest, SplitsWhatObjectsShare) {
    const std::vector<std::string> others = lines(2);
    EXPECT_EQ(set(1, "A", "x", "", 2), KP::eOk) << m_error;
    EXPECT_THAT(lines(1), Contains("A|x|single|2.|IfcLengthMeasure|"));
    EXPECT_THAT(lines(1), Contains("A|c/y|single|1|IfcInteger|"));
    EXPECT_THAT(lines(1), Contains("Own|x|single|1.|IfcLengthMeasure|")); // the entry was shared, too
    EXPECT_EQ(lines(2), others);
    const std::vector<std::string> changed = changedRecords();
    ASSERT_THAT(changed, SizeIs(4));
    EXPECT_EQ(changed[0], "#3=IFCRELDEFINESBYPROPERTIES('0000000000000000000003',#40,'r',$,(#2),#4);");
    std::string all;
    for (const std::string& record : changed) all += record + '\n';
    EXPECT_THAT(all, HasSubstr(",#40,'A','d',(#11,")); // the copy of the set; complex ones stay shared
    EXPECT_THAT(all, HasSubstr(",#40,'r',$,(#1),#4")); // of the relation
    EXPECT_THAT(all, HasSubstr("('x',$,IFCLENGTHMEASURE(2.),$)"));
    expectDifferentIds(model());

    // Then it is the object's own, and nothing more is made.
    const std::size_t count = model().count();
    EXPECT_EQ(set(1, "A", "x", "", 3), KP::eOk) << m_error;
    EXPECT_EQ(model().count(), count);
    EXPECT_EQ(lines(2), others);
}

TEST_F(SetPropertyTest, CopiesComplexOnesOnTheWayDown) {
    const std::vector<std::string> others = lines(2);
    EXPECT_EQ(set(1, "A", "c/y", "", 2), KP::eOk) << m_error;
    EXPECT_THAT(lines(1), Contains("A|c/y|single|2|IfcInteger|"));
    EXPECT_EQ(lines(2), others);
}

TEST_F(SetPropertyTest, CopiesAnEntryThatTwoSetsHold) {
    EXPECT_EQ(set(1, "Own", "x", "", 5.), KP::eOk) << m_error;
    EXPECT_THAT(lines(1), Contains("Own|x|single|5.|IfcLengthMeasure|"));
    EXPECT_THAT(lines(1), Contains("A|x|single|1.|IfcLengthMeasure|"));
    EXPECT_THAT(changedRecords(), ElementsAre("#13=IFCPROPERTYSET('0000000000000000000013',#40,'Own',$,(#17,#18,#45));",
                                              "#45=IFCPROPERTYSINGLEVALUE('x',$,IFCLENGTHMEASURE(5.),$);"));
}

TEST_F(SetPropertyTest, AddsToASetAndSplitsItWhereItIsShared) {
    EXPECT_EQ(set(1, "Own", "new", "IfcLabel", text("n")), KP::eOk) << m_error;
    EXPECT_THAT(changedRecords(),
                ElementsAre("#13=IFCPROPERTYSET('0000000000000000000013',#40,'Own',$,(#10,#17,#18,#45));",
                            "#45=IFCPROPERTYSINGLEVALUE('new',$,IFCLABEL('n'),$);"));
    const std::vector<std::string> others = lines(2);
    EXPECT_EQ(set(1, "A", "new", "IfcLabel", text("n")), KP::eOk) << m_error;
    EXPECT_THAT(lines(1), Contains("A|new|single|'n'|IfcLabel|"));
    EXPECT_EQ(lines(2), others);
}

/// The set of the type stays as it is; the object's own one hides the value.
TEST_F(SetPropertyTest, MakesTheSetThatTheObjectHasNot) {
    EXPECT_EQ(set(1, "T", "t", "IfcLabel", text("own")), KP::eOk) << m_error;
    EXPECT_EQ(set(2, "Fresh", "f", "IfcLogical", KpIfcLogical(KpIfcLogical::Unknown)), KP::eOk) << m_error;
    EXPECT_THAT(lines(1), Contains("T|t|single|'own'|IfcLabel|"));
    EXPECT_THAT(lines(1), testing::Not(Contains(testing::EndsWith("|type"))));
    EXPECT_THAT(lines(2), Contains("T|t|single|'type'|IfcLabel||type"));
    EXPECT_THAT(lines(2), Contains("Fresh|f|single|.U.|IfcLogical|"));

    // It is in the file that is written, with ids of its own.
    KpIfcFile written = opened(saved(m_file));
    EXPECT_TRUE(written.report().isClean()) << findings(written.report());
    EXPECT_EQ(linesOf(*written.model(), 1), lines(1));
    EXPECT_EQ(linesOf(*written.model(), 2), lines(2));
    const std::vector<std::string> changed = changedRecords();
    ASSERT_THAT(changed, SizeIs(6));
    EXPECT_THAT(changed[1], HasSubstr("=IFCPROPERTYSET('"));
    EXPECT_THAT(changed[1], HasSubstr("',#40,'T',$,(#45));"));
    EXPECT_THAT(changed[2], HasSubstr("',#40,$,$,(#1),#46);"));
    expectDifferentIds(*written.model());
}

TEST_F(SetPropertyTest, WhatATypeHasTooStaysTheTypes) {
    model().find(30).openObject()->putAttr("RelatingPropertyDefinition", model().find(8));
    EXPECT_EQ(set(1, "T", "t", "", text("own")), KP::eOk) << m_error;
    EXPECT_THAT(lines(1), Contains("T|t|single|'own'|IfcLabel|"));
    EXPECT_THAT(lines(2), Contains("T|t|single|'type'|IfcLabel||type"));
    expectDifferentIds(model());
}

TEST_F(SetPropertyTest, TypesHaveSetsOfTheirOwn) {
    EXPECT_EQ(set(6, "T", "t", "", text("changed")), KP::eOk) << m_error;
    EXPECT_EQ(set(6, "N", "n", "IfcReal", 1), KP::eOk) << m_error;
    EXPECT_THAT(lines(6), ElementsAre("T|t|single|'changed'|IfcLabel|", "N|n|single|1.|IfcReal|"));
    EXPECT_THAT(lines(2), Contains("T|t|single|'changed'|IfcLabel||type"));
    // One that an object has as well is copied.
    model().find(30).openObject()->putAttr("RelatingPropertyDefinition", model().find(8));
    EXPECT_EQ(set(6, "T", "t", "", text("type's")), KP::eOk) << m_error;
    EXPECT_THAT(lines(6), Contains("T|t|single|'type''s'|IfcLabel|"));
    EXPECT_THAT(lines(1), Contains("T|t|single|'changed'|IfcLabel|"));
}

TEST_F(SetPropertyTest, EntriesThatARelationOverrides) {
    KpIfcEntityBase& relation = *model().create("IfcRelOverridesProperties");
    KpIfcEntityBase& entry = *model().create("IfcPropertySingleValue");
    entry.putAttr("Name", "x");
    relation.putAttr("RelatingPropertyDefinition", model().find(4));
    relation.putAttr("OverridingProperties", KpIfcArray<KpDbObjectId>{entry.objectId()});
    relation.putAttr("RelatedObjects", KpIfcArray<KpDbObjectId>{model().find(1)});
    const std::vector<std::string> others = lines(2);
    EXPECT_EQ(set(1, "A", "x", "IfcReal", 4), KP::eOk) << m_error;
    EXPECT_THAT(lines(1), Contains("A|x|single|4.|IfcReal|"));
    EXPECT_EQ(lines(2), others);
    relation.putAttr("RelatedObjects", KpIfcArray<KpDbObjectId>{model().find(1), model().find(2)});
    EXPECT_EQ(set(1, "A", "x", "IfcReal", 5), KP::eRefused);
    EXPECT_THAT(m_error, HasSubstr("overrides that of several objects"));
}

struct Refused {
    std::uint64_t object;
    const char* set;
    const char* name;
    const char* type;
    KpIfcVariant value;
    const char* said;
};

TEST_F(SetPropertyTest, RefusesWithoutAChange) {
    const double infinite = std::numeric_limits<double>::infinity();
    const Refused cases[] = {
        {1, "Own", "list", "IfcInteger", 1, "is an IfcPropertyListValue"},
        {1, "Own", "mine", "IfcReal", text("oak"), "no IfcReal"},
        {1, "Own", "mine", "IfcWall", 1., "IfcWall is no type of values"},
        {1, "Own", "mine", "", KpIfcVariant(), "no IfcLabel"},
        {1, "Own", "new", "", 1., "which type"},
        {1, "Own", "new", "IfcReal", infinite, "no IfcReal"},
        {1, "Own", "new", "IfcReal", Consts::KpRealUnset, "no IfcReal"},
        {1, "Own", "new", "IfcInteger", 1.5, "no IfcInteger"},
        {1, "Own", "new", "IfcLabel", Consts::KpStringUnset, "no IfcLabel"},
        {1, "Q", "Width", "IfcAreaMeasure", 1., "is of type IfcLengthMeasure"},
        {1, "Q", "Width", "", text("wide"), "no IfcLengthMeasure"},
        {1, "Q", "Height", "IfcLengthMeasure", 1., "Q is an IfcElementQuantity"},
        {1, "Panel", "PanelDepth", "IfcReal", 1., "is an attribute of an IfcDoorPanelProperties"},
        {1, "Panel", "Other", "IfcReal", 1., "Panel is an IfcDoorPanelProperties"},
        {1, "", "x", "IfcReal", 1., "need names"},
        {1, "A", "", "IfcReal", 1., "need names"},
        {4, "A", "x", "IfcReal", 1., "IfcPropertySet has no property sets"},
        {20, "A", "x", "IfcReal", 1., "IfcCartesianPoint has no property sets"},
    };
    for (const Refused& refused : cases) {
        EXPECT_EQ(set(refused.object, refused.set, refused.name, refused.type, refused.value), KP::eRefused)
            << refused.said;
        EXPECT_THAT(m_error, HasSubstr(refused.said));
    }
    model().mode(kReadOnly);
    EXPECT_EQ(set(1, "Own", "mine", "", text("b")), KP::eRefused);
    EXPECT_THAT(m_error, HasSubstr("may not be written"));
    model().mode(kReadWrite);
    EXPECT_THAT(changedRecords(), testing::IsEmpty());

    std::unique_ptr<KpIfcEntityBase> nobodys(model().schema().findEntity("IfcWall")->createInstance());
    EXPECT_EQ(setProperty(*nobodys, "A", "x", "IfcReal", 1., m_error), KP::eNullEntity);
    model().create("IfcCartesianPoint", UINT64_MAX - 1);
    EXPECT_EQ(set(1, "Own", "new", "IfcReal", 1.), KP::eRefused);
    EXPECT_THAT(m_error, HasSubstr("names left"));
}

TEST_F(SetPropertyTest, TextsOfModelsThatKeepThemEncoded) {
    const bool former = settings().get_useUTF8();
    settings().set_useUTF8(false);
    KpIfcFile file = openedRecords(kRecords);
    settings().set_useUTF8(true); // of another model
    KpIfcEntityBase& wall = *file.model()->find(1).openObject();
    EXPECT_EQ(setProperty(wall, "Größe", "é", "IfcLabel", text("木"), m_error), KP::eOk) << m_error;
    EXPECT_EQ(setProperty(wall, "Größe", "é", "", text("\U0001F3E0"), m_error), KP::eOk) << m_error;
    EXPECT_THAT(savedRecords(file), HasSubstr("('\\X2\\00E9\\X0\\',$,IFCLABEL('\\X4\\0001F3E0\\X0\\'),$)"));
    EXPECT_THAT(linesOf(*file.model(), 1), Contains(testing::StartsWith("Größe|é|single|")));
    settings().set_useUTF8(former);
}

} // namespace
