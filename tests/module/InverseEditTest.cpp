#include "Environment.h"
#include "InverseTruth.h"

#include <IFC2X3/IfcLocalPlacement.h>
#include <IFC2X3/IfcObjectDefinition.h>
#include <IFC2X3/IfcRelAggregates.h>
#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcInverseMembers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <random>

using namespace KP_SDAI;
using namespace IFC2X3;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kRecords = "#1=IFCWALL('0123456789012345678901',$,$,$,$,$,$,$);\n"
                                 "#2=IFCWALL('1123456789012345678901',$,$,$,$,$,$,$);\n"
                                 "#3=IFCWALL('2123456789012345678901',$,$,$,$,$,$,$);\n"
                                 "#5=IFCRELAGGREGATES('3123456789012345678901',$,$,$,#1,(#2));\n";

TEST(InverseEdit, IsSeenByTheNextRead) {
    KpIfcFile file = openedRecords(kRecords);
    KpIfcModel& model = *file.model();
    auto* relation = as<IfcRelAggregates>(model.find(5));
    const auto decomposing = [&](std::uint64_t name) { return inverseOf(model, name, "IsDecomposedBy"); };
    const auto decomposed = [&](std::uint64_t name) { return inverseOf(model, name, "Decomposes"); };

    relation->setRelatingObject(model.find(3));
    EXPECT_TRUE(relation->isUncommitted());
    EXPECT_TRUE(model.hasUncommitted());
    const KpIfcInverseFacts& row = IfcObjectDefinition::facts().inverses[1];
    ASSERT_STREQ(row.name, "IsDecomposedBy");
    EXPECT_TRUE(row.members(*model.find(1).openObject()).set(row.index).contains(relation->objectId())); // not yet
    EXPECT_THAT(decomposing(1), IsEmpty());
    EXPECT_THAT(decomposing(3), ElementsAre(5));
    EXPECT_FALSE(relation->isUncommitted());
    EXPECT_FALSE(model.hasUncommitted());
    EXPECT_TRUE(relation->isChanged());

    auto& related = relation->getRelatedObjects();
    related.add(model.find(1));
    related.add(model.find(3));
    related.remove(model.find(2)); // below is one more
    EXPECT_THAT(decomposed(1), ElementsAre(5));
    EXPECT_THAT(decomposed(2), IsEmpty());
    EXPECT_THAT(decomposed(3), ElementsAre(5));

    relation->setName("no reference moves");
    EXPECT_THAT(decomposed(1), ElementsAre(5));
    relation->setRelatingObject(KpDbObjectId());
    EXPECT_THAT(decomposing(3), IsEmpty());

    auto* created = model.create<IfcRelAggregates>(); // #6
    EXPECT_TRUE(created->isChanged());
    created->setRelatedObjects({model.find(2), model.find(1)});
    EXPECT_THAT(decomposed(2), ElementsAre(6));
    EXPECT_THAT(decomposed(1), ElementsAre(5, 6));
    *created = *relation;
    EXPECT_THAT(decomposed(2), IsEmpty());
    EXPECT_THAT(decomposed(3), ElementsAre(5, 6));
    EXPECT_EQ(expectTrueInverses(model), 4u);
}

TEST(InverseEdit, AsksForNoAccessMode) {
    KpIfcFile file = openedRecords(kRecords);
    file.model()->mode(kReadOnly);
    as<IfcRelAggregates>(file.model()->find(5))->setRelatingObject(file.model()->find(2));
    EXPECT_THAT(inverseOf(*file.model(), 2, "IsDecomposedBy"), ElementsAre(5));
    EXPECT_THAT(inverseOf(*file.model(), 1, "IsDecomposedBy"), IsEmpty());
}

TEST(InverseEdit, SurvivesEnteringByHand) {
    KpIfcFile file = openedRecords(kRecords);
    KpIfcModel& model = *file.model();
    auto* relation = as<IfcRelAggregates>(model.find(5));
    relation->setRelatingObject(model.find(2));
    relation->setInverseCounterParts();
    relation->resetInverseCounterParts();
    relation->setRelatingObject(model.find(3));
    EXPECT_EQ(expectTrueInverses(model), 2u);
    EXPECT_THAT(inverseOf(model, 3, "IsDecomposedBy"), ElementsAre(5));
}

TEST(InverseEdit, IsCommittedBySaving) {
    KpIfcFile file = openedRecords(kRecords);
    as<IfcRelAggregates>(file.model()->find(5))->setRelatingObject(file.model()->find(2));
    EXPECT_NE(savedRecords(file).find("$,$,$,#2,(#2)"), std::string::npos);
    EXPECT_FALSE(file.model()->hasUncommitted());
}

