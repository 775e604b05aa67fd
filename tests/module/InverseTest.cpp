#include "AttributeValues.h"
#include "Environment.h"
#include "InverseTruth.h"

#include <IFC2X3/IfcGridAxis.h>
#include <IFC2X3/IfcRelAggregates.h>
#include <IFC2X3/IfcRelAssociates.h>
#include <IFC2X3/IfcRelDefinesByType.h>
#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcInverseMembers.h>
#include <KpIfcCore/KpIfcReferences.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

using namespace KP_SDAI;
using namespace IFC2X3;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST(Inverse, RowsCoverTheSchema) {
    int inverses = 0;
    int owners = 0;
    int maintaining = 0;
    std::set<const KpIfcInverseFacts*> fed;
    for (const KpIfcEntityType* type : entityTypes(*IfcWall::g_pEntityType->schema())) {
        const KpIfcEntityFacts& facts = *type->facts();
        inverses += static_cast<int>(facts.inverseCount);
        owners += facts.counterpartCount > 0;
        maintaining += !type->counterparts().empty();
        std::uint32_t row = 0;
        for (const auto& attribute : type->attributes()) {
            if (const auto* inverse = attribute->as<KpIfcInverseAttributeDefinition>()) {
                ASSERT_LT(row, facts.inverseCount) << facts.name;
                EXPECT_STREQ(facts.inverses[row].name, inverse->name());
                EXPECT_EQ(facts.inverses[row].index, row);
                EXPECT_EQ(facts.inverses[row++].count, facts.inverseCount);
            }
        }
        for (const KpIfcCounterpartFacts& part : type->counterparts()) {
            fed.insert(&(*part.declaring)->facts()->inverses[part.inverse]);
        }
    }
    EXPECT_EQ(inverses, 115);
    EXPECT_EQ(fed.size(), 115u); // no inverse attribute without a counterpart
    EXPECT_EQ(owners, 77);
    EXPECT_EQ(maintaining, 295);
}

/// Which classes maintain inverse attributes is seen by what they do.
TEST(Inverse, AreEnteredByExactlyTheClassesThatHaveCounterparts) {
    KpIfcFile file = emptyFile();
    KpIfcModel& model = *file.model();
    AttributeValues values(model);
    std::vector<KpIfcEntityBase*> instances;
    for (KpIfcEntityBase* instance : model.instances()) {
        instances.push_back(instance);
    }
    const KpDbObjectId targets[] = {model.create("IfcProject")->objectId(), model.create("IfcPropertySet")->objectId()};
    for (KpIfcEntityBase* instance : instances) {
        const KpIfcEntityType& type = *instance->getInstanceType();
        std::set<std::string> fed;
        for (int variant = 0; variant < values.variants(type); ++variant) {
            values.fill(*instance, variant);
            if (auto* association = as<IfcRelAssociates>(instance)) { // anything with a GlobalId, but two inverses only
                association->setRelatedObjects({targets[0], targets[1]});
            }
            visitCounterParts(
                *instance, type.counterparts(), [&](KpIfcEntityBase& target, const KpIfcInverseFacts& inverse) {
                    fed.insert(std::string(target.getInstanceType()->name()) + '.' + inverse.name);
                    EXPECT_TRUE(inverse.members(target).read(target, inverse.index).contains(instance->objectId()))
                        << type.name() << ' ' << inverse.name;
                });
        }
        EXPECT_EQ(fed.empty(), type.counterparts().empty()) << type.name();
    }
    EXPECT_GT(expectTrueInverses(model), 500u);
}

