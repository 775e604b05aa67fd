#include "AttributeText.h"
#include "Environment.h"

#include <IFC2X3/IfcCartesianPoint.h>
#include <IFC2X3/IfcPropertySingleValue.h>
#include <IFC2X3/IfcRelAggregates.h>
#include <IFC2X3/IfcTrimmedCurve.h>
#include <IFC2X3/IfcWorkPlan.h>

#include <gtest/gtest.h>

#include <memory>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

constexpr const char* kRecords =
    "#1=IFCCARTESIANPOINT((1.5,-2.5));\n"
    "#2=IFCRELAGGREGATES('0123456789012345678901',$,'a long text that no short form of a string would hold','',#4,"
    "(#5,#4));\n"
    "#3=IFCPROPERTYSINGLEVALUE('n','',IFCCOMPLEXNUMBER((1.,2.)),$);\n"
    "#4=IFCWORKPLAN('1123456789012345678901',$,'N\\X2\\00E4\\X0\\he',$,$,'id',#6,$,$,3.,$,#6,$,.ACTUAL.,$);\n"
    "#5=IFCTRIMMEDCURVE($,(IFCPARAMETERVALUE(0.),#1),(IFCPARAMETERVALUE(1.)),.T.,.PARAMETER.);\n"
    "#6=IFCCALENDARDATE(1,2,2003);\n";

/// The attributes alone, without the instance name.
std::string values(KpIfcEntityBase& instance) {
    const std::string text = attributesText(instance);
    return text.substr(text.find('\n'));
}

/// Copies of an instance that was read share nothing with it: they outlive its model.
template <class T>
void expectCopies(std::uint64_t name) {
    SCOPED_TRACE(name);
    KpIfcFile file = openedRecords(kRecords);
    T* original = as<T>(file.model()->find(name));
    ASSERT_TRUE(original);
    const std::string expected = values(*original);
    auto copy = std::make_unique<T>(*original);
    T assigned;
    assigned = *original;
    assigned = *&assigned;
    for (T* c : {copy.get(), &assigned}) {
        EXPECT_EQ(values(*c), expected);
        EXPECT_TRUE(c->objectId().isNull());
        EXPECT_EQ(c->owningModel(), nullptr);
        EXPECT_TRUE(c->isInstanceOf(T::g_pEntityType));
    }
    // An instance of a model that is assigned to stays where it is.
    T* target = file.model()->create<T>();
    const KpDbObjectId place = target->objectId();
    *target = *copy;
    EXPECT_EQ(values(*target), expected);
    EXPECT_TRUE(target->objectId() == place);
    EXPECT_EQ(file.model()->count(), 7u);
}

TEST(Copy, HoldsEqualValuesAndBelongsToNobody) {
    expectCopies<IfcCartesianPoint>(1);
    expectCopies<IfcRelAggregates>(2);
    expectCopies<IfcPropertySingleValue>(3);
    expectCopies<IfcWorkPlan>(4);
    expectCopies<IfcTrimmedCurve>(5);
}

TEST(Copy, ChangesWithoutItsOriginal) {
    KpIfcFile file = openedRecords(kRecords);
    IfcCartesianPoint copy(*as<IfcCartesianPoint>(file.model()->find(1)));
    copy.getCoordinates().append(9);
    IfcPropertySingleValue property(*as<IfcPropertySingleValue>(file.model()->find(3)));
    IfcValue value = property.getNominalValue();
    value.setIfcText("other");
    property.setNominalValue(value);
    const std::string written = savedRecords(file);
    EXPECT_NE(written.find("#1=IFCCARTESIANPOINT((1.5,-2.5));"), std::string::npos) << written;
    EXPECT_NE(written.find("IFCCOMPLEXNUMBER((1.,2.))"), std::string::npos) << written;
}

TEST(Copy, OutlivesTheModel) {
    std::unique_ptr<IfcTrimmedCurve> curve;
    std::unique_ptr<IfcRelAggregates> relation;
    std::unique_ptr<IfcPropertySingleValue> property;
    {
        KpIfcFile file = openedRecords(kRecords);
        curve = std::make_unique<IfcTrimmedCurve>(*as<IfcTrimmedCurve>(file.model()->find(5)));
        relation = std::make_unique<IfcRelAggregates>(*as<IfcRelAggregates>(file.model()->find(2)));
        property = std::make_unique<IfcPropertySingleValue>(*as<IfcPropertySingleValue>(file.model()->find(3)));
    }
    EXPECT_EQ(relation->getName().view(), "a long text that no short form of a string would hold");
    EXPECT_EQ(curve->getTrim2().size(), 1u);
    EXPECT_EQ(property->getNominalValue().getAggregate()->count(), 2u);
}

} // namespace
