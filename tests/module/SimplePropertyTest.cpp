#include "Environment.h"

#include <IFC2X3/SimpleProperty.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcSimpleProperty.h>
#include <KpRx/KcString.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

using namespace KP_SDAI;
using testing::ElementsAre;

namespace {

constexpr KpTypeCodeKind kFormer = kTypeAggregate; ///< what the type code is before

struct Built {
    std::unique_ptr<KpIfcProperty> property;
    KpTypeCodeKind typeCode = kFormer;
    bool result = false;
};

Built build(KpIfcEntityBase* instance) {
    Built built;
    KpIfcProperty* property = nullptr;
    built.result = kpIfcBuildPropertyForSimple(instance, property, built.typeCode);
    built.property.reset(property);
    return built;
}

KpIfcEntityBase* only(const KpIfcFile& file) {
    return file.model()->find(1).openObject();
}

struct Case {
    const char* name;
    const char* record;
    const char* attribute; ///< "" where no property is made
    KpTypeCodeKind typeCode;
    bool result;
};

class SimplePropertyTest : public testing::TestWithParam<Case> {};

template <class T>
bool isExactly(const KpIfcProperty& property) {
    return typeid(property) == typeid(T);
}

bool isOfItsClass(const KpIfcProperty& property, std::string_view attribute) {
    if (attribute == "nominalvalue") return isExactly<KpIfcPropertySingleValue>(property);
    if (attribute == "upperboundvalue") return isExactly<KpIfcPropertyBoundedValue>(property);
    if (attribute == "hasQuantities") return isExactly<KpIfcComplexProperty>(property);
    return isExactly<KpIfcQuantityClusterProperty>(property);
}

TEST_P(SimplePropertyTest, ClassTypeCodeAndResult) {
    const Case& expected = GetParam();
    KpIfcFile file = openedRecords("#1=" + std::string(expected.record) + ";\n");
    const std::string before = savedRecords(file);
    ASSERT_TRUE(only(file));
    const Built built = build(only(file));
    EXPECT_EQ(built.result, expected.result);
    EXPECT_EQ(built.typeCode, expected.typeCode);
    ASSERT_EQ(built.property != nullptr, *expected.attribute != '\0');
    EXPECT_FALSE(only(file)->isChanged());
    if (!built.property) return;
    const auto* property = dynamic_cast<const KpIfcSimpleProperty*>(built.property.get());
    ASSERT_TRUE(property);
    EXPECT_EQ(property->attribute(), expected.attribute);
    EXPECT_TRUE(isOfItsClass(*property, expected.attribute));
    EXPECT_EQ(property->kind(), kSimpleProperty);
}

const Case kCases[] = {
    {"SingleReal", "IFCPROPERTYSINGLEVALUE('n',$,IFCLENGTHMEASURE(2.),$)", "nominalvalue", kTypeReal, false},
    {"SingleInteger", "IFCPROPERTYSINGLEVALUE('n',$,IFCINTEGER(2),$)", "nominalvalue", kTypeInteger, false},
    {"SingleText", "IFCPROPERTYSINGLEVALUE('n',$,IFCLABEL('x'),$)", "nominalvalue", kTypeString, false},
    {"SingleBoolean", "IFCPROPERTYSINGLEVALUE('n',$,IFCBOOLEAN(.T.),$)", "nominalvalue", kTypeBoolean, false},
    {"SingleLogical", "IFCPROPERTYSINGLEVALUE('n',$,IFCLOGICAL(.U.),$)", "nominalvalue", kTypeLogical, false},
    {"SingleAggregate", "IFCPROPERTYSINGLEVALUE('n',$,IFCCOMPLEXNUMBER((1.,2.)),$)", "nominalvalue", kTypeAggregate,
     false},
    {"SingleWithoutValue", "IFCPROPERTYSINGLEVALUE('n',$,$,$)", "nominalvalue", kFormer, false},
    {"Bounded", "IFCPROPERTYBOUNDEDVALUE('n',$,IFCINTEGER(2),IFCINTEGER(1),$)", "upperboundvalue", kFormer, true},
    {"Complex", "IFCCOMPLEXPROPERTY('n',$,'u',())", "hasQuantities", kTypeString, true},
    {"ComplexQuantity", "IFCPHYSICALCOMPLEXQUANTITY('n',$,(),'d',$,$)", "hasQuantities", kTypeString, true},
    {"Area", "IFCQUANTITYAREA('n',$,$,2.)", "areavalue", kTypeReal, true},
    {"Count", "IFCQUANTITYCOUNT('n',$,$,2.)", "countvalue", kTypeReal, true},
    {"Length", "IFCQUANTITYLENGTH('n',$,$,2.)", "lengthvalue", kTypeReal, true},
    {"Time", "IFCQUANTITYTIME('n',$,$,2.)", "timevalue", kTypeReal, true},
    {"Volume", "IFCQUANTITYVOLUME('n',$,$,2.)", "volumevalue", kTypeReal, true},
    {"Weight", "IFCQUANTITYWEIGHT('n',$,$,2.)", "weightvalue", kTypeReal, true},
    {"List", "IFCPROPERTYLISTVALUE('n',$,(IFCINTEGER(2)),$)", "", kFormer, false},
    {"Enumerated", "IFCPROPERTYENUMERATEDVALUE('n',$,(IFCINTEGER(2)),$)", "", kFormer, false},
    {"Set", "IFCPROPERTYSET('0123456789012345678901',$,'n',$,())", "", kFormer, false},
    {"Wall", "IFCWALL('0123456789012345678901',$,$,$,$,$,$,$)", "", kFormer, false},
};

INSTANTIATE_TEST_SUITE_P(Entities, SimplePropertyTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return test.param.name; });

