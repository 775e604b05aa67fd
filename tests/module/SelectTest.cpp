#include "AttributeText.h"
#include "Environment.h"
#include "SelectClasses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <type_traits>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

/// Opens what selects keep for reading files.
template <class S>
struct Opened : S {
    using S::refreshSelectHandle;
    using S::setHandleD;
    using S::setHandleOnLoad;
    using S::setUnderlyingType;
    using S::unset;
};

template <class S>
void expectAlternatives(const char* name, int count) {
    SCOPED_TRACE(name);
    S fresh;
    EXPECT_EQ(fresh.tag(), count);
    EXPECT_EQ(static_cast<int>(S::eUnset), count);
    EXPECT_EQ(static_cast<int>(S::eUnresolved), count + 1);
    EXPECT_STREQ(fresh.underlyingTypeName(), "");
    EXPECT_TRUE(fresh.isNull());
    EXPECT_FALSE(fresh.underlyingTypeName("IfcNothing"));
    EXPECT_EQ(fresh.tag(), count);

    const std::vector<std::string> names = alternativesOf(fresh);
    ASSERT_EQ(names.size(), static_cast<std::size_t>(count));
    for (int code = 0; code < count; ++code) {
        S chosen;
        ASSERT_TRUE(chosen.underlyingTypeName(names[static_cast<std::size_t>(code)].c_str())) << code;
        EXPECT_EQ(chosen.tag(), code);
        EXPECT_EQ(chosen.underlyingTypeName(), names[static_cast<std::size_t>(code)]);
        EXPECT_NE(chosen.valueKind(), kTypeNone);
        S copy(chosen);
        EXPECT_EQ(copy.tag(), code);
        EXPECT_TRUE(copy == chosen);
    }
    Opened<S> opened;
    for (const int code : {-1, count, count + 1, 1000}) {
        EXPECT_EQ(opened.setUnderlyingType(code), 18) << code;
        EXPECT_EQ(opened.tag(), count) << code;
    }
}

TEST(Select, HasTheAlternativesOfTheSchema) {
    static constexpr struct {
        const char* name;
        int count;
    } kCounts[] = {
        {"IfcActorSelect", 3},
        {"IfcAppliedValueSelect", 3},
        {"IfcAxis2Placement", 2},
        {"IfcBooleanOperand", 4},
        {"IfcCharacterStyleSelect", 1},
        {"IfcClassificationNotationSelect", 2},
        {"IfcColour", 2},
        {"IfcColourOrFactor", 2},
        {"IfcConditionCriterionSelect", 2},
        {"IfcCsgSelect", 2},
        {"IfcCurveFontOrScaledCurveFontSelect", 3},
        {"IfcCurveOrEdgeCurve", 2},
        {"IfcCurveStyleFontSelect", 2},
        {"IfcDateTimeSelect", 3},
        {"IfcDefinedSymbolSelect", 2},
        {"IfcDerivedMeasureValue", 68},
        {"IfcDocumentSelect", 2},
        {"IfcDraughtingCalloutElement", 3},
        {"IfcFillAreaStyleTileShapeSelect", 1},
        {"IfcFillStyleSelect", 5},
        {"IfcGeometricSetSelect", 3},
        {"IfcHatchLineDistanceSelect", 2},
        {"IfcLayeredItem", 2},
        {"IfcLibrarySelect", 2},
        {"IfcLightDistributionDataSourceSelect", 2},
        {"IfcMaterialSelect", 5},
        {"IfcMeasureValue", 22},
        {"IfcMetricValueSelect", 8},
        {"IfcObjectReferenceSelect", 13},
        {"IfcOrientationSelect", 2},
        {"IfcPointOrVertexPoint", 2},
        {"IfcPresentationStyleSelect", 6},
        {"IfcShell", 2},
        {"IfcSimpleValue", 7},
        {"IfcSizeSelect", 6},
        {"IfcSpecularHighlightSelect", 2},
        {"IfcStructuralActivityAssignmentSelect", 2},
        {"IfcSurfaceOrFaceSurface", 3},
        {"IfcSurfaceStyleElementSelect", 5},
        {"IfcSymbolStyleSelect", 2},
        {"IfcTextFontSelect", 2},
        {"IfcTextStyleSelect", 2},
        {"IfcTrimmingSelect", 2},
        {"IfcUnit", 3},
        {"IfcValue", 97},
        {"IfcVectorOrDirection", 2},
    };
    []<class... S>(ClassList<S...>) {
        static_assert(sizeof...(S) == std::size(kCounts));
        const auto* row = kCounts;
        ((expectAlternatives<S>(row->name, row->count), ++row), ...);
    }(SelectClasses{});
}

