#include "schema/KpIFC2X3SchemaBuilder.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> g_steps;

} // namespace

// The module's driver is compiled in, with these in place of the steps that it drives.
void KpIFC2X3SchemaBuilder::addAnonymousSimpleTypes() {
    g_steps.emplace_back("anonymous simple types");
}
void KpIFC2X3SchemaBuilder::addSimpleDefinedTypes() {
    g_steps.emplace_back("simple defined types");
}
void KpIFC2X3SchemaBuilder::addEnumerationTypes() {
    g_steps.emplace_back("enumeration types");
}
void KpIFC2X3SchemaBuilder::addEntityTypes() {
    g_steps.emplace_back("entity types");
}
void KpIFC2X3SchemaBuilder::addSelectTypes() {
    g_steps.emplace_back("select types");
}
void KpIFC2X3SchemaBuilder::addAggregationTypes() {
    g_steps.emplace_back("aggregation types");
}

namespace {

TEST(BuilderSteps, ComeOnceEachInTheirOrder) {
    KP_SDAI::KpIfcSchema schema;
    KpIFC2X3SchemaBuilder(&schema, "IFC2X3").build();
    EXPECT_THAT(g_steps, testing::ElementsAre("anonymous simple types", "simple defined types", "enumeration types",
                                              "entity types", "select types", "aggregation types"));
    EXPECT_EQ(schema.majorVersion(), 2);
    EXPECT_EQ(schema.minorVersion(), 3);
}

} // namespace
