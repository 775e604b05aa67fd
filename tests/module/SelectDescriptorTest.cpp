#include "AttributeText.h"
#include "Environment.h"
#include "SelectClasses.h"

#include <KpIfcCore/KpIfcVariantTypes.h>
#include <KpRx/KcString.h>

#include <gtest/gtest.h>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

template <class Family>
void expectAggregateDescriptor() {
    using S = typename Family::Element;
    Family family;
    const KpIfcVariant value = &family;
    const KpIfcVariantType& type = *value.type();
    EXPECT_TRUE(type.isAggregate() && !type.isSelect());
    for (const std::uint32_t count : {0u, 1u}) {
        KpIfcArray<S> elements(3);
        elements.resize(2);
        KpIfcVariant converted = 5;
        EXPECT_TRUE(type.toValueType(KpIfcVariantType::Desc<KpIfcArray<KpIfcVariant>>::value(), value, converted));
        if (count == 0) {
            EXPECT_TRUE(family.isNil());
            EXPECT_EQ(*converted.getIf<int>(), 5); // untouched
        } else {
            EXPECT_EQ(converted.getIf<KpIfcArray<KpIfcVariant>>()->length(), count);
            EXPECT_TRUE((*converted.getIf<KpIfcArray<KpIfcVariant>>())[0].template holds<S>());
        }
        EXPECT_TRUE(type.toValueType(KpIfcVariantType::Desc<KpIfcArray<S>>::value(), value, converted));
        EXPECT_EQ(converted.getIf<KpIfcArray<S>>()->length(), count);
        EXPECT_EQ(converted.getIf<KpIfcArray<S>>()->growLength(), 8u);
        EXPECT_TRUE(value.get(elements));
        EXPECT_EQ(elements.length(), count);
        KpIfcAggr* generic = nullptr;
        EXPECT_TRUE(value.get(generic));
        EXPECT_EQ(generic, &family);
        for (const KpIfcVariantType* target :
             {&KpIfcVariantType::Desc<int>::value(), &KpIfcVariantType::Desc<S>::value(),
              &KpIfcVariantType::Desc<S*>::value(), &KpIfcVariantType::Desc<KpIfcArray<KpDbObjectId>>::value(),
              &KpIfcVariantType::Desc<KpIfcSetAggr<KpDbObjectId>*>::value(),
              &KpIfcVariantType::Desc<KpTypeCodeKind>::value()}) {
            KpIfcVariant scratch;
            EXPECT_EQ(value.convert(*target, scratch), nullptr);
        }
        EXPECT_FALSE(value == KpIfcVariant(value));
        KcString text;
        EXPECT_FALSE(value.toString(text));
        EXPECT_EQ(type.typePath(value), nullptr);
        family.assign(KpIfcArray<S>{S()});
    }
    KpIfcVariant made;
    EXPECT_TRUE(type.createVariant(made));
    EXPECT_EQ(*made.getIf<Family*>(), nullptr);
    KpIfcArray<S> none;
    EXPECT_FALSE(made.get(none));
}

template <class S>
void expectSelectDescriptors() {
    S empty, other;
    SCOPED_TRACE(testing::PrintToString(KpIfcVariantType::Desc<S>::value().displayName()));
    EXPECT_EQ(&KpIfcVariantType::Desc<S>::value(), &S::g_descriptors.value.value());
    EXPECT_EQ(&KpIfcVariantType::Desc<S*>::value(), &S::g_descriptors.pointer.value());
    for (const std::string& name : alternativesOf(empty)) {
        S select;
        ASSERT_TRUE(select.underlyingTypeName(name.c_str()));
        const KpIfcVariant byValue = select, byPointer = &select;
        EXPECT_NE(byValue.getIf<S>(), &select);
        EXPECT_EQ(byPointer.type()->storedSelect(byPointer), &select);
        for (const KpIfcVariant* value : {&byValue, &byPointer}) {
            EXPECT_TRUE(value->type()->isSelect() && !value->type()->isAggregate());
            EXPECT_EQ(value->type()->typePath(*value), name);
            KpTypeCodeKind kind = kTypeNone;
            EXPECT_TRUE(value->get(kind));
            EXPECT_EQ(kind, select.valueKind());
            S copy;
            EXPECT_TRUE(value->get(copy));
            EXPECT_TRUE(copy == select);
            EXPECT_TRUE(*value == KpIfcVariant(*value));
            KcString text;
            const bool hasText = select.valueKind() != kTypeAggregate;
            EXPECT_EQ(value->toString(text), hasText) << name;
            EXPECT_EQ(value->toString(text, kFormatStep), hasText) << name;
        }
        EXPECT_FALSE(byValue == byPointer); // of two types
        EXPECT_FALSE(byPointer == KpIfcVariant(&empty));
        S* pointer = nullptr;
        EXPECT_TRUE(byValue.get(pointer)); // to what the variant holds
        EXPECT_EQ(pointer, byValue.getIf<S>());
    }
    KpIfcVariant made;
    EXPECT_TRUE(KpIfcVariantType::Desc<S>::value().createVariant(made));
    EXPECT_TRUE(made.getIf<S>()->isNull());
    EXPECT_STREQ(made.type()->typePath(made), "");
    EXPECT_NE(made.type()->objectMemAllocator(), nullptr);
    EXPECT_TRUE(KpIfcVariantType::Desc<S*>::value().createVariant(made));
    EXPECT_EQ(*made.getIf<S*>(), nullptr);
    EXPECT_EQ(made.type()->typePath(made), nullptr);
    EXPECT_EQ(made.type()->objectMemAllocator(), nullptr);
    EXPECT_TRUE(made == KpIfcVariant(made));
    EXPECT_FALSE(made == KpIfcVariant(&empty));
    KcString text;
    EXPECT_FALSE(made.toString(text));
    EXPECT_FALSE(made.get(other));
    if constexpr (requires { S::g_descriptors.set; }) {
        expectAggregateDescriptor<KpIfcSetAggr<S>>();
    }
    if constexpr (requires { S::g_descriptors.list; }) {
        expectAggregateDescriptor<KpIfcListAggr<S>>();
    }
    if constexpr (requires { S::g_descriptors.array; }) {
        KpIfcVariant array;
        EXPECT_TRUE(KpIfcVariantType::Desc<KpIfcArray<S>>::value().createVariant(array));
        EXPECT_TRUE(array == KpIfcVariant(KpIfcArray<S>()));
        EXPECT_FALSE(array == KpIfcVariant(KpIfcArray<S>{S()}));
    }
}

