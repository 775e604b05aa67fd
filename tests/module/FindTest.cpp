#include "Environment.h"

#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcErase.h>
#include <KpIfcCore/KpIfcGlobalIds.h>
#include <KpRx/KcString.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <thread>
#include <vector>

using namespace KP_SDAI;
using namespace IFC2X3;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::uint64_t> names(const KpIfcArray<KpDbObjectId>& handles) {
    std::vector<std::uint64_t> names;
    for (const KpDbObjectId& handle : handles) {
        names.push_back(handle.instanceName());
    }
    return names;
}

/// The 22 digits group by group: one byte in two, each three more in four.
std::string inGroups(const std::string& hex) {
    constexpr char kDigits[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
    std::string text;
    for (std::size_t at = 0, bytes = 1; at < hex.size(); at += 2 * bytes, bytes = 3) {
        unsigned long group = std::stoul(hex.substr(at, 2 * bytes), nullptr, 16);
        std::string digits(bytes + 1, '0');
        for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, group /= 64) {
            *digit = kDigits[group % 64];
        }
        text += digits;
    }
    return text;
}

TEST(GlobalIds, AreUuidsToTheBase64) {
    EXPECT_STREQ(globalIdOfUuid("00000000-0000-0000-0000-000000000000"), "0000000000000000000000");
    EXPECT_STREQ(globalIdOfUuid("ffffffff-FFFF-ffff-ffff-ffffffffffff"), "3$$$$$$$$$$$$$$$$$$$$$");
    EXPECT_STREQ(globalIdOfUuid("40000000-0000-0000-0000-00000000003f"), "100000000000000000000$");
    EXPECT_EQ(uuidOfGlobalId("3$$$$$$$$$$$$$$$$$$$$$"), "ffffffff-ffff-ffff-ffff-ffffffffffff");
    for (int i = 0; i < 1000; ++i) {
        const KpIfcGUID globalId = newGlobalId();
        ASSERT_TRUE(isGlobalId(globalId.constStr())) << globalId.constStr();
        const std::string uuid = uuidOfGlobalId(globalId.constStr());
        EXPECT_EQ(globalIdOfUuid(uuid), globalId) << uuid;
        std::string hex;
        for (const char c : uuid) {
            hex += c == '-' ? "" : std::string(1, c);
        }
        ASSERT_EQ(hex.size(), 32u) << uuid;
        EXPECT_EQ(inGroups(hex), globalId.constStr()) << uuid;
    }
    for (const char* text : {"", "4000000000000000000000", "000000000000000000000", "00000000000000000000000",
                             "000000000000000000000-", "000000000000000000000\xC3"}) {
        EXPECT_FALSE(isGlobalId(text)) << text;
        EXPECT_EQ(uuidOfGlobalId(text), "") << text;
    }
    for (const char* text : {"", "0000000000000000000000000000000000000", "00000000-0000-0000-0000-00000000000g",
                             "00000000000000000000000000000000-----", "00000000-0000-0000-0000-0000000000000"}) {
        EXPECT_TRUE(globalIdOfUuid(text).isUnset()) << text;
    }
}

TEST(Find, ByGlobalIdFollowsChanges) {
    KpIfcFile file = openedRecords("#1=IFCWALL('0000000000000000000001',$,$,$,$,$,$,$);\n"
                                   "#2=IFCWALL('0000000000000000000002',$,$,$,$,$,$,$);\n"
                                   "#3=IFCWALL('0000000000000000000001',$,$,$,$,$,$,$);\n"
                                   "#4=IFCWALL('',$,$,$,$,$,$,$);\n#5=IFCWALL('',$,$,$,$,$,$,$);\n"
                                   "#6=IFCPERSON('0000000000000000000006',$,$,$,$,$,$,$);\n");
    KpIfcModel& model = *file.model();
    const auto all = [&](const char* globalId) { return names(model.findAllByGlobalId(globalId)); };
    EXPECT_EQ(model.findByGlobalId("0000000000000000000001"), model.find(1));
    EXPECT_THAT(all("0000000000000000000001"), ElementsAre(1, 3));
    EXPECT_TRUE(model.findByGlobalId("").isNull());
    EXPECT_TRUE(model.findByGlobalId("0000000000000000000006").isNull());
    EXPECT_TRUE(model.findByGlobalId("000000000000000000000").isNull());
    const auto shared = model.sharedGlobalIds();
    ASSERT_EQ(shared.size(), 1u);
    EXPECT_STREQ(shared[0].globalId, "0000000000000000000001");
    EXPECT_THAT(names(shared[0].instances), ElementsAre(1, 3));

    as<IfcWall>(model.find(1))->setGlobalId(KpIfcGUID("0000000000000000000002"));
    EXPECT_THAT(all("0000000000000000000001"), ElementsAre(3));
    EXPECT_THAT(all("0000000000000000000002"), ElementsAre(1, 2));
    as<IfcWall>(model.find(1))->setGlobalId(KpIfcGUID("0000000000000000000001")); // entered twice under it now
    EXPECT_THAT(all("0000000000000000000001"), ElementsAre(1, 3));
    const KpDbObjectId first = model.find(1);
    erase(model, {&first, 1});
    EXPECT_EQ(model.findByGlobalId("0000000000000000000001"), model.find(3));

    const KpIfcEntityBase* created = model.createRooted("IfcDoor");
    ASSERT_TRUE(created);
    KpIfcVariant globalId;
    ASSERT_TRUE(created->getAttr("GlobalId", globalId));
    EXPECT_TRUE(isGlobalId(globalId.getIf<KpIfcGUID>()->constStr()));
    EXPECT_EQ(model.findByGlobalId(globalId.getIf<KpIfcGUID>()->constStr()), created->objectId());
    EXPECT_FALSE(model.createRooted("IfcPerson"));
    EXPECT_FALSE(model.createRooted("IfcRoot"));
}

