#include "Environment.h"

#include <IFC2X3/IfcCartesianPoint.h>
#include <IFC2X3/IfcPlanarExtent.h>
#include <IFC2X3/IfcPoint.h>
#include <IFC2X3/IfcWall.h>

#include <gtest/gtest.h>

#include <memory>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

TEST(TypeIdentity, OfOneInstance) {
    const IfcCartesianPoint point;
    const KpIfcEntityType* const none = nullptr;
    const char* const noName = nullptr;
    EXPECT_TRUE(point.isInstanceOf("ifccartesianpoint"));
    EXPECT_FALSE(point.isInstanceOf("IfcPoint"));
    EXPECT_FALSE(point.isInstanceOf("IfcCartesianPoint "));
    EXPECT_FALSE(point.isInstanceOf(""));
    EXPECT_FALSE(point.isInstanceOf(noName));
    EXPECT_FALSE(point.isInstanceOf(none));
    EXPECT_TRUE(point.isKindOf("IFCPOINT"));
    EXPECT_TRUE(point.isKindOf("IfcRepresentationItem"));
    EXPECT_FALSE(point.isKindOf("IfcPlacement"));
    EXPECT_FALSE(point.isKindOf(noName));
    EXPECT_FALSE(point.isKindOf(none));
    EXPECT_TRUE(point.isKindOf(IfcPoint::g_pEntityType));
    EXPECT_FALSE(point.isInstanceOf(IfcPoint::g_pEntityType));
    EXPECT_FALSE(point.isKindOf(IfcWall::g_pEntityType));
    EXPECT_FALSE(IfcPlanarExtent().isKindOf("IfcPlacement"));
    EXPECT_TRUE(IfcPlanarExtent().isKindOf("IfcGeometricRepresentationItem"));
}

/// The chains that the classes spell out agree with the supertypes that the dictionary has, for every pair of the 653.
TEST(TypeIdentity, OfEveryEntityFollowsTheDictionary) {
    const KpIfcFile file = emptyFile();
    const std::vector<const KpIfcEntityType*> types = entityTypes(file.model()->schema());
    ASSERT_EQ(types.size(), 653u);
    for (const KpIfcEntityType* type : types) {
        const std::unique_ptr<KpIfcEntityBase> instance(type->createInstance());
        ASSERT_EQ(instance->getInstanceType(), type) << type->name();
        for (const KpIfcEntityType* other : types) {
            const bool kind = type->isKindOf(other);
            ASSERT_EQ(instance->isKindOf(other), kind) << type->name() << ' ' << other->name();
            ASSERT_EQ(instance->isKindOf(other->displayName()), kind) << type->name() << ' ' << other->name();
            ASSERT_EQ(instance->isInstanceOf(other), type == other) << type->name() << ' ' << other->name();
            ASSERT_EQ(instance->isInstanceOf(other->displayName()), type == other) << type->name();
        }
    }
}

} // namespace