TEST(SimpleProperty, NothingWithoutInstance) {
    KpIfcProperty* const former = new KpIfcQuantityClusterProperty("areavalue");
    KpIfcProperty* property = former;
    KpTypeCodeKind typeCode = kFormer;
    EXPECT_FALSE(kpIfcBuildPropertyForSimple(nullptr, property, typeCode));
    EXPECT_EQ(property, former);
    EXPECT_EQ(typeCode, kFormer);
    delete former;
}

/// An access that is not defined is not read; the property is made all the same.
TEST(SimpleProperty, TypeCodeFollowsTheAccessMode) {
    KpIfcFile file = openedRecords("#1=IFCPROPERTYSINGLEVALUE('n',$,IFCLABEL('x'),$);\n");
    for (const auto& [mode, typeCode] : {std::pair{kAccessUndefined, kFormer}, std::pair{kReadOnly, kTypeString}}) {
        file.model()->mode(mode);
        const Built built = build(only(file));
        EXPECT_TRUE(built.property);
        EXPECT_EQ(built.typeCode, typeCode);
    }
}

TEST(SimpleProperty, ValuesKeepTheirTypes) {
    KpIfcFile file =
        openedRecords("#1=IFCPROPERTYSINGLEVALUE('T\\X2\\00FC\\X0\\r',$,IFCLABEL('\\X2\\00E9\\X0\\'),#2);\n"
                      "#2=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);\n"
                      "#3=IFCQUANTITYAREA('A',$,$,2.5);\n"
                      "#4=IFCPROPERTYBOUNDEDVALUE('B',$,IFCINTEGER(9),$,$);\n");
    KpIfcModel& model = *file.model();
    const Built single = build(model.find(1).openObject());
    const auto& property = dynamic_cast<const KpIfcSimpleProperty&>(*single.property);
    KcString name;
    KpDbObjectId unit;
    KpIfcVariant value;
    EXPECT_EQ(property.getName(only(file), name), KP::eOk);
    EXPECT_EQ(name.view(), "Tür");
    EXPECT_EQ(property.getUnit(only(file), unit), KP::eOk);
    EXPECT_EQ(unit, model.find(2));
    EXPECT_STREQ(property.measureType(only(file)), "IfcLabel");
    EXPECT_EQ(property.getAttribute(only(file), value), KP::eOk);
    EXPECT_EQ(value.getIf<KcString>()->view(), "é");
    EXPECT_FALSE(only(file)->isChanged());
    EXPECT_EQ(property.putAttribute(only(file), KcString("Bär", KcString::Encoding::utf8)), KP::eOk);
    EXPECT_NE(savedRecords(file).find("IFCLABEL('B\\X2\\00E4\\X0\\r')"), std::string::npos);

    KpIfcEntityBase* area = model.find(3).openObject();
    const Built quantity = build(area);
    EXPECT_EQ(quantity.property->putAttribute(area, 3), KP::eOk);
    EXPECT_EQ(quantity.property->getAttribute(area, value), KP::eOk);
    EXPECT_EQ(value, KpIfcVariant(3.));
    EXPECT_EQ(quantity.property->getAttribute(only(file), value), KP::eRefused); // which has no such attribute

    KpIfcEntityBase* limits = model.find(4).openObject();
    const Built bounded = build(limits);
    EXPECT_EQ(bounded.property->getAttribute(limits, value), KP::eOk);
    EXPECT_EQ(value, KpIfcVariant(KpIfcArray<KpIfcVariant>{KpIfcVariant(), 9}));
    // There is no lower bound whose type a new one could keep: nothing is changed then.
    EXPECT_EQ(bounded.property->putAttribute(limits, KpIfcArray<KpIfcVariant>{1, 5}), KP::eRefused);
    EXPECT_EQ(bounded.property->putAttribute(limits, KpIfcArray<KpIfcVariant>{KpIfcVariant(), 5}), KP::eOk);
    EXPECT_EQ(bounded.property->getAttribute(limits, value), KP::eOk);
    EXPECT_EQ(value, KpIfcVariant(KpIfcArray<KpIfcVariant>{KpIfcVariant(), 5}));

    model.mode(kReadOnly);
    EXPECT_EQ(quantity.property->putAttribute(area, 4.), KP::eRefused);
}

