#include "plan/Names.h"

#include <gtest/gtest.h>

namespace {

using namespace kpifcgen::plan;

TEST(Names, OfTypesAvoidKeywordsMacrosAndTheModulesOwn) {
    EXPECT_EQ(className("IfcWall"), "IfcWall");
    EXPECT_EQ(className("class"), "class_");
    EXPECT_EQ(className("errno"), "errno_");
    EXPECT_EQ(className("KpAnsiString"), "KpAnsiString_");
    EXPECT_EQ(className("InverseMembers"), "InverseMembers_");
}

TEST(Names, OfMembersAvoidThoseOfTheBaseClasses) {
    EXPECT_EQ(getter("Attr"), "getAttr_");
    EXPECT_EQ(setter("InverseCounterParts"), "setInverseCounterParts_");
    EXPECT_EQ(selectTag("Unset"), "eUnset_");
    EXPECT_EQ(selectSetter("Handle"), "setHandle_");
    EXPECT_EQ(instanceGetter("facts", {}), "facts_");
    EXPECT_EQ(instanceGetter("IfcWall", {"IfcWall"}), "IfcWall_");
    EXPECT_EQ(instanceGetter("class", {"class_"}), "class__");
    EXPECT_EQ(enumConstant("E", "UNSET"), "kE_UNSET_");
}

TEST(Names, OfHeadersIgnoreCase) {
    const SchemaNames names("Mini");
    EXPECT_EQ(names.headerPath("MiniPath"), "include/MINI/MiniPath.h");
    EXPECT_TRUE(names.isHeaderTaken("ENTITY"));
    EXPECT_TRUE(names.isHeaderTaken("mini"));
    EXPECT_FALSE(names.isHeaderTaken("MiniPath"));
}

} // namespace