TEST(Inverse, AreFilledByReading) {
    KpIfcFile file = openedRecords(
        // Relations before and behind what they are about, in descending order.
        "#90=IFCRELAGGREGATES('0123456789012345678901',$,$,$,#4,(#2,#3));\n"
        "#80=IFCRELAGGREGATES('1123456789012345678901',$,$,$,#4,(#2));\n"
        "#4=IFCBUILDING('2123456789012345678901',$,$,$,$,$,$,$,.ELEMENT.,$,$,$);\n"
        "#3=IFCWALL('3123456789012345678901',$,$,$,$,$,$,$);\n"
        "#2=IFCWALL('4123456789012345678901',$,$,$,$,$,$,$);\n"
        "#70=IFCRELCONTAINEDINSPATIALSTRUCTURE('5123456789012345678901',$,$,$,(#2,#60,#61),#4);\n"
        "#60=IFCGRID('6123456789012345678901',$,$,$,$,$,$,(#50,#51),(#52),$);\n"
        "#61=IFCANNOTATION('7123456789012345678901',$,$,$,$,$,$);\n"
        "#50=IFCGRIDAXIS($,#40,.T.);\n#51=IFCGRIDAXIS($,#40,.T.);\n#52=IFCGRIDAXIS($,#40,.T.);\n"
        "#40=IFCPOLYLINE(());\n"
        "#41=IFCVIRTUALGRIDINTERSECTION((#50,#50),(0.,0.));\n"
        "#42=IFCPRESENTATIONLAYERASSIGNMENT('layer',$,(#43,#40,#44),$);\n" // aggregate of selects
        "#43=IFCSHAPEREPRESENTATION($,$,$,(#40));\n#44=IFCSHAPEREPRESENTATION($,$,$,(#40));\n"
        "#45=IFCRELCONNECTSSTRUCTURALACTIVITY('8123456789012345678901',$,$,$,#46,$);\n" // select
        "#46=IFCSTRUCTURALCURVEMEMBER('9123456789012345678901',$,$,$,$,$,$,.NOTDEFINED.);\n");
    const KpIfcModel& model = *file.model();
    EXPECT_THAT(inverseOf(model, 4, "IsDecomposedBy"), ElementsAre(80, 90));
    EXPECT_THAT(inverseOf(model, 2, "Decomposes"), ElementsAre(80, 90)); // more than the schema allows
    EXPECT_THAT(inverseOf(model, 3, "Decomposes"), ElementsAre(90));
    EXPECT_THAT(inverseOf(model, 2, "ContainedInStructure"), ElementsAre(70));
    EXPECT_THAT(inverseOf(model, 60, "ContainedInStructure"), ElementsAre(70));
    EXPECT_THAT(inverseOf(model, 61, "ContainedInStructure"), ElementsAre(70));
    EXPECT_THAT(inverseOf(model, 4, "ContainsElements"), ElementsAre(70));
    EXPECT_THAT(inverseOf(model, 50, "PartOfU"), ElementsAre(60));
    EXPECT_THAT(inverseOf(model, 52, "PartOfV"), ElementsAre(60));
    EXPECT_THAT(inverseOf(model, 52, "PartOfU"), IsEmpty());
    EXPECT_THAT(inverseOf(model, 50, "HasIntersections"), ElementsAre(41)); // named twice by it
    EXPECT_THAT(inverseOf(model, 43, "LayerAssignments"), ElementsAre(42));
    EXPECT_THAT(inverseOf(model, 40, "LayerAssignments"), ElementsAre(42));
    EXPECT_THAT(inverseOf(model, 46, "AssignedStructuralActivity"), ElementsAre(45));
    EXPECT_EQ(expectTrueInverses(model), 17u);
    EXPECT_FALSE(model.hasUncommitted());
    for (KpIfcEntityBase* instance : model.instances()) {
        EXPECT_FALSE(instance->isChanged()) << instance->instanceName();
    }

    KpIfcArray<KpDbObjectId> axes;
    axes.append(KpDbObjectId());
    as<IfcGridAxis>(model.find(51))->getInvPartOfU(axes);
    ASSERT_EQ(axes.size(), 1u); // what the array held before is gone
    EXPECT_TRUE(axes[0] == model.find(60));
}

