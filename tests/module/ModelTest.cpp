#include "Environment.h"

#include <IFC2X3/IfcElement.h>
#include <IFC2X3/IfcPerson.h>
#include <IFC2X3/IfcWall.h>
#include <IFC2X3/IfcWallStandardCase.h>
#include <KpIfcCore/KpIfcErase.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace KP_SDAI;
using namespace IFC2X3;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

template <class Range>
std::vector<std::uint64_t> names(const Range& range) {
    std::vector<std::uint64_t> found;
    for (const KpIfcEntityBase* instance : range) {
        found.push_back(instance->instanceName());
    }
    return found;
}

TEST(Model, FindsInstancesByEntity) {
    KpIfcFile file = openedRecords("#9=IFCWALL('a123456789012345678901',$,$,$,$,$,$,$);\n"
                                   "#2=IFCWALLSTANDARDCASE('b123456789012345678901',$,$,$,$,$,$,$);\n"
                                   "#5=IFCDOOR('c123456789012345678901',$,$,$,$,$,$,$,$,$);\n"
                                   "#6=IFCNOTHING($);\n"
                                   "#1=IFCCARTESIANPOINT((0.,0.));\n");
    const KpIfcModel& model = *file.model();
    EXPECT_THAT(names(model.instances()), ElementsAre(1, 2, 5, 9));
    EXPECT_THAT(names(model.instances<IfcWall>()), ElementsAre(2, 9));
    EXPECT_THAT(names(model.instances<IfcWall>(false)), ElementsAre(9));
    EXPECT_THAT(names(model.instances<IfcWallStandardCase>()), ElementsAre(2));
    EXPECT_THAT(names(model.instances<IfcElement>()), ElementsAre(2, 5, 9));
    EXPECT_THAT(names(model.instances<IfcElement>(false)), IsEmpty());
    EXPECT_THAT(names(model.instances("ifcbuildingelement")), ElementsAre(2, 5, 9));
    EXPECT_THAT(names(model.instances("IfcWall", false)), ElementsAre(9));
    EXPECT_THAT(names(model.instances("IfcNothing")), IsEmpty());
    EXPECT_THAT(names(model.instances(static_cast<const KpIfcEntityType*>(nullptr))), IsEmpty());
    EXPECT_EQ(model.count(), 4u);
    EXPECT_EQ(model.keptRecordCount(), 1u);
    EXPECT_EQ(model.highestName(), 9u);
}

TEST(Model, TellsTheOrderOfTheFileAndWhatIsKeptAsText) {
    KpIfcFile file = openedRecords("#9=IFCWALL('a123456789012345678901',$,$,$,$,$,$,$);\n"
                                   "#6=IFCNOTHING( $ );\n"
                                   "#2=IFCCARTESIANPOINT((0.,0.));\n"
                                   "#5=IFCCARTESIANPOINT((0.,0.));\n");
    KpIfcModel& model = *file.model();
    model.create("IfcWall", 1);
    std::vector<std::uint64_t> order;
    for (const KpDbObjectId& handle : model.fileOrder()) {
        order.push_back(handle.instanceName());
    }
    EXPECT_THAT(order, ElementsAre(9, 2, 5, 1));
    EXPECT_EQ(model.keptRecord(model.find(6)), "#6=IFCNOTHING( $ );");
    EXPECT_EQ(model.keptRecord(model.find(9)), "");
    EXPECT_EQ(model.keptRecord(KpDbObjectId()), "");
}

TEST(Model, CreatesUnderFreeNamesOnly) {
    KpIfcFile file = openedRecords("#7=IFCWALL('a123456789012345678901',$,$,$,$,$,$,$);\n#8=IFCNOTHING($);\n");
    KpIfcModel& model = *file.model();
    EXPECT_EQ(model.create("IfcWall", 7), nullptr);
    EXPECT_EQ(model.create("IfcWall", 8), nullptr); // taken by a record that is kept as text
    EXPECT_EQ(model.create("IfcNothing"), nullptr);
    EXPECT_EQ(model.create("IfcElement"), nullptr); // abstract
    EXPECT_EQ(model.create("IfcRoot", 3), nullptr);
    EXPECT_EQ(model.create<IfcWall>()->instanceName(), 9u);
    EXPECT_EQ(model.create("IFCWALL", 3)->instanceName(), 3u);
    EXPECT_EQ(model.create("ifcwall")->instanceName(), 10u);
    EXPECT_EQ(model.count(), 4u);
    EXPECT_TRUE(model.find(3).openObject()->isInstanceOf(IfcWall::g_pEntityType));
    EXPECT_EQ(model.find(3).model(), &model);
    EXPECT_TRUE(model.find(4).isNull());
    EXPECT_TRUE(model.find(0).isNull());
    EXPECT_TRUE(model.find(~std::uint64_t{0}).isNull());
    EXPECT_TRUE(model.find(8).isDefined());
    EXPECT_EQ(model.find(8).openObject(), nullptr);
    EXPECT_THAT(names(model.instances()), ElementsAre(3, 7, 9, 10));
}

