#include "Environment.h"
#include "ModelTruth.h"

#include <IFC2X3/IfcCartesianPoint.h>
#include <IFC2X3/IfcPerson.h>
#include <IFC2X3/IfcPropertySingleValue.h>
#include <IFC2X3/IfcRelAggregates.h>
#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcChangeGroup.h>
#include <KpIfcCore/KpIfcErase.h>
#include <KpIfcCore/KpIfcGlobalIds.h>
#include <KpIfcCore/KpIfcPropertySets.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

/// #9 has source text that its attributes cannot hold, #8 stays text.
constexpr const char* kRecords = "#1=IFCWALL('0000000000000000000001',$,'W1',$,$,$,$,$);\n"
                                 "#2=IFCWALL('0000000000000000000002',$,'W2',$,$,$,$,$);\n"
                                 "#3=IFCRELAGGREGATES('0000000000000000000003',$,$,$,#1,(#2));\n"
                                 "#4=IFCPERSON('007','Doe',$,('A','B'),$,$,$,$);\n"
                                 "#5=IFCCARTESIANPOINT((0.,1.5));\n"
                                 "#6=IFCPROPERTYSINGLEVALUE('P',$,IFCLABEL('x'),$);\n"
                                 "#7=IFCPOLYLINE((#5,#5));\n"
                                 "#8=IFCNOTHING(1);\n"
                                 "#9=IFCWALL('0000000000000000000009',$,12,$,$,$,$,$);\n";

struct Change {
    const char* name;
    std::function<void(KpIfcModel&)> make;
};

class UndoneChange : public testing::TestWithParam<Change> {};

TEST_P(UndoneChange, LeavesNothing) {
    for (const bool indexesStand : {false, true}) {
        SCOPED_TRACE(indexesStand);
        KpIfcFile file = openedRecords(kRecords);
        KpIfcModel& model = *file.model();
        if (indexesStand) {
            model.referrers(model.find(1));
            model.findByGlobalId("x");
        }
        const std::string before = stateOf(file);
        {
            KpIfcChangeGroup group(model);
            GetParam().make(model);
            EXPECT_NE(stateOf(file), before);
            GetParam().make(model); // a commit lies between
        }
        EXPECT_EQ(stateOf(file), before);
        expectTruth(model);
        {
            KpIfcChangeGroup group(model);
            GetParam().make(model);
            group.keep();
            group.rollBack();
        }
        EXPECT_NE(stateOf(file), before);
        expectTruth(model);
    }
}

template <class T>
T& at(KpIfcModel& model, std::uint64_t name) {
    return *as<T>(model.find(name));
}

