#include "ModulePath.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace KP_SDAI;

class ModuleSchema : public testing::Test {
protected:
    void SetUp() override {
        m_module = loadModule();
        ASSERT_NE(m_module, nullptr);
    }
    const KpIfcSchema& schema() const { return m_module->schema(); }
    const DictionaryInstance* underlying(const char* name) const {
        const KpIfcDefinedType* type = schema().findType(name);
        return type ? type->underlyingType() : nullptr;
    }

private:
    std::shared_ptr<KpIfcModule> m_module;
};

TEST_F(ModuleSchema, SaysWhichItIs) {
    EXPECT_STREQ(schema().name(), "IFC2X3");
    EXPECT_EQ(schema().majorVersion(), 2);
    EXPECT_EQ(schema().minorVersion(), 3);
    EXPECT_TRUE(schema().unresolvedNames().empty());
}

TEST_F(ModuleSchema, DefinedTypesStandForWhatTheSchemaSays) {
    const struct {
        const char* type;
        const char* simple;
    } kOverSimple[] = {
        {"IfcLengthMeasure", "real"},      {"IfcRatioMeasure", "real"}, {"IfcCountMeasure", "real"},
        {"IfcNumericMeasure", "real"},     {"IfcInteger", "integer"},   {"IfcDimensionCount", "integer"},
        {"IfcGloballyUniqueId", "string"}, {"IfcLabel", "string"},      {"IfcBoolean", "boolean"},
        {"IfcLogical", "logical"},
    };
    for (const auto& param : kOverSimple)
        EXPECT_EQ(underlying(param.type), KpIfcSimpleType::find(param.simple)) << param.type;

    const struct {
        const char* type;
        const char* other;
    } kOverDefined[] = {
        {"IfcPositiveLengthMeasure", "IfcLengthMeasure"},
        {"IfcPositivePlaneAngleMeasure", "IfcPlaneAngleMeasure"},
        {"IfcPositiveRatioMeasure", "IfcRatioMeasure"},
        {"IfcNormalisedRatioMeasure", "IfcRatioMeasure"},
        {"IfcBoxAlignment", "IfcLabel"},
    };
    for (const auto& param : kOverDefined) {
        ASSERT_NE(schema().findType(param.other), nullptr) << param.other;
        EXPECT_EQ(underlying(param.type), schema().findType(param.other)) << param.type;
    }
}

TEST_F(ModuleSchema, Has115SimpleDefinedTypes) {
    int simple = 0;
    for (const Dictionary::Entry& entry : schema().types().entries()) {
        const auto* type = dynamic_cast<const KpIfcDefinedType*>(entry.object.get());
        ASSERT_NE(type, nullptr) << entry.name;
        EXPECT_EQ(entry.name, type->name());
        EXPECT_TRUE(type->isDeclared()) << entry.name;
        const DictionaryInstance* over = type->underlyingType();
        simple += dynamic_cast<const KpIfcSimpleType*>(over) || dynamic_cast<const KpIfcDefinedType*>(over);
    }
    EXPECT_EQ(simple, 115);
}

TEST_F(ModuleSchema, AnonymousTypesAreFoundOnlyAsSuch) {
    const struct {
        const char* name;
        bool fixed;
        int width;
    } kTypes[] = {{"string(22)fixed", true, 22}, {"binary(32)", false, 32}};
    for (const auto& param : kTypes) {
        const auto* type = dynamic_cast<const KpIfcDefinedType*>(schema().anonymousTypes().at(param.name));
        ASSERT_NE(type, nullptr) << param.name;
        const auto* text = dynamic_cast<const KpIfcStringType*>(type->underlyingType());
        ASSERT_NE(text, nullptr) << param.name;
        EXPECT_EQ(text->isFixed(), param.fixed);
        EXPECT_EQ(text->width(), param.width);
        EXPECT_EQ(schema().findType(param.name), nullptr);
        EXPECT_EQ(schema().findEntity(param.name), nullptr);
    }
}

TEST_F(ModuleSchema, Has653EntitiesIn101Trees) {
    int entities = 0;
    int roots = 0;
    for (const Dictionary::Entry& entry : schema().entities().entries()) {
        const auto* type = dynamic_cast<const KpIfcEntityType*>(entry.object.get());
        ASSERT_NE(type, nullptr) << entry.name;
        EXPECT_EQ(entry.name, type->name());
        EXPECT_EQ(entry.name.find_first_of("abcdefghijklmnopqrstuvwxyz"), std::string::npos) << entry.name;
        ++entities;
        roots += type->superType() == nullptr;
    }
    EXPECT_EQ(entities, 653);
    EXPECT_EQ(roots, 101);
}

} // namespace
