#include "AttributeText.h"
#include "AttributeValues.h"
#include "Environment.h"

#include <IFC2X3/IfcPixelTexture.h>
#include <IFC2X3/IfcWorkPlan.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace KP_SDAI;
using testing::IsEmpty;

namespace {

std::vector<const KpIfcEntityType*> instantiableEntities(const KpIfcSchema& schema) {
    std::vector<const KpIfcEntityType*> types = entityTypes(schema);
    std::erase_if(types, [](const KpIfcEntityType* type) { return type->isAbstract(); });
    return types;
}

/// Writes the file, reads it back and compares every instance member by member.
void expectSurvives(KpIfcFile& file) {
    const std::string written = saved(file);
    EXPECT_THAT(findings(file.writeReport()), IsEmpty());
    KpIfcFile read = opened(written);
    // GlobalIds are among the texts that are as odd as texts can be, and the same in all instances.
    const KpIfcReport& report = read.report();
    EXPECT_EQ(report.departures(), report.count(KpIfcFinding::globalId) + report.count(KpIfcFinding::notUnique));
    ASSERT_EQ(read.model()->count(), file.model()->count());
    EXPECT_EQ(read.model()->keptRecordCount(), 0u);
    for (KpIfcEntityBase* instance : file.model()->instances()) {
        KpIfcEntityBase* other = read.model()->find(instance->instanceName()).openObject();
        ASSERT_TRUE(other) << attributesText(*instance);
        ASSERT_EQ(attributesText(*other), attributesText(*instance));
    }
    EXPECT_TRUE(saved(read) == written) << "writing what was read gives another file";
}

TEST(EntityFields, SurviveWithEveryAttributeSet) {
    KpIfcFile file = emptyFile();
    KpIfcModel& model = *file.model();
    AttributeValues values(model);
    const std::vector<const KpIfcEntityType*> types = instantiableEntities(model.schema());
    EXPECT_EQ(types.size(), 556u);
    for (const KpIfcEntityType* type : types) {
        for (int variant = 0; variant < values.variants(*type); ++variant) {
            values.fill(*model.create(type), variant);
        }
    }
    expectSurvives(file);
}

TEST(EntityFields, SurviveWithNoneSet) {
    KpIfcFile file = emptyFile();
    for (const KpIfcEntityType* type : instantiableEntities(file.model()->schema())) {
        file.model()->create(type);
    }
    std::string expected;
    for (KpIfcEntityBase* instance : file.model()->instances()) {
        expected += '#' + std::to_string(instance->instanceName()) + '=' + instance->getInstanceType()->name() + '(';
        const char* separator = "";
        for (const KpIfcAttributeFacts* attribute : instance->getInstanceType()->recordFields()) {
            const bool mandatoryAggregate = attribute->kind == KpIfcFieldKind::aggregate && !attribute->isOptional();
            expected += separator;
            expected += attribute->kind == KpIfcFieldKind::derived   ? "*"
                        : attribute->kind == KpIfcFieldKind::notKept ? "\"\""
                        : mandatoryAggregate                         ? "()"
                                                                     : "$";
            separator = ",";
        }
        expected += ");\n";
    }
    EXPECT_EQ(savedRecords(file), expected);
    expectSurvives(file);
}

/// The one attribute of the schema that no instance keeps.
TEST(EntityFields, OnlyTheRasterCodeOfBlobTexturesIsNotKept) {
    KpIfcFile file = emptyFile();
    std::vector<std::string> notKept;
    for (const KpIfcEntityType* type : instantiableEntities(file.model()->schema())) {
        for (const KpIfcAttributeFacts* attribute : type->recordFields()) {
            if (attribute->kind == KpIfcFieldKind::notKept) {
                notKept.push_back(std::string(type->name()) + '.' + attribute->name);
            }
        }
    }
    EXPECT_THAT(notKept, testing::ElementsAre("IFCBLOBTEXTURE.RasterCode"));
}

TEST(EntityFields, OrderInWhichTheStandardHasThem) {
    const struct {
        const char* entity;
        std::vector<std::string> fields;
    } cases[] = {
        {"IfcSIUnit", {"Dimensions", "UnitType", "Prefix", "Name"}},
        {"IfcOrientedEdge", {"EdgeStart", "EdgeEnd", "EdgeElement", "Orientation"}},
        {"IfcGeometricRepresentationSubContext",
         {"ContextIdentifier", "ContextType", "CoordinateSpaceDimension", "Precision", "WorldCoordinateSystem",
          "TrueNorth", "ParentContext", "TargetScale", "TargetView", "UserDefinedTargetView"}},
        {"IfcWorkPlan",
         {"GlobalId", "OwnerHistory", "Name", "Description", "ObjectType", "Identifier", "CreationDate", "Creators",
          "Purpose", "Duration", "TotalFloat", "StartTime", "FinishTime", "WorkControlType", "UserDefinedControlType"}},
    };
    const KpIfcFile file = emptyFile();
    for (const auto& c : cases) {
        std::vector<std::string> fields;
        for (const KpIfcAttributeFacts* attribute : file.model()->schema().findEntity(c.entity)->recordFields()) {
            fields.push_back(attribute->name);
        }
        EXPECT_EQ(fields, c.fields) << c.entity;
    }
}

TEST(FreshInstance, HoldsTheUnsetMarkers) {
    const IFC2X3::IfcPixelTexture texture;
    EXPECT_EQ(texture.getWidth(), 2147483647);
    EXPECT_EQ(texture.getHeight(), Consts::KpIntUnset);
    EXPECT_EQ(texture.getColourComponents(), Consts::KpIntUnset);
    EXPECT_EQ(texture.getRepeatS(), KpIfcBoolean(KpIfcBoolean::Unset));
    EXPECT_TRUE(texture.getPixel().isNil());
    EXPECT_EQ(texture.getTextureType(), IFC2X3::kIfcSurfaceTextureEnum_UNSET);

    const IFC2X3::IfcWorkPlan plan;
    EXPECT_TRUE(plan.getGlobalId().isUnset());
    EXPECT_TRUE(plan.getOwnerHistory() == Consts::KpHandleUnset);
    EXPECT_STREQ(plan.getIdentifier(), Consts::KpStringUnset);
    EXPECT_EQ(static_cast<std::uint64_t>(plan.getPurpose().length()), Consts::KpStringUnsetLength);
    EXPECT_EQ(plan.getDuration(), Consts::KpRealUnset);
    EXPECT_TRUE(plan.getCreators().empty());
    EXPECT_EQ(plan.getWorkControlType(), 5);
    EXPECT_EQ(plan.getCreationDate().tag(), IFC2X3::IfcDateTimeSelect::eUnset);
    EXPECT_EQ(plan.objectId().isNull(), true);
    EXPECT_EQ(plan.owningModel(), nullptr);
}

} // namespace
