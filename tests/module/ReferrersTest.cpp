#include "Environment.h"

#include <IFC2X3/IfcPresentationLayerAssignment.h>
#include <IFC2X3/IfcPropertySingleValue.h>
#include <IFC2X3/IfcRelAggregates.h>
#include <IFC2X3/IfcWall.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <thread>

using namespace KP_SDAI;
using namespace IFC2X3;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::uint64_t> referrers(const KpIfcModel& model, std::uint64_t name) {
    std::vector<std::uint64_t> names;
    for (const KpDbObjectId& referrer : model.referrers(model.find(name))) {
        names.push_back(referrer.instanceName());
    }
    return names;
}

TEST(Referrers, ComeThroughEveryKindOfAttribute) {
    KpIfcFile file = openedRecords("#9=IFCPOLYLOOP((#1,#2,#1));\n"                       // a list, the same twice
                                   "#8=IFCVERTEXPOINT(#1);\n"                            // a reference
                                   "#7=IFCGEOMETRICSET((#1,#3));\n"                      // a set of selects
                                   "#6=IFCTRIMMEDCURVE(#3,(#2),(#1),.T.,.CARTESIAN.);\n" // sets of selects
                                   "#5=IFCSTYLEDITEM(#1,(#20),'#2');\n"                  // a text is no reference
                                   "#4=IFCNOTHING(#1);\n"                                // neither is a kept record's
                                   "#1=IFCCARTESIANPOINT((0.,0.));\n"
                                   "#2=IFCCARTESIANPOINT((1.,0.));\n"
                                   "#3=IFCPOLYLINE((#1,#2));\n"
                                   "#20=IFCPRESENTATIONSTYLEASSIGNMENT((#4,#21));\n"
                                   "#21=IFCCURVESTYLE($,$,#22,$);\n"     // a select
                                   "#22=IFCORIENTEDEDGE(*,*,#22,.T.);\n" // to itself; wrong for #21
                                   "#5000000000=IFCVERTEXPOINT(#1);\n");
    const KpIfcModel& model = *file.model();
    EXPECT_THAT(referrers(model, 1), ElementsAre(3, 5, 6, 7, 8, 9, 5'000'000'000));
    EXPECT_THAT(referrers(model, 2), ElementsAre(3, 6, 9));
    EXPECT_THAT(referrers(model, 3), ElementsAre(6, 7));
    EXPECT_THAT(referrers(model, 4), ElementsAre(20)); // a record that is kept as text has referrers, too
    EXPECT_THAT(referrers(model, 20), ElementsAre(5));
    EXPECT_THAT(referrers(model, 22), ElementsAre(21, 22));
    EXPECT_THAT(referrers(model, 5), IsEmpty());
    EXPECT_TRUE(model.referrers(KpDbObjectId()).empty());
    KpIfcFile other = openedRecords("#1=IFCVERTEXPOINT(#2);\n#2=IFCCARTESIANPOINT((0.,0.));\n");
    EXPECT_TRUE(model.referrers(other.model()->find(2)).empty());
}

TEST(Referrers, FollowEdits) {
    KpIfcFile file = openedRecords("#1=IFCWALL('0123456789012345678901',$,$,$,$,$,$,$);\n"
                                   "#2=IFCWALL('1123456789012345678901',$,$,$,$,$,$,$);\n"
                                   "#5=IFCRELAGGREGATES('2123456789012345678901',$,$,$,#1,(#2));\n"
                                   "#6=IFCRELAGGREGATES('3123456789012345678901',$,$,$,#1,(#2));\n"
                                   "#7=IFCPRESENTATIONLAYERASSIGNMENT('',$,(#8),$);\n"
                                   "#8=IFCPOLYLINE(());\n#9=IFCPOLYLINE(());\n");
    KpIfcModel& model = *file.model();
    EXPECT_THAT(referrers(model, 1), ElementsAre(5, 6));
    auto* relation = as<IfcRelAggregates>(model.find(5));
    relation->setName("no reference moves");
    EXPECT_THAT(referrers(model, 1), ElementsAre(5, 6));
    relation->setRelatingObject(model.find(2));
    EXPECT_THAT(referrers(model, 1), ElementsAre(6));
    EXPECT_THAT(referrers(model, 2), ElementsAre(5, 6));
    relation->setRelatedObjects({model.find(1)});
    EXPECT_THAT(referrers(model, 1), ElementsAre(5, 6));
    EXPECT_THAT(referrers(model, 2), ElementsAre(5, 6));
    relation->setRelatingObject(KpDbObjectId());
    EXPECT_THAT(referrers(model, 2), ElementsAre(6));

    auto* layer = as<IfcPresentationLayerAssignment>(model.find(7));
    IfcLayeredItem item;
    ASSERT_TRUE(item.setHandle(model.find(9)));
    layer->setAssignedItems({item});
    EXPECT_THAT(referrers(model, 8), IsEmpty());
    EXPECT_THAT(referrers(model, 9), ElementsAre(7));
    auto* created = as<IfcRelAggregates>(model.create("IfcRelAggregates", 4));
    created->setRelatedObjects({model.find(1), model.find(8)});
    EXPECT_THAT(referrers(model, 1), ElementsAre(4, 5, 6));
    EXPECT_THAT(referrers(model, 8), ElementsAre(4));
}

/// More changes than the index takes in before it is built anew.
TEST(Referrers, FollowManyEdits) {
    KpIfcFile file = emptyFile();
    KpIfcModel& model = *file.model();
    const KpDbObjectId walls[] = {model.create("IfcWall")->objectId(), model.create("IfcWall")->objectId()};
    std::vector<IfcRelAggregates*> relations;
    for (int i = 0; i < 5000; ++i) {
        relations.push_back(model.create<IfcRelAggregates>());
    }
    std::set<std::uint64_t> expected[2];
    for (std::size_t i = 0; i < 3 * relations.size(); ++i) {
        IfcRelAggregates* relation = relations[i * 7 % relations.size()];
        const std::size_t to = i % 2;
        relation->setRelatingObject(walls[to]);
        expected[to].insert(relation->instanceName());
        expected[1 - to].erase(relation->instanceName());
        if (i % 499 == 0) {
            for (const std::size_t wall : {0, 1}) {
                ASSERT_THAT(referrers(model, walls[wall].instanceName()), testing::ElementsAreArray(expected[wall]))
                    << i;
            }
        }
    }
}

TEST(Referrers, MayBeAskedForByManyThreadsOfAModelAtRest) {
    std::string records = "#1=IFCCARTESIANPOINT((0.,0.));\n";
    for (int i = 2; i < 2000; ++i) {
        records += '#' + std::to_string(i) + "=IFCVERTEXPOINT(#1);\n";
    }
    const KpIfcFile file = openedRecords(records);
    std::size_t counts[4] = {};
    std::vector<std::thread> threads;
    for (std::size_t& count : counts) {
        threads.emplace_back([&] { count = referrers(*file.model(), 1).size(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(counts, testing::Each(1998u));
}

} // namespace