TEST(SelectDescriptor, OfEveryClassAndItsAggregates) {
    []<class... Select>(ClassList<Select...>) { (expectSelectDescriptors<Select>(), ...); }(SelectClasses{});
}

/// Selects convert to what they hold, and from what one of their alternatives can be.
TEST(SelectDescriptor, Conversions) {
    KpIfcFile file = emptyFile();
    const auto handleOf = [&](const char* entity) { return file.model()->create(entity)->objectId(); };
    const KpDbObjectId both = handleOf("IfcPersonAndOrganization"), wall = handleOf("IfcWall");
    IfcMeasureValue measure;
    measure.setIfcLengthMeasure(2.5);
    const KpIfcVariant byValue = measure, byPointer = &measure;
    for (const KpIfcVariant* value : {&byValue, &byPointer}) {
        IfcValue wider;
        EXPECT_TRUE(value->get(wider));
        EXPECT_EQ(selectText(wider), "IfcLengthMeasure(0x1.4p+1)");
        IfcDerivedMeasureValue stranger;
        EXPECT_FALSE(value->get(stranger));
        double real = 0;
        int whole = 7;
        EXPECT_TRUE(value->get(real));
        EXPECT_EQ(real, 2.5);
        EXPECT_FALSE(value->get(whole));
        EXPECT_EQ(whole, 7);
        KpDbObjectId handle;
        EXPECT_FALSE(value->get(handle));
    }
    IfcActorSelect actor;
    EXPECT_TRUE(KpIfcVariant(both).get(actor));
    EXPECT_EQ(actor.tag(), 2);
    EXPECT_FALSE(KpIfcVariant(wall).get(actor));
    EXPECT_FALSE(KpIfcVariant(KpDbObjectId()).get(actor));
    EXPECT_TRUE(KpIfcVariantType::Desc<IfcActorSelect>::value().reference(actor) == both);
    KpDbObjectId handle;
    EXPECT_TRUE(KpIfcVariant(actor).get(handle));
    EXPECT_TRUE(handle == both);
    IfcValue value;
    value.setIfcComplexNumber({1, 2});
    KpIfcArray<double> reals;
    EXPECT_TRUE(KpIfcVariant(value).get(reals));
    EXPECT_EQ(reals, (KpIfcArray<double>{1, 2}));
    IfcSimpleValue simple;
    EXPECT_TRUE(KpIfcVariant(2.5).get(simple));
    EXPECT_EQ(selectText(simple), "IfcReal(0x1.4p+1)");
    EXPECT_FALSE(KpIfcVariant("label or text?").get(simple));
}

TEST(SelectDescriptor, Texts) {
    KpIfcFile file = emptyFile();
    std::vector<KpIfcVariant> values(1, IfcValue());
    IfcValue value;
    value.setIfcLabel("it's");
    values.emplace_back(value);
    value.setIfcLengthMeasure(2.5);
    values.emplace_back(value);
    value.setIfcLogical(KpIfcLogical(KpIfcLogical::Unknown));
    values.emplace_back(value);
    ASSERT_TRUE(value.underlyingTypeName("IfcLabel"));
    values.emplace_back(value);
    IfcPresentationStyleSelect style;
    style.setIfcNullStyle(kIfcNullStyle_NULL);
    values.emplace_back(style);
    ASSERT_TRUE(style.underlyingTypeName("IfcNullStyle")); // without a literal yet
    values.emplace_back(style);
    IfcActorSelect actor;
    ASSERT_TRUE(actor.setHandle(file.model()->create("IfcPerson")->objectId()));
    values.emplace_back(actor);
    std::vector<std::string> plain, step;
    for (const KpIfcVariant& each : values) {
        KcString text;
        EXPECT_TRUE(each.toString(text, kFormatPlain));
        plain.push_back(text.utf8Ptr());
        EXPECT_TRUE(each.toString(text, kFormatStep));
        step.push_back(text.utf8Ptr());
    }
    EXPECT_EQ(plain, (std::vector<std::string>{"", "it's", "2.5", "unknown", "", "NULL", "", "#1"}));
    EXPECT_EQ(step, (std::vector<std::string>{"$", "IFCLABEL('it''s')", "IFCLENGTHMEASURE(2.5)", "IFCLOGICAL(.U.)",
                                              "IFCLABEL($)", "IFCNULLSTYLE(.NULL.)", "IFCNULLSTYLE($)", "#1"}));
}

} // namespace