TEST(SimpleProperty, ComplexOnesHoldWhatEitherAttributeHolds) {
    KpIfcFile file = openedRecords("#1=IFCCOMPLEXPROPERTY('n',$,'u',(#3));\n"
                                   "#2=IFCPHYSICALCOMPLEXQUANTITY('n',$,(#4,#5),'d',$,$);\n"
                                   "#3=IFCPROPERTYSINGLEVALUE('n',$,$,$);\n"
                                   "#4=IFCQUANTITYAREA('A',$,$,2.5);\n#5=IFCQUANTITYAREA('B',$,$,2.5);\n");
    const KpIfcModel& model = *file.model();
    const Built complex = build(only(file));
    KpIfcArray<KpDbObjectId> members;
    std::uint32_t count = 0;
    EXPECT_EQ(complex.property->getCollection(only(file), members), KP::eOk);
    EXPECT_THAT(members, ElementsAre(model.find(3)));
    EXPECT_EQ(complex.property->getCollection(model.find(2).openObject(), members), KP::eOk);
    EXPECT_THAT(members, ElementsAre(model.find(4), model.find(5)));
    EXPECT_EQ(complex.property->countCollection(model.find(2).openObject(), count), KP::eOk);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(complex.property->getCollection(model.find(3).openObject(), members), KP::eRefused);
    EXPECT_EQ(complex.property->getCollection(nullptr, members), KP::eNullEntity);
    EXPECT_EQ(complex.property->putAttribute(only(file), KpIfcArray<KpDbObjectId>{model.find(4)}), KP::eOk);
    EXPECT_EQ(complex.property->getCollection(only(file), members), KP::eOk);
    EXPECT_THAT(members, ElementsAre(model.find(4)));
}

} // namespace
