#include "Environment.h"

#include <IFC2X3/IfcCartesianPoint.h>
#include <IFC2X3/IfcRelAggregates.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

using namespace KP_SDAI;
using IFC2X3::IfcCartesianPoint;
using IFC2X3::IfcRelAggregates;

TEST(SharedReading, ManyThreadsReadAReadOnlyModelByWhateverAccessor) {
    constexpr int points = 2000;
    std::string records = "#1=IFCPROJECT('0xGO74I1L2sOBnKbLTH2I2',$,$,$,$,$,$,(),$);\n"
                          "#2=IFCSITE('0MTM5$3o53bvtiMQUs8mBn',$,$,$,$,$,$,$,.ELEMENT.,$,$,$,$,$);\n"
                          "#3=IFCRELAGGREGATES('2m8fgbpInA3gjggItJ_BC8',$,$,$,#1,(#2));\n";
    for (int i = 0; i < points; ++i) records += "#" + std::to_string(10 + i) + "=IFCCARTESIANPOINT((1.,2.,3.));\n";
    KpIfcFile file = openedRecords(records);
    KpIfcModel& model = *file.model();
    model.mode(kReadOnly);

    std::atomic<int> sum = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            int mine = 0;
            const KpAnsiString coordinates("coordinates"), isDecomposedBy("isdecomposedby");
            for (IfcCartesianPoint* point : model.instances<IfcCartesianPoint>()) { // not const, as they come
                for (const double x : point->getCoordinates()) mine += static_cast<int>(x);
                KpIfcVariant value;
                point->getAttr(coordinates, value);
            }
            for (IfcRelAggregates* relation : model.instances<IfcRelAggregates>()) {
                mine += static_cast<int>(relation->getRelatedObjects().size());
                KpIfcVariant value;
                KpIfcArray<KpDbObjectId> referrers;
                if (relation->getRelatingObject().openObject()->getAttr(isDecomposedBy, value) && value.get(referrers))
                    mine += static_cast<int>(referrers.size());
            }
            sum += mine;
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(4 * (6 * points + 2), sum);
    EXPECT_FALSE(model.hasUncommitted());
    EXPECT_FALSE(model.find(10).openObject()->isChanged());

    model.mode(kReadWrite);
    model.instances<IfcCartesianPoint>().begin().operator*()->getCoordinates();
    EXPECT_TRUE(model.find(10).openObject()->isChanged());
}