const Change kChanges[] = {
    {"TypedSetter", [](KpIfcModel& model) { at<IfcWall>(model, 1).setName("new"); }},
    {"MutableAccess", [](KpIfcModel& model) { at<IfcCartesianPoint>(model, 5).getCoordinates().append(7.0); }},
    {"ValueByName", [](KpIfcModel& model) { model.find(6).openObject()->putAttr("Name", KpIfcVariant("Q")); }},
    {"UnsetByName", [](KpIfcModel& model) { model.find(4).openObject()->unsetAttr("MiddleNames"); }},
    {"AggregateByName",
     [](KpIfcModel& model) {
         KpIfcVariant points;
         model.find(7).openObject()->getAttr("Points", points);
         ASSERT_EQ(points.type()->aggregate(points.data())->addValue(model.find(5)), KP::eOk);
     }},
    {"SelectByName",
     [](KpIfcModel& model) {
         KpIfcVariant value;
         model.find(6).openObject()->getAttr("NominalValue", value);
         value.type()->select(value.data())->nullify();
     }},
    {"Assignment", [](KpIfcModel& model) { at<IfcWall>(model, 1) = at<IfcWall>(model, 2); }},
    {"References", [](KpIfcModel& model) { at<IfcRelAggregates>(model, 3).setRelatingObject(model.find(2)); }},
    {"GlobalId", [](KpIfcModel& model) { at<IfcWall>(model, 1).setGlobalId(KpIfcGUID("0000000000000000000002")); }},
    {"SourceText", [](KpIfcModel& model) { model.forgetSource(*model.find(9).openObject(), 2); }},
    {"OverSourceText", [](KpIfcModel& model) { model.find(9).openObject()->unsetAttr("Name"); }},
    {"PropertySet",
     [](KpIfcModel& model) {
         std::string error;
         ASSERT_EQ(setProperty(*model.find(1).openObject(), "S", "p", "IfcReal", KpIfcVariant(1.5), error), KP::eOk)
             << error;
     }},
    {"Creation", [](KpIfcModel& model) { model.create<IfcRelAggregates>()->setRelatingObject(model.find(1)); }},
    {"CreationOutOfOrder",
     [](KpIfcModel& model) {
         model.create("IfcWall", 1000);
         model.create("IfcWall", 500);
     }},
    {"Erasure",
     [](KpIfcModel& model) {
         const KpDbObjectId handles[] = {model.find(1).isDefined() ? model.find(1) : model.find(2)};
         erase(model, handles, KpIfcErasePolicy::cascade);
     }},
    {"ErasureOfText",
     [](KpIfcModel& model) {
         const KpDbObjectId handles[] = {model.find(8).isDefined() ? model.find(8) : model.find(9)};
         erase(model, handles);
     }},
    {"ErasureOfWhatWasCreated",
     [](KpIfcModel& model) {
         const KpDbObjectId handles[] = {model.create("IfcWall")->objectId(), model.create("IfcWall")->objectId()};
         at<IfcRelAggregates>(model, 3).setRelatingObject(handles[0]);
         erase(model, handles, KpIfcErasePolicy::dropReferences);
     }},
};

INSTANTIATE_TEST_SUITE_P(ChangeGroup, UndoneChange, testing::ValuesIn(kChanges),
                         [](const auto& each) { return each.param.name; });

TEST(ChangeGroup, IsOneAtATime) {
    KpIfcFile file = openedRecords(kRecords);
    KpIfcModel& model = *file.model();
    KpIfcChangeGroup group(model);
    EXPECT_THROW(KpIfcChangeGroup second(model), std::logic_error);
    at<IfcWall>(model, 1).setName("new");
    group.rollBack();
    EXPECT_FALSE(group.isOpen());
    EXPECT_STREQ(at<IfcWall>(model, 1).getName(), "W1");
    KpIfcChangeGroup next(model);
    EXPECT_EQ(model.create("IfcWall")->instanceName(), 10u);
    next.rollBack();
    EXPECT_EQ(model.create("IfcWall")->instanceName(), 10u);
}

/// Names stay what they were: of erased ones taken back, of created ones given again.
TEST(ChangeGroup, BringsInstancesBackToTheirHandles) {
    KpIfcFile file = openedRecords(kRecords);
    KpIfcModel& model = *file.model();
    const KpDbObjectId wall = model.find(1);
    const KpIfcEntityBase* const instance = wall.openObject();
    {
        KpIfcChangeGroup group(model);
        ASSERT_EQ(erase(model, {&wall, 1}, KpIfcErasePolicy::dropReferences).status, KP::eOk);
        EXPECT_FALSE(model.create("IfcWall", 1));
        model.create("IfcWall", 20);
    }
    EXPECT_EQ(wall.openObject(), instance);
    EXPECT_EQ(instance->owningModel(), &model);
    EXPECT_TRUE(model.find(20).isNull());
    EXPECT_FALSE(model.create("IfcWall", 1));
    EXPECT_TRUE(model.create("IfcWall", 20));
    expectTruth(model);
}

/// Edits of every kind at random, in groups and without.
class RandomEdits {
public:
    RandomEdits(KpIfcModel& model, unsigned seed) : m_model(model), m_random(seed) {}