TEST(Find, ByGlobalIdMayBeAskedByManyThreadsOfAModelAtRest) {
    std::string records;
    for (int i = 1; i < 2000; ++i) {
        char globalId[23];
        std::snprintf(globalId, sizeof globalId, "%022d", i % 1000);
        records += '#' + std::to_string(i) + "=IFCWALL('" + globalId + "',$,$,$,$,$,$,$);\n";
    }
    const KpIfcFile file = openedRecords(records);
    std::size_t counts[4] = {};
    std::vector<std::thread> threads;
    for (std::size_t& count : counts) {
        threads.emplace_back([&] { count = file.model()->findAllByGlobalId("0000000000000000000007").size(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(counts, testing::Each(2u));
}

struct Wanted {
    const char* entity;
    const char* attribute;
    KpIfcVariant value;
    std::vector<std::uint64_t> found;
};

TEST(Find, ByAttribute) {
    KpIfcFile file =
        openedRecords("#1=IFCWALL('0000000000000000000001',$,'Zo\\X\\EB',$,$,#9,$,$);\n"
                      "#2=IFCWALL('0000000000000000000002',$,'B',$,$,$,$,$);\n"
                      "#3=IFCSITE('0000000000000000000003',$,'B',$,$,#9,$,$,.ELEMENT.,(47,30,15),$,440.,$,$);\n"
                      "#4=IFCPROPERTYSINGLEVALUE('P',$,IFCLENGTHMEASURE(2.5),#8);\n"
                      "#5=IFCPROPERTYSINGLEVALUE('P',$,IFCLABEL('x'),$);\n"
                      "#6=IFCCARTESIANPOINT((0.,1.5));\n"
                      "#7=IFCPOLYLINE((#6,#6));\n"
                      "#8=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);\n"
                      "#9=IFCLOCALPLACEMENT($,$);\n"
                      "#10=IFCFACEBOUND(#7,.F.);\n");
    const KpIfcModel& model = *file.model();
    const KcString unicode("Zo\xC3\xAB", KcString::Encoding::utf8);
    const Wanted cases[] = {
        {"IfcProduct", "Name", "B", {2, 3}},
        {"ifcwall", "NAME", KpAnsiString("B"), {2}},
        {"IfcRoot", "Name", unicode, {1}},
        {"IfcRoot", "GlobalId", "0000000000000000000002", {2}},
        {"IfcRoot", "Description", KpIfcVariant(), {1, 2, 3}},
        {"IfcProduct", "ObjectPlacement", model.find(9), {1, 3}},
        {"IfcProduct", "ObjectPlacement", KpIfcVariant(), {2}},
        {"IfcSite", "RefElevation", 440, {3}},
        {"IfcSite", "CompositionType", "element", {3}},
        {"IfcSite", "CompositionType", "COMPLEX", {}},
        {"IfcSite", "RefLatitude", KpIfcArray<int>{47, 30, 15}, {3}},
        {"IfcPropertySingleValue", "NominalValue", 2.5, {4}},
        {"IfcPropertySingleValue", "NominalValue", "x", {5}},
        {"IfcPropertySingleValue", "Unit", model.find(8), {4}},
        {"IfcCartesianPoint", "Coordinates", KpIfcArray<double>{0, 1.5}, {6}},
        {"IfcPolyline", "Points", KpIfcArray<KpDbObjectId>{model.find(6), model.find(6)}, {7}},
        {"IfcPolyline", "Points", KpIfcArray<KpDbObjectId>{model.find(6)}, {}},
        {"IfcFaceBound", "Orientation", false, {10}},
        {"IfcNothing", "Name", "B", {}},
        {"IfcWall", "Nothing", "B", {}},
        {"IfcWall", "IsDefinedBy", KpIfcVariant(), {}},
    };
    for (const Wanted& wanted : cases) {
        EXPECT_EQ(names(model.findByAttribute(wanted.entity, wanted.attribute, wanted.value)), wanted.found)
            << wanted.entity << "." << wanted.attribute;
    }
    EXPECT_FALSE(model.hasUncommitted());
}

} // namespace
