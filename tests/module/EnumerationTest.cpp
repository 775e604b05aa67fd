#include "Environment.h"

#include <IFC2X3/IFC2X3.h>

#include <gtest/gtest.h>

#include <set>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

TEST(Enumeration, OfRoles) {
    static_assert(sizeof(IfcRoleEnum) == 4 && std::is_same_v<std::underlying_type_t<IfcRoleEnum>, std::int32_t>);
    EXPECT_STREQ(literalText(kIfcRoleEnum_SUPPLIER), "SUPPLIER");
    EXPECT_STREQ(literalText(kIfcRoleEnum_COMISSIONINGENGINEER), "COMISSIONINGENGINEER");
    EXPECT_STREQ(literalText(static_cast<IfcRoleEnum>(22)), "USERDEFINED");
    for (const int code : {-1, 23, 24, 99, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_EQ(literalText(static_cast<IfcRoleEnum>(code)), nullptr) << code;
    }
    for (const char* text : {"supplier", "Supplier", "SUPPLIER"}) {
        EXPECT_EQ(literalCode<IfcRoleEnum>(text), 0) << text;
    }
    for (const char* text : {"SUPPLIERS", "SUPPLIE", "", " SUPPLIER", ".SUPPLIER.", "UNSET"}) {
        EXPECT_EQ(literalCode<IfcRoleEnum>(text), kIfcRoleEnum_UNSET) << text;
    }
    EXPECT_EQ(kIfcRoleEnum_UNSET, 23);
}

TEST(Enumeration, CodesOfUnset) {
    EXPECT_EQ(kIfcRoofTypeEnum_UNSET, 14);
    EXPECT_STREQ(literalText(kIfcRoofTypeEnum_FLAT_ROOF), "FLAT_ROOF");
    EXPECT_EQ(kIfcRoofTypeEnum_FLAT_ROOF, 0);
    EXPECT_EQ(kIfcTrimmingPreference_UNSET, 3);
    EXPECT_EQ(kIfcWorkControlTypeEnum_UNSET, 5);
    EXPECT_EQ(kIfcBSplineCurveForm_UNSET, 6);
    EXPECT_EQ(kIfcAssemblyPlaceEnum_UNSET, 3);
    EXPECT_EQ(kIfcGeometricProjectionEnum_UNSET, 9);
    EXPECT_EQ(kIfcUnitEnum_UNSET, 30);
    EXPECT_EQ(kIfcSIUnitName_UNSET, 30);
    EXPECT_EQ(kIfcSIPrefix_UNSET, 16);
    EXPECT_EQ(kIfcNullStyle_UNSET, 1);
}

/// Over every enumeration that an attribute has: each code has its own text, and each text its code in any letter case.
TEST(Enumeration, TextsAndCodesAreEachOthersInverse) {
    const KpIfcFile file = emptyFile();
    std::set<const KpIfcEnumFacts*> enumerations;
    for (const KpIfcEntityType* type : entityTypes(file.model()->schema())) {
        for (const KpIfcAttributeFacts* attribute : type->recordFields()) {
            if (attribute->enumeration) {
                enumerations.insert(attribute->enumeration);
            }
        }
    }
    EXPECT_GT(enumerations.size(), 100u);
    for (const KpIfcEnumFacts* facts : enumerations) {
        for (int code = 0; code < facts->count; ++code) {
            std::string text = facts->text(code);
            EXPECT_EQ(facts->code(text.data(), text.size()), code) << facts->name;
            for (char& c : text) {
                c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            }
            EXPECT_EQ(facts->code(text.data(), text.size()), code) << facts->name;
        }
        EXPECT_EQ(facts->text(-1), nullptr) << facts->name;
        EXPECT_EQ(facts->text(facts->count), nullptr) << facts->name;
        EXPECT_STREQ(facts->literals[facts->count], "") << facts->name;
    }
}

/// A code that is no literal's is written as unset; the file stays readable.
TEST(Enumeration, CodesWithoutLiteralAreWrittenAsUnset) {
    KpIfcFile file = emptyFile();
    for (const int code : {-1, 5, 6}) {
        file.model()->create<IfcWorkPlan>()->setWorkControlType(static_cast<IfcWorkControlTypeEnum>(code));
    }
    KpIfcFile read = opened(saved(file));
    EXPECT_EQ(findings(read.report()), "");
    for (const IfcWorkPlan* plan : read.model()->instances<IfcWorkPlan>()) {
        EXPECT_EQ(plan->getWorkControlType(), kIfcWorkControlTypeEnum_UNSET);
    }
}

} // namespace