TEST(Inverse, PassOverWhatCannotBeEntered) {
    KpIfcFile file = openedRecords("#1=IFCWALL('0123456789012345678901',$,$,$,$,$,$,$);\n"
                                   "#2=IFCRELAGGREGATES('1123456789012345678901',$,$,$,$,());\n"
                                   "#3=IFCCARTESIANPOINT((0.,0.));\n"
                                   "#4=IFCRELAGGREGATES('2123456789012345678901',$,$,$,#3,(#3,#9,#99,#1));\n"
                                   "#5=IFCRELAGGREGATES('3123456789012345678901',$,$,$,#1,(#1));\n"
                                   "#5=IFCRELAGGREGATES('4123456789012345678901',$,$,$,$,(#1));\n" // counts
                                   "#9=IFCNOTHING($);\n");
    const KpIfcModel& model = *file.model();
    EXPECT_THAT(inverseOf(model, 1, "Decomposes"), ElementsAre(4, 5));
    EXPECT_THAT(inverseOf(model, 1, "IsDecomposedBy"), IsEmpty());
    EXPECT_EQ(expectTrueInverses(model), 2u);
    const std::string found = findings(file.report());
    for (KpIfcEntityBase* instance : model.instances()) {
        instance->setInverseCounterParts(); // again
        instance->resetInverseCounterParts();
    }
    EXPECT_EQ(expectTrueInverses(model), 2u);
    EXPECT_EQ(findings(file.report()), found);
    EXPECT_FALSE(model.hasUncommitted());
}

/// Where an INVERSE names a subtype of the entity that owns the attribute, instances of other subtypes do not count.
TEST(Inverse, AreFedByTheSubtypeThatTheyName) {
    KpIfcFile file = openedRecords("#1=IFCWALL('0123456789012345678901',$,$,$,$,$,$,$);\n"
                                   "#2=IFCRELDEFINESBYTYPE('1123456789012345678901',$,$,$,(#1),$);\n"
                                   "#3=IFCRELDEFINESBYPROPERTIES('2123456789012345678901',$,$,$,(#1),$);\n");
    KpIfcEntityBase& byType = *file.model()->find(2).openObject();
    KpIfcEntityBase& byProperties = *file.model()->find(3).openObject();
    KpIfcCounterpartFacts row = byType.getInstanceType()->counterparts().front(); // IfcRelDefines.RelatedObjects
    const auto visits = [&row](KpIfcEntityBase& referrer) {
        int count = 0;
        visitCounterParts(referrer, {&row, 1}, [&](KpIfcEntityBase&, const KpIfcInverseFacts&) { ++count; });
        return count;
    };
    EXPECT_EQ(visits(byType) + visits(byProperties), 2);
    row.referrer = &IfcRelDefinesByType::g_pEntityType;
    EXPECT_EQ(visits(byType), 1);
    EXPECT_EQ(visits(byProperties), 0);
}

TEST(Inverse, BelongToThePlaceInAModel) {
    KpIfcFile file = openedRecords("#1=IFCWALL('0123456789012345678901',$,'name',$,$,$,$,$);\n"
                                   "#2=IFCRELAGGREGATES('1123456789012345678901',$,$,$,#1,());\n"
                                   "#3=IFCWALL('2123456789012345678901',$,$,$,$,$,$,$);\n");
    KpIfcModel& model = *file.model();
    const auto* wall = as<IfcWall>(model.find(1));
    KpIfcArray<KpDbObjectId> referrers{model.find(3)};
    IfcWall(*wall).getInvIsDecomposedBy(referrers);
    EXPECT_TRUE(referrers.empty());
    *as<IfcWall>(model.find(3)) = *wall;
    EXPECT_THAT(inverseOf(model, 3, "IsDecomposedBy"), IsEmpty());
    EXPECT_THAT(inverseOf(model, 1, "IsDecomposedBy"), ElementsAre(2));

    // A relation that belongs to no model is nobody's referrer, before and after it changes.
    IfcRelAggregates free(*as<IfcRelAggregates>(model.find(2)));
    free.setInverseCounterParts();
    free.setRelatingObject(model.find(3));
    free.setInverseCounterParts();
    EXPECT_FALSE(model.hasUncommitted());
    // Neither is one of another model.
    KpIfcFile other = emptyFile();
    auto* foreign = other.model()->create<IfcRelAggregates>();
    foreign->setRelatingObject(model.find(3));
    other.model()->commit();
    foreign->setRelatingObject(KpDbObjectId());
    other.model()->commit();
    EXPECT_EQ(expectTrueInverses(model), 1u);
}

} // namespace