/// Any sequence of edits leaves what the references say, whether sets grow, shrink, are read after each edit or rarely.
TEST(InverseEdit, LeavesTheTruthAfterManyEdits) {
    constexpr std::uint64_t kWalls = 12;
    std::string records;
    for (std::uint64_t i = 1; i <= kWalls; ++i) {
        records += "#" + std::to_string(i) + "=IFCWALL('0123456789012345678901',$,$,$,$,$,$,$);\n";
    }
    for (std::uint64_t i = 101; i <= 160; ++i) {
        const std::string wall = "#" + std::to_string(i % 3 + 1);
        records +=
            "#" + std::to_string(i) + "=IFCRELAGGREGATES('0123456789012345678901',$,$,$," + wall + ",(#4,#5));\n";
    }
    KpIfcFile file = openedRecords(records);
    KpIfcModel& model = *file.model();
    std::mt19937 random(7);
    const auto wall = [&] { return model.find(random() % (kWalls + 1)); }; // null among them
    for (int round = 0; round < 60; ++round) {
        for (std::uint32_t edits = 1u << random() % 9; edits > 0; --edits) {
            auto* relation = random() % 20 == 0 ? model.create<IfcRelAggregates>()
                                                : as<IfcRelAggregates>(model.find(101 + random() % 60));
            switch (random() % 4) {
            case 0: relation->setRelatingObject(wall()); break;
            case 1: relation->setRelatedObjects({wall(), wall(), wall()}); break;
            case 2: relation->getRelatedObjects().add(wall()); break;
            default: relation->setName("x");
            }
        }
        expectTrueInverses(model);
    }
}

/// Seconds of CPU time that `work` takes, the least of three runs.
double seconds(const std::function<void()>& work) {
    double least = 1e9;
    for (int run = 0; run < 3; ++run) {
        const std::clock_t start = std::clock();
        work();
        least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return least;
}

/// `count` placements that refer to #1, by ascending or descending names.
std::string placements(std::uint64_t count, bool descending) {
    std::string records = "#1=IFCLOCALPLACEMENT($,$);\n#2=IFCLOCALPLACEMENT($,$);\n";
    for (std::uint64_t i = 0; i < count; ++i) {
        records += "#" + std::to_string(descending ? count + 2 - i : i + 3) + "=IFCLOCALPLACEMENT(#1,$);\n";
    }
    return records;
}

/// Ten times the referrers of one instance may take not much more than ten times the time.
TEST(InverseEdit, TakesTimeInProportionToTheReferrers) {
    constexpr std::uint64_t kFew = 20'000;
    constexpr std::uint64_t kMany = 200'000;
    constexpr double kMost = 30; // a quadratic cost would be near 100
    for (const bool descending : {false, true}) {
        SCOPED_TRACE(descending);
        const std::string few = placements(kFew, descending);
        const std::string many = placements(kMany, descending);
        EXPECT_LT(seconds([&] { openedRecords(many); }), kMost * seconds([&] { openedRecords(few); }));
    }

    const auto addAndCommit = [](std::uint64_t count) {
        KpIfcFile file = openedRecords(placements(0, false));
        KpIfcModel& model = *file.model();
        for (std::uint64_t i = 1; i <= count; ++i) {
            model.create<IfcLocalPlacement>()->setPlacementRelTo(model.find(1));
            if (i % 10 == 0) {
                model.commit();
            }
        }
        EXPECT_EQ(inverseOf(model, 1, "ReferencedByPlacements").size(), count);
    };
    EXPECT_LT(seconds([&] { addAndCommit(kMany); }), kMost * seconds([&] { addAndCommit(kFew); }));

    KpIfcFile few = openedRecords(placements(kFew, false));
    KpIfcFile many = openedRecords(placements(kMany, false));
    // All referrers change, alternately from one target to the other; then the inverse is read.
    const auto edit = [](KpIfcFile& file, bool moves) {
        KpIfcModel& model = *file.model();
        const std::size_t count = inverseOf(model, 1, "ReferencedByPlacements").size();
        const KpDbObjectId target = model.find(moves && count ? 2 : 1);
        for (IfcLocalPlacement* placement : model.instances<IfcLocalPlacement>()) {
            if (placement->instanceName() < 3) continue;
            if (moves) {
                placement->setPlacementRelTo(target);
            } else {
                placement->setRelativePlacement(placement->getRelativePlacement());
            }
        }
        EXPECT_EQ(inverseOf(model, target.instanceName(), "ReferencedByPlacements").size(), model.count() - 2);
    };
    for (const bool moves : {false, true}) {
        SCOPED_TRACE(moves);
        EXPECT_LT(seconds([&] { edit(many, moves); }), kMost * seconds([&] { edit(few, moves); }));
    }
}

} // namespace

TEST(InverseEdit, TheSetOfNobodyIsNotForOthersToFill) {
    const KpIfcFile file = openedRecords("#1=IFCWALL('0xGO74I1L2sOBnKbLTH2I2',$,$,$,$,$,$,$);\n"
                                         "#2=IFCWALL('0MTM5$3o53bvtiMQUs8mBn',$,$,$,$,$,$,$);\n");
    KpIfcVariant value;
    ASSERT_TRUE(file.model()->find(1).openObject()->getAttr("IsDefinedBy", value));
    KpIfcSetAggr<KpDbObjectId>* nobody = *value.getIf<KpIfcSetAggr<KpDbObjectId>*>();
    EXPECT_EQ(KP::eRefused, nobody->add(file.model()->find(2)));
    nobody->assign(KpIfcArray<KpDbObjectId>{file.model()->find(2)});
    EXPECT_TRUE(nobody->isNil());
    KpIfcArray<KpDbObjectId> referrers;
    as<IFC2X3::IfcWall>(file.model()->find(2))->getInvIsDefinedBy(referrers);
    EXPECT_TRUE(referrers.isEmpty());

    KpIfcSetAggr<KpDbObjectId> mine(*nobody); // a copy is anybody's
    EXPECT_EQ(KP::eOk, mine.add(file.model()->find(2)));
    EXPECT_EQ(1u, mine.size());
}