TEST(Select, TagsOfValues) {
    const struct {
        const char* name;
        int tag;
        KpTypeCodeKind kind;
    } cases[] = {
        {"IfcVolumeMeasure", 0, kTypeReal},
        {"IfcNumericMeasure", 9, kTypeReal},
        {"IfcLengthMeasure", 12, kTypeReal},
        {"IfcDescriptiveMeasure", 14, kTypeString},
        {"IfcCountMeasure", 15, kTypeReal},
        {"IfcComplexNumber", 21, kTypeAggregate},
        {"IfcInteger", 22, kTypeInteger},
        {"IfcReal", 23, kTypeReal},
        {"IfcBoolean", 24, kTypeBoolean},
        {"IfcIdentifier", 25, kTypeString},
        {"IfcText", 26, kTypeString},
        {"IfcLabel", 27, kTypeString},
        {"IfcLogical", 28, kTypeLogical},
        {"IfcVolumetricFlowRateMeasure", 29, kTypeReal},
        {"IfcTimeStamp", 30, kTypeInteger},
        {"IfcIntegerCountRateMeasure", 40, kTypeInteger},
        {"IfcCompoundPlaneAngleMeasure", 46, kTypeAggregate},
        {"IfcIonConcentrationMeasure", 96, kTypeReal},
    };
    IfcValue value;
    for (const auto& c : cases) {
        ASSERT_TRUE(value.underlyingTypeName(c.name)) << c.name;
        EXPECT_EQ(value.tag(), c.tag) << c.name;
        EXPECT_EQ(value.valueKind(), c.kind) << c.name;
        EXPECT_STREQ(value.underlyingTypeName(), c.name);
    }
    // Choosing an aggregate makes an empty one of the right elements.
    ASSERT_TRUE(value.underlyingTypeName("IfcComplexNumber"));
    ASSERT_TRUE(value.getAggregate());
    EXPECT_EQ(value.getAggregate()->count(), 0u);
    EXPECT_TRUE(dynamic_cast<KpIfcAggrElements<double>*>(value.getAggregate()->implementation()));
    ASSERT_TRUE(value.underlyingTypeName("IFCCOMPOUNDPLANEANGLEMEASURE"));
    EXPECT_TRUE(dynamic_cast<KpIfcAggrElements<int>*>(value.getAggregate()->implementation()));
}

TEST(Select, SettersChooseTheirAlternative) {
    IfcValue value;
    EXPECT_FALSE(value.isIfcLabel());
    value.setIfcLabel("text");
    EXPECT_EQ(value.tag(), 27);
    EXPECT_EQ(value.valueKind(), 12);
    EXPECT_TRUE(value.isIfcLabel());
    EXPECT_FALSE(value.isIfcText());
    EXPECT_STREQ(value.underlyingTypeName(), "IfcLabel");
    value.setIfcText(*value.getString()); // its own text
    EXPECT_EQ(selectText(value), "IfcText(\"text\")");
    value.setIfcLengthMeasure(2.5);
    EXPECT_EQ(value.getString(), nullptr);
    int integer = 7;
    EXPECT_FALSE(value.getInt(integer));
    EXPECT_EQ(integer, 7);
    value.setIfcTimeStamp(5);
    EXPECT_TRUE(value.getInt(integer));
    EXPECT_EQ(integer, 5);
    value.setIfcComplexNumber({1, 2});
    EXPECT_EQ(value.getAggregate()->count(), 2u);
    IfcValue copy(value);
    value.setIfcComplexNumber({3});
    EXPECT_EQ(copy.getAggregate()->count(), 2u);
    value.setIfcCompoundPlaneAngleMeasure({-1, 2, 3});
    EXPECT_EQ(selectText(value), "IfcCompoundPlaneAngleMeasure(-1 2 3 )");
    value.nullify();
    EXPECT_EQ(value.tag(), 97);
    EXPECT_STREQ(value.underlyingTypeName(), "");

    IfcPresentationStyleSelect style;
    style.setIfcNullStyle(kIfcNullStyle_NULL);
    EXPECT_TRUE(style.isIfcNullStyle());
    EXPECT_EQ(style.valueKind(), 15);
    EXPECT_STREQ(style.getLiteral(), "NULL");
}

TEST(Select, ResolvesHandlesToTheFirstAlternativeThatFits) {
    KpIfcFile file = emptyFile();
    KpIfcModel& model = *file.model();
    const auto handleOf = [&](const char* entity) { return model.create(entity)->objectId(); };

    IfcActorSelect actor;
    EXPECT_EQ(actor.underlyingTypeByName("ifcperson"), 1);
    EXPECT_TRUE(actor.setHandle(handleOf("IfcPersonAndOrganization")));
    EXPECT_EQ(actor.tag(), 2);
    const KpDbObjectId wall = handleOf("IfcWall");
    EXPECT_FALSE(actor.setHandle(wall));
    EXPECT_FALSE(actor.setHandle(KpDbObjectId()));
    EXPECT_EQ(actor.tag(), 2);
    KpDbObjectId held;
    EXPECT_TRUE(actor.getHandle(held));
    EXPECT_FALSE(held == wall);

    // Subtypes resolve to the alternative that they specialise.
    IfcUnit unit;
    EXPECT_TRUE(unit.setHandle(handleOf("IfcSIUnit")));
    EXPECT_STREQ(unit.underlyingTypeName(), "IfcNamedUnit");
    IfcSurfaceOrFaceSurface surface;
    EXPECT_TRUE(surface.setHandle(handleOf("IfcPlane")));
    EXPECT_STREQ(surface.underlyingTypeName(), "IfcSurface");
    // Mixed selects take handles and values.
    IfcTrimmingSelect trim;
    EXPECT_TRUE(trim.setHandle(handleOf("IfcCartesianPoint")));
    EXPECT_EQ(trim.valueKind(), 13);
    trim.setIfcParameterValue(0.5);
    EXPECT_EQ(trim.valueKind(), 6);
    EXPECT_FALSE(trim.setHandle(wall));
    EXPECT_EQ(trim.valueKind(), 6);
    IfcValue value;
    EXPECT_FALSE(value.setHandle(wall)); // no entity among its alternatives
}