/// Names may be dense, thinly spread or huge; a walk is in ascending order all the same, and every name is found.
TEST(Model, WalksScatteredNamesInAscendingOrder) {
    std::mt19937_64 random(20240229);
    std::vector<std::uint64_t> expected;
    for (std::uint64_t name = 1; name <= 2000; ++name) {
        expected.push_back(name);                                                           // dense
        expected.push_back(3000 + (random() % 400'000'000));                                // thin
        expected.push_back((std::uint64_t{1} << 31) + random() % (std::uint64_t{1} << 62)); // huge
    }
    std::sort(expected.begin(), expected.end());
    expected.erase(std::unique(expected.begin(), expected.end()), expected.end());
    std::vector<std::uint64_t> shuffled = expected;
    std::shuffle(shuffled.begin(), shuffled.end(), random);

    KpIfcFile created = emptyFile();
    std::string records;
    for (const std::uint64_t name : shuffled) {
        ASSERT_TRUE(created.model()->create("IfcCartesianPoint", name));
        records += '#' + std::to_string(name) + "=IFCCARTESIANPOINT((0.,0.));\n";
    }
    KpIfcFile read = openedRecords(records);
    for (const KpIfcFile* file : {&created, &read}) {
        EXPECT_EQ(names(file->model()->instances()), expected);
        EXPECT_EQ(names(file->model()->instances("IfcPoint")), expected);
        for (const std::uint64_t name : shuffled) {
            ASSERT_EQ(file->model()->find(name).instanceName(), name);
        }
    }
    EXPECT_EQ(recordsOf(rewritten(read)), records); // a file keeps its own order
}

/// Aggregates of created instances lie in the model's memory, as far as they do not outgrow it; copies do not.
TEST(Model, CreatedInstancesHoldAggregatesThatCopiesOutlive) {
    KpIfcFile file = emptyFile();
    auto* const person = file.model()->create<IfcPerson>();
    const KpIfcArray<KpAnsiString> names{"a first name", "a second name"};
    person->setMiddleNames(names);
    ASSERT_TRUE(person->putAttr("PrefixTitles", names));
    for (int i = 2; i < 100; ++i) person->getMiddleNames().append(names[static_cast<std::size_t>(i % 2)]);
    const IfcPerson grown(*person);
    person->setMiddleNames(IfcPerson().getMiddleNames()); // nil
    EXPECT_TRUE(person->getMiddleNames().isNil());
    person->setMiddleNames(names);
    const IfcPerson copy(*person);
    const KpDbObjectId handle = person->objectId();
    ASSERT_EQ(erase(*file.model(), {&handle, 1}, KpIfcErasePolicy::refuse).status, KP::eOk);
    person->setMiddleNames(KpIfcArray<KpAnsiString>{"of no model"}); // its memory stays
    file.close();
    for (const auto* held : {&copy.getMiddleNames(), &copy.getPrefixTitles()})
        EXPECT_THAT(*held, ElementsAre(names[0], names[1]));
    EXPECT_EQ(grown.getMiddleNames().size(), 100u);
    EXPECT_EQ(grown.getMiddleNames()[99], names[1]);
}

TEST(Model, CreatesNothingWhereNoNameIsLeft) {
    KpIfcFile file = emptyFile();
    ASSERT_TRUE(file.model()->create("IfcWall", ~std::uint64_t{0}));
    EXPECT_EQ(file.model()->create("IfcWall"), nullptr);
    EXPECT_TRUE(file.model()->find(0).isNull());
    EXPECT_TRUE(file.model()->create("IfcWall", 1));
}

TEST(Model, HandlesOrderByModelAndName) {
    KpIfcFile first = emptyFile();
    KpIfcFile second = emptyFile();
    const KpDbObjectId later = second.model()->create("IfcWall", 1)->objectId();
    const KpDbObjectId b = first.model()->create("IfcWall", 5'000'000'000)->objectId();
    const KpDbObjectId a = first.model()->create("IfcWall", 3)->objectId();
    EXPECT_TRUE(a < b && b < later && a < later);
    EXPECT_FALSE(b < a || later < a || a < a);
    EXPECT_TRUE(KpDbObjectId() < a);
    EXPECT_FALSE(a < KpDbObjectId() || KpDbObjectId() < KpDbObjectId());
}

TEST(Model, ModeIsTheProgramsChoice) {
    KpIfcFile file = emptyFile();
    EXPECT_EQ(file.model()->mode(), kReadWrite);
    auto* wall = file.model()->create<IfcWall>();
    for (const SdaiAccessMode mode : {kAccessUndefined, kReadOnly}) {
        file.model()->mode(mode);
        EXPECT_EQ(wall->owningModel()->mode(), mode);
        wall->setName("typed accessors do not ask");
        EXPECT_EQ(wall->getName().view(), "typed accessors do not ask");
    }
}

} // namespace
