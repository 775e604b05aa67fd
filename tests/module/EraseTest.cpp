#include "Environment.h"
#include "ModelTruth.h"
#include "SampleFiles.h"

#include <IFC2X3/IfcRelAggregates.h>
#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcErase.h>
#include <KpIfcCore/KpIfcException.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <sstream>
#include <vector>

using namespace KP_SDAI;
using namespace IFC2X3;
namespace fs = std::filesystem;

namespace {

constexpr KpIfcErasePolicy kRefuse = KpIfcErasePolicy::refuse;
constexpr KpIfcErasePolicy kDrop = KpIfcErasePolicy::dropReferences;
constexpr KpIfcErasePolicy kCascade = KpIfcErasePolicy::cascade;

KpIfcEraseResult erased(KpIfcModel& model, const std::vector<std::uint64_t>& names, KpIfcErasePolicy policy) {
    std::vector<KpDbObjectId> handles;
    for (const std::uint64_t name : names) {
        handles.push_back(model.find(name));
    }
    return erase(model, handles, policy);
}

/// What a result tells, in one line.
std::string told(const KpIfcEraseResult& result) {
    std::ostringstream text;
    if (result.status != KP::eOk) {
        text << (result.status == KP::eRefused ? "refused" : "no instance");
    }
    for (const KpIfcReferrer& reference : result.references) {
        text << " " << reference.target.instanceName() << "<-" << reference.referrer.instanceName();
    }
    for (const std::uint64_t name : result.erased) {
        text << " -" << name;
    }
    for (const KpDbObjectId& handle : result.changed) {
        text << " ~" << handle.instanceName();
    }
    for (const KpIfcLackingValue& lacking : result.lacking) {
        text << " ?" << lacking.instance.instanceName() << "." << lacking.attribute;
    }
    return text.str();
}

/// A wall #1 with an opening #2, filled by the door #3; the wall has a placement, geometry with a style, properties
/// that it shares with the wall #4, and properties of its own.
constexpr const char* kHouse = "#1=IFCWALL('0000000000000000000001',#90,'W1',$,$,#10,#12,$);\n"
                               "#2=IFCOPENINGELEMENT('0000000000000000000002',#90,'O',$,$,#30,$,$);\n"
                               "#3=IFCDOOR('0000000000000000000003',#90,'D',$,$,#31,$,$,$,$);\n"
                               "#4=IFCWALL('0000000000000000000004',#90,'W2',$,$,$,$,$);\n"
                               "#5=IFCRELVOIDSELEMENT('0000000000000000000005',#90,$,$,#1,#2);\n"
                               "#6=IFCRELFILLSELEMENT('0000000000000000000006',#90,$,$,#2,#3);\n"
                               "#7=IFCRELDEFINESBYPROPERTIES('0000000000000000000007',#90,$,$,(#1,#4),#20);\n"
                               "#8=IFCRELDEFINESBYPROPERTIES('0000000000000000000008',#90,$,$,(#1),#22);\n"
                               "#10=IFCLOCALPLACEMENT($,#11);\n"
                               "#11=IFCAXIS2PLACEMENT3D(#41,$,$);\n"
                               "#12=IFCPRODUCTDEFINITIONSHAPE($,$,(#13));\n"
                               "#13=IFCSHAPEREPRESENTATION(#40,'Body','SweptSolid',(#14));\n"
                               "#14=IFCPOLYLINE((#41,#42));\n"
                               "#15=IFCSTYLEDITEM(#14,(#17),$);\n"
                               "#16=IFCPRESENTATIONLAYERASSIGNMENT('L',$,(#13),$);\n"
                               "#17=IFCPRESENTATIONSTYLEASSIGNMENT((#18));\n"
                               "#18=IFCCURVESTYLE($,$,$,$);\n"
                               "#20=IFCPROPERTYSET('0000000000000000000020',#90,'Shared',$,(#21));\n"
                               "#21=IFCPROPERTYSINGLEVALUE('a',$,IFCLABEL('x'),$);\n"
                               "#22=IFCPROPERTYSET('0000000000000000000022',#90,'Own',$,(#21,#23));\n"
                               "#23=IFCPROPERTYSINGLEVALUE('b',$,IFCLABEL('y'),$);\n"
                               "#30=IFCLOCALPLACEMENT(#10,#11);\n"
                               "#31=IFCLOCALPLACEMENT($,#11);\n"
                               "#40=IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,$,#11,$);\n"
                               "#41=IFCCARTESIANPOINT((0.,0.,0.));\n"
                               "#42=IFCCARTESIANPOINT((1.,0.,0.));\n"
                               "#43=IFCGEOMETRICSET((#42,#41));\n"
                               "#90=IFCOWNERHISTORY($,$,$,.ADDED.,$,$,$,0);\n";

struct Case {
    const char* name;
    const char* records;
    std::vector<std::uint64_t> targets;
    KpIfcErasePolicy policy;
    const char* told;
};

class EraseTest : public testing::TestWithParam<Case> {};

TEST_P(EraseTest, TellsWhatItDid) {
    const Case& test = GetParam();
    KpIfcFile file = openedRecords(test.records);
    KpIfcModel& model = *file.model();
    const std::string before = stateOf(file);
    const KpIfcEraseResult result = erased(model, test.targets, test.policy);
    EXPECT_EQ(told(result), test.told);
    if (result.status != KP::eOk) {
        EXPECT_EQ(stateOf(file), before);
    }
    expectTruth(model);
    KpIfcFile again = openedRecords(savedRecords(file));
    EXPECT_EQ(again.report().count(KpIfcFinding::danglingReference), 0u) << findings(again.report());
}

const Case kCases[] = {
    {"Unreferenced", kHouse, {43}, kRefuse, " -43"},
    {"Referenced", kHouse, {42, 4}, kRefuse, "refused 4<-7 42<-14 42<-43"},
    {"WithAllThatReferToIt", kHouse, {22, 8, 22}, kRefuse, " -8 -22"},
    {"NoSuchInstance", kHouse, {43, 99}, kDrop, "no instance"},
    {"DropFromReferencesAndAggregates",
     kHouse,
     {10, 1},
     kDrop,
     " -1 -10 ~5 ~7 ~8 ~30 ?5.RelatingBuildingElement ?8.RelatedObjects"},
    {"DropFromSelects",
     kHouse,
     {18, 13},
     kDrop,
     " -13 -18 ~12 ~16 ~17 ?12.Representations ?16.AssignedItems ?17.Styles"},
    {"DropEveryOccurrence",
     "#1=IFCPOLYLINE((#2,#3,#2,#2,#4));\n#2=IFCCARTESIANPOINT((0.,0.));\n#3=IFCCARTESIANPOINT((0.,1.));\n"
     "#4=IFCCARTESIANPOINT((1.,1.));\n",
     {2},
     kDrop,
     " -2 ~1"},
    {"DropBelowTheLowerBound",
     "#1=IFCPOLYLINE((#2,#3));\n#2=IFCCARTESIANPOINT((0.,0.));\n#3=IFCCARTESIANPOINT((0.,1.));\n",
     {2},
     kDrop,
     " -2 ~1 ?1.Points"},
    {"SelfReference", "#22=IFCORIENTEDEDGE(*,*,#22,.T.);\n", {22}, kRefuse, " -22"},
    {"KeptRecord",
     "#4=IFCNOTHING(#1);\n#20=IFCPRESENTATIONSTYLEASSIGNMENT((#4,#21));\n#21=IFCCURVESTYLE($,$,$,$);\n",
     {4},
     kDrop,
     " -4 ~20"},
    {"CascadeTakesAllThatOnlyAWallUsed",
     kHouse,
     {1},
     kCascade,
     " -1 -2 -5 -6 -8 -10 -12 -13 -14 -15 -16 -17 -18 -22 -23 -30 -40 ~7"},
    {"CascadeKeepsWhatOthersUse", kHouse, {14, 43}, kCascade, " -14 -15 -17 -18 -42 -43 ~13 ?13.Items"},
    {"CascadeLeavesObjects", kHouse, {6}, kCascade, " -6"},
    {"CascadeOfAnOpening", kHouse, {2}, kCascade, " -2 -5 -6 -30"},
    {"CascadeFreesCircles",
     "#1=IFCGEOMETRICSET((#2));\n#2=IFCORIENTEDEDGE(*,*,#3,.T.);\n#3=IFCORIENTEDEDGE(*,*,#2,.T.);\n",
     {1},
     kCascade,
     " -1 -2 -3"},
    {"CascadeKeepsCirclesThatOthersUse",
     "#1=IFCGEOMETRICSET((#2));\n#2=IFCORIENTEDEDGE(*,*,#3,.T.);\n#3=IFCORIENTEDEDGE(*,*,#2,.T.);\n"
     "#4=IFCGEOMETRICSET((#3));\n",
     {1},
     kCascade,
     " -1"},
    {"CascadeFreesChains",
     "#1=IFCLOCALPLACEMENT(#2,$);\n#2=IFCLOCALPLACEMENT(#3,$);\n#3=IFCLOCALPLACEMENT(#4,$);\n#4=IFCLOCALPLACEMENT($,$);"
     "\n",
     {1},
     kCascade,
     " -1 -2 -3 -4"},
};

INSTANTIATE_TEST_SUITE_P(Erase, EraseTest, testing::ValuesIn(kCases), [](const auto& each) { return each.param.name; });

TEST(Erase, LeavesDeadHandlesAndGivesNoNameAgain) {
    KpIfcFile file = openedRecords(kHouse);
    KpIfcModel& model = *file.model();
    const KpDbObjectId handle = model.find(90);
    KpIfcEntityBase* const instance = handle.openObject();
    const KpDbObjectId last = model.find(43);
    ASSERT_EQ(erased(model, {90, 43}, kDrop).status, KP::eOk);
    EXPECT_EQ(handle.openObject(), nullptr);
    EXPECT_FALSE(handle.isDefined());
    EXPECT_EQ(handle.instanceName(), 90u);
    EXPECT_TRUE(model.find(90).isNull());
    EXPECT_EQ(instance->owningModel(), nullptr);
    instance->putAttr("CreationDate", 7); // changes nothing but itself
    EXPECT_FALSE(model.create("IfcWall", 90));
    EXPECT_EQ(model.highestName(), 90u);
    EXPECT_EQ(model.create("IfcWall")->instanceName(), 91u);
    EXPECT_EQ(erase(model, {&last, 1}).status, KP::eNullEntity);
    expectTruth(model);

    KpIfcFile other = openedRecords(kHouse);
    const KpDbObjectId foreign = other.model()->find(1);
    EXPECT_EQ(erase(model, {&foreign, 1}, kCascade).status, KP::eNullEntity);
    model.mode(kReadOnly);
    try {
        erased(model, {1}, kDrop);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const KpIfcException& refusal) {
        EXPECT_EQ(refusal.code(), 180u);
    }
    EXPECT_TRUE(model.find(1).isDefined());
}

/// What is not committed yet counts.
TEST(Erase, SeesWhatHasJustChanged) {
    KpIfcFile file = openedRecords(kHouse);
    KpIfcModel& model = *file.model();
    auto* relation = model.create<IfcRelAggregates>();
    relation->setRelatingObject(model.find(4));
    EXPECT_EQ(told(erased(model, {4}, kRefuse)), "refused 4<-7 4<-91");
    relation->setRelatingObject(KpDbObjectId());
    EXPECT_EQ(told(erased(model, {4}, kRefuse)), "refused 4<-7");
}

/// Instances of real files, some at once: nothing refers to nothing afterwards, and all that is known stays true.
class EraseFromSamples : public testing::TestWithParam<KpIfcErasePolicy> {};

TEST_P(EraseFromSamples, LeavesNoReferenceToNothing) {
    constexpr std::uintmax_t kLargest = 1'100'000;
    std::vector<fs::path> paths = {fs::path(KP_SOURCE_DIR) / "examples/small_house.ifc"};
    for (const fs::path& path : findSamples(fs::path(KP_SHARED_DIR) / "samples")) {
        if (path.extension() == ".ifc" && fs::file_size(path) < kLargest) {
            paths.push_back(path);
        }
    }
    for (const fs::path& path : paths) {
        SCOPED_TRACE(path.filename());
        KpIfcFile file;
        ASSERT_EQ(file.open(path.string()), KP::eOk) << file.error();
        KpIfcModel& model = *file.model();
        const std::size_t before = model.count();
        std::mt19937 random(11);
        for (int round = 0; round < 30; ++round) {
            const KpIfcArray<KpDbObjectId> all = model.fileOrder();
            std::vector<KpDbObjectId> some;
            for (std::size_t i = random() % 5 + 1; i > 0 && all.size() > 0; --i) {
                some.push_back(all[random() % all.size()]);
            }
            erase(model, some, GetParam());
        }
        if (GetParam() != kRefuse) {
            EXPECT_LT(model.count(), before);
        }
        for (KpIfcEntityBase* instance : model.instances()) {
            for (const KpDbObjectId& referrer : model.referrers(instance->objectId())) {
                ASSERT_TRUE(referrer.isDefined());
            }
        }
        if (before < 5000) {
            expectTruth(model);
        }
        KpIfcFile again = opened(saved(file));
        EXPECT_EQ(again.model()->count(), model.count());
        EXPECT_EQ(again.report().count(KpIfcFinding::danglingReference),
                  file.report().count(KpIfcFinding::danglingReference));
    }
}

INSTANTIATE_TEST_SUITE_P(Erase, EraseFromSamples, testing::Values(kRefuse, kDrop, kCascade));

} // namespace