    void make() {
        switch (m_random() % 8) {
        case 0: create(); break;
        case 1: eraseSome(); break;
        default: change();
        }
    }
    std::size_t below(std::size_t bound) { return m_random() % bound; }

private:
    KpIfcEntityBase* any() {
        const KpIfcArray<KpDbObjectId> all = m_model.fileOrder();
        return all.empty() ? nullptr : all[below(all.size())].openObject();
    }
    KpDbObjectId anyHandle() {
        KpIfcEntityBase* const instance = below(10) ? any() : nullptr;
        return instance ? instance->objectId() : KpDbObjectId();
    }

    void create() {
        static const char* const kEntities[] = {"IfcWall",
                                                "IfcRelAggregates",
                                                "IfcPropertySet",
                                                "IfcLocalPlacement",
                                                "IfcPresentationLayerAssignment",
                                                "IfcRelDefinesByProperties"};
        const std::uint64_t name = below(3) ? 0 : 1 + below(2 * m_model.highestName());
        m_model.createRooted(kEntities[below(3)], name);
        m_model.create(kEntities[below(std::size(kEntities))], below(3) ? 0 : name + 1);
    }

    void eraseSome() {
        std::vector<KpDbObjectId> handles;
        for (std::size_t i = 1 + below(3); i > 0; --i) {
            if (KpIfcEntityBase* const instance = any()) {
                handles.push_back(instance->objectId());
            }
        }
        erase(m_model, handles, static_cast<KpIfcErasePolicy>(below(3)));
    }

    void change() {
        KpIfcEntityBase* const instance = any();
        if (!instance) {
            return;
        }
        const auto& rows = instance->getInstanceType()->recordFields();
        const KpIfcAttributeFacts& row = *rows[below(rows.size())];
        const KpAnsiString name(row.name);
        switch (row.kind) {
        case KpIfcFieldKind::reference:
        case KpIfcFieldKind::select: instance->putAttr(name, KpIfcVariant(anyHandle())); break;
        case KpIfcFieldKind::string: instance->putAttr(name, KpIfcVariant("text")); break;
        case KpIfcFieldKind::guid:
            instance->putAttr(name, KpIfcVariant(below(2) ? newGlobalId() : KpIfcGUID("0000000000000000000000")));
            break;
        case KpIfcFieldKind::aggregate:
            if (row.aggregate->element == KpIfcElementKind::reference ||
                row.aggregate->element == KpIfcElementKind::select) {
                KpIfcArray<KpDbObjectId> handles;
                for (std::size_t i = below(5); i > 0; --i) {
                    if (KpIfcEntityBase* const one = any()) {
                        handles.append(one->objectId());
                    }
                }
                instance->putAttr(name, KpIfcVariant(handles));
                break;
            }
            [[fallthrough]];
        default: instance->unsetAttr(name);
        }
    }

    KpIfcModel& m_model;
    std::mt19937 m_random;
};

TEST(ChangeGroup, KeepsTheTruthAfterManyEdits) {
    for (const unsigned seed : {1u, 2u, 3u}) {
        SCOPED_TRACE(seed);
        KpIfcFile file;
        ASSERT_EQ(file.open(std::string(KP_SOURCE_DIR) + "/examples/small_house.ifc"), KP::eOk) << file.error();
        KpIfcModel& model = *file.model();
        RandomEdits edits(model, seed);
        for (int round = 0; round < 40; ++round) {
            const std::string before = stateOf(file);
            auto group = edits.below(2) ? std::make_unique<KpIfcChangeGroup>(model) : nullptr;
            for (std::size_t i = 1 + edits.below(8); i > 0; --i) {
                edits.make();
                if (edits.below(4) == 0) {
                    expectTruth(model);
                }
            }
            if (group && edits.below(3) == 0) {
                group->keep();
            }
            const bool undoes = group && group->isOpen();
            group.reset();
            if (undoes) {
                ASSERT_EQ(stateOf(file), before);
            }
            expectTruth(model);
            if (testing::Test::HasFailure()) {
                return;
            }
        }
    }
}

} // namespace
