#include "Environment.h"

#include <IFC2X3/IfcCalendarDate.h>
#include <IFC2X3/IfcCartesianPoint.h>
#include <IFC2X3/IfcOwnerHistory.h>
#include <IFC2X3/IfcPerson.h>
#include <IFC2X3/IfcPropertySingleValue.h>
#include <IFC2X3/IfcRelAggregates.h>
#include <IFC2X3/IfcSIUnit.h>
#include <IFC2X3/IfcSite.h>
#include <IFC2X3/IfcWall.h>
#include <IFC2X3/IfcWorkPlan.h>
#include <KpIfcCore/KpIfcException.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

using namespace KP_SDAI;
using namespace IFC2X3;
using testing::ElementsAre;

namespace {

template <class Aggregate>
std::vector<typename Aggregate::Element> elements(const Aggregate& aggregate) {
    return {aggregate.begin(), aggregate.end()};
}

TEST(Accessors, OfLists) {
    KpIfcFile file = emptyFile();
    auto* point = file.model()->create<IfcCartesianPoint>();
    point->setCoordinates(KpIfcArray<double>{1, 2, 3});
    EXPECT_THAT(elements(std::as_const(*point).getCoordinates()), ElementsAre(1, 2, 3));
    point->getCoordinates().append(4); // bounds are the business of checks, not of members
    KpIfcArray<double> values{99};
    point->getCoordinates(values);
    EXPECT_EQ(values, (KpIfcArray<double>{1, 2, 3, 4})); // replaces what was in the array
    EXPECT_EQ(savedRecords(file), "#1=IFCCARTESIANPOINT((1.,2.,3.,4.));\n");

    // Positions count from 0, but those outside the declared bounds [1:3] are refused, and so are those without
    // element.
    EXPECT_EQ(point->getCoordinates().at(1), 2);
    EXPECT_EQ(point->getCoordinates().at(3), 4);
    for (const int position : {-1, 0, 4}) {
        try {
            point->getCoordinates().at(position);
            ADD_FAILURE() << "position " << position;
        } catch (const KpIfcException& e) {
            EXPECT_EQ(e.code(), 470u);
            EXPECT_STREQ(e.message(), "Index invalid ");
        }
    }
    const IfcCartesianPoint* other = file.model()->create<IfcCartesianPoint>();
    EXPECT_THROW(other->getCoordinates().at(1), KpIfcException);

    const auto replaced = std::as_const(*other).getCoordinates();
    point->setCoordinates(replaced);
    EXPECT_TRUE(std::as_const(*point).getCoordinates().empty());
}

TEST(Accessors, OfAllKindsOfOneEntity) {
    KpIfcFile file = emptyFile();
    KpIfcModel& model = *file.model();
    auto* person = model.create<IfcPerson>();
    auto* second = model.create<IfcPerson>();
    auto* date = model.create<IfcCalendarDate>();
    auto* plan = model.create<IfcWorkPlan>();
    plan->setGlobalId(KpIfcGUID("0123456789012345678901"));
    plan->setIdentifier("");
    plan->setPurpose("to build");
    plan->setDuration(0);
    IfcDateTimeSelect start;
    ASSERT_TRUE(start.setHandle(date->objectId()));
    plan->setStartTime(start);
    plan->setCreators(KpIfcArray<KpDbObjectId>{second->objectId(), person->objectId(), second->objectId()});
    plan->setWorkControlType(kIfcWorkControlTypeEnum_PLANNED);
    EXPECT_TRUE(plan->getStartTime().isIfcCalendarDate());
    EXPECT_EQ(plan->getCreators().size(), 2u);
    EXPECT_EQ(plan->getCreators().add(person->objectId()), KP::eOk); // already there
    EXPECT_EQ(plan->getCreators().remove(second->objectId()), KP::eOk);
    EXPECT_EQ(plan->getCreators().remove(person->objectId()), KP::eRefused); // the set's lower bound is 1
    EXPECT_EQ(savedRecords(file), "#1=IFCPERSON($,$,$,$,$,$,$,$);\n#2=IFCPERSON($,$,$,$,$,$,$,$);\n"
                                  "#3=IFCCALENDARDATE($,$,$);\n"
                                  "#4=IFCWORKPLAN('0123456789012345678901',$,$,$,$,'',$,(#1),'to build',0.,$,#3,$,"
                                  ".PLANNED.,$);\n");
}

TEST(Accessors, OfReferences) {
    KpIfcFile file = emptyFile();
    auto* wall = file.model()->create<IfcWall>();
    EXPECT_EQ(wall->OwnerHistory(), nullptr);
    auto* history = file.model()->create<IfcOwnerHistory>();
    wall->setOwnerHistory(history->objectId());
    EXPECT_EQ(wall->OwnerHistory(), history);
    EXPECT_TRUE(wall->getOwnerHistory() == history->objectId());
    EXPECT_EQ(as<IfcOwnerHistory>(wall->getOwnerHistory()), history);
    EXPECT_EQ(as<IfcWall>(wall->getOwnerHistory()), nullptr);
    EXPECT_EQ(as<IfcWall>(KpDbObjectId()), nullptr);

    // A handle to a record that stayed text opens nothing.
    KpIfcFile read = openedRecords("#1=IFCNOTHING();\n#2=IFCWALL('0123456789012345678901',#1,$,$,$,$,$,$);\n");
    EXPECT_EQ(as<IfcWall>(read.model()->find(2))->OwnerHistory(), nullptr);
    EXPECT_TRUE(as<IfcWall>(read.model()->find(2))->getOwnerHistory().isDefined());
}

TEST(Accessors, OfSetsOfReferencesIterateByInstanceName) {
    KpIfcFile file = emptyFile();
    KpIfcModel& model = *file.model();
    auto* relation = model.create<IfcRelAggregates>();
    std::vector<std::uint64_t> names;
    for (const std::uint64_t name : {500u, 7u, 90000u, 8u}) {
        model.create("IfcWall", name);
        relation->getRelatedObjects().add(model.find(name));
    }
    for (const KpDbObjectId& object : std::as_const(*relation).getRelatedObjects()) {
        names.push_back(object.instanceName());
    }
    EXPECT_THAT(names, ElementsAre(7, 8, 500, 90000));
    KpIfcArray<KpDbObjectId> copied;
    relation->getRelatedObjects(copied);
    EXPECT_EQ(copied.length(), 4u);
    EXPECT_TRUE(relation->getRelatedObjects().contains(model.find(7)));
    EXPECT_FALSE(relation->getRelatedObjects().contains(relation->objectId()));
}

TEST(Accessors, OfSelectsAndDerivedFields) {
    KpIfcFile file = emptyFile();
    auto* unit = file.model()->create<IfcSIUnit>();
    unit->setUnitType(kIfcUnitEnum_LENGTHUNIT);
    unit->setPrefix(kIfcSIPrefix_MILLI);
    unit->setName(kIfcSIUnitName_METRE);
    auto* property = file.model()->create<IfcPropertySingleValue>();
    IfcValue value;
    value.setIfcLabel("F\xC3\xBCr alle");
    property->setNominalValue(value);
    IfcUnit unitSelect;
    ASSERT_TRUE(unitSelect.setHandle(unit->objectId()));
    property->setUnit(unitSelect);
    EXPECT_EQ(savedRecords(file), "#1=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);\n"
                                  "#2=IFCPROPERTYSINGLEVALUE($,$,IFCLABEL('F\\X2\\00FC\\X0\\r alle'),#1);\n");
    EXPECT_TRUE(property->getUnit().isIfcNamedUnit());
    EXPECT_EQ(property->getNominalValue().getString()->view(), "F\xC3\xBCr alle");
}

/// What is not finite cannot stand in a file: it is written as unset, and said.
TEST(Accessors, NumbersThatFilesCannotHold) {
    KpIfcFile file = emptyFile();
    auto* site = file.model()->create<IfcSite>();
    site->setRefElevation(1 / std::numeric_limits<double>::denorm_min());
    auto* point = file.model()->create<IfcCartesianPoint>();
    point->setCoordinates(KpIfcArray<double>{std::numeric_limits<double>::quiet_NaN(), 1});
    EXPECT_THAT(savedRecords(file), testing::EndsWith("#2=IFCCARTESIANPOINT(($,1.));\n"));
    EXPECT_THAT(findings(file.writeReport()), testing::HasSubstr("#1 IFCSITE"));
    EXPECT_EQ(file.writeReport().count(KpIfcFinding::notFinite), 2u);
}

} // namespace