TEST(Select, HoldsHandlesUnresolvedWhileLoading) {
    KpIfcFile file = emptyFile();
    const KpDbObjectId person = file.model()->create("IfcPerson")->objectId();
    const KpDbObjectId wall = file.model()->create("IfcWall")->objectId();
    Opened<IfcActorSelect> actor;
    actor.setHandleOnLoad(person);
    EXPECT_EQ(actor.tag(), 4);
    EXPECT_STREQ(actor.underlyingTypeName(), "IfcPerson"); // resolves
    EXPECT_EQ(actor.tag(), 1);
    actor.setHandleOnLoad(wall);
    EXPECT_STREQ(actor.underlyingTypeName(), "");
    EXPECT_FALSE(actor.refreshSelectHandle());
    EXPECT_EQ(actor.tag(), 4);
    actor.unset();
    EXPECT_EQ(actor.tag(), 3);
    EXPECT_TRUE(actor.refreshSelectHandle()); // nothing to do
}

TEST(Select, OrderIsTotal) {
    KpIfcFile file = emptyFile();
    std::vector<IfcValue> values(10);
    values[1].setIfcLabel("a");
    values[2].setIfcText("a");
    values[3].setIfcReal(std::numeric_limits<double>::quiet_NaN());
    values[4].setIfcReal(-1);
    values[5].setIfcLengthMeasure(-1);
    values[6].setIfcInteger(-1);
    values[7].setIfcComplexNumber({1, 2});
    values[8].setIfcComplexNumber({1});
    values[9].setIfcCompoundPlaneAngleMeasure({1, 2});
    for (const IfcValue& a : values) {
        for (const IfcValue& b : values) {
            const int relations = (a < b) + (b < a) + (a == b);
            EXPECT_EQ(relations, 1) << selectText(a) << ' ' << selectText(b);
            EXPECT_EQ(a == b, &a == &b) << selectText(a) << ' ' << selectText(b);
            for (const IfcValue& c : values) {
                EXPECT_FALSE(a < b && b < c && !(a < c)) << selectText(a) << selectText(b) << selectText(c);
            }
        }
    }
}

TEST(Select, TypedValuesOfFiles) {
    static constexpr const char* kRecords =
        "#1=IFCPROPERTYLISTVALUE('l',$,(IFCCOMPLEXNUMBER((1.,0.)),IFCCOMPOUNDPLANEANGLEMEASURE((1,-2,3)),"
        "IFCLOGICAL(.U.),IFCBOOLEAN(.F.),IFCTIMESTAMP(7),IFCCOUNTMEASURE(25.),IFCLABEL('')),$);\n"
        "#2=IFCPRESENTATIONSTYLEASSIGNMENT((IFCNULLSTYLE(.NULL.)));\n"
        "#3=IFCPRESENTATIONSTYLEASSIGNMENT((#4));\n"
        "#4=IFCCURVESTYLE($,$,IFCPOSITIVELENGTHMEASURE(0.1),$);\n";
    KpIfcFile file = openedRecords(kRecords);
    EXPECT_EQ(findings(file.report()), "");
    const auto& list = std::as_const(*as<IfcPropertyListValue>(file.model()->find(1))).getListValues();
    ASSERT_EQ(list.size(), 7u);
    EXPECT_EQ(list[0].tag(), 21);
    EXPECT_EQ(list[1].tag(), 46);
    EXPECT_EQ(selectText(list[1]), "IfcCompoundPlaneAngleMeasure(1 -2 3 )");
    EXPECT_EQ(selectText(list[6]), "IfcLabel(\"\")");
    const auto& styles = std::as_const(*as<IfcPresentationStyleAssignment>(file.model()->find(3))).getStyles();
    EXPECT_EQ(styles.begin()->tag(), IfcPresentationStyleSelect::eIfcCurveStyle); // resolved from a later record
    EXPECT_EQ(savedRecords(file), kRecords);
}

TEST(Select, HoldsNothingOnceMovedFrom) {
    IfcValue from;
    from.setIfcLabel("Oak");
    IfcValue to(std::move(from));
    EXPECT_TRUE(to.isIfcLabel());
    EXPECT_FALSE(from.isIfcLabel()); // NOLINT(bugprone-use-after-move): what is left is what this is about
    EXPECT_STREQ("", from.underlyingTypeName());
    from = std::move(to);
    EXPECT_STREQ("IfcLabel", from.underlyingTypeName());
    EXPECT_EQ(IfcValue::eUnset, to.tag()); // NOLINT(bugprone-use-after-move)
}

} // namespace
