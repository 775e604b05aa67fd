#include "plan/Names.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>

namespace {

using namespace kpifcgen::plan;

/// What the hand-written headers of the module declare in its namespace, whose members stand in column 1.
std::set<std::string> declaredByHand() {
    static const std::regex declaration(
        R"(^(?:(?:struct|class) (?:\w+_EXPORT )?(\w+)(?: :| \{|;)|using KP_SDAI::(\w+);|[\w:&*<>]+ (?:[^(=]*[ &*])?(\w+)(?:\(|;| = )))");
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(KP_SOURCE_DIR "/ifc2x3")) {
        if (entry.path().extension() != ".h") {
            continue;
        }
        std::ifstream header(entry.path());
        bool isInside = false;
        for (std::string line; std::getline(header, line);) {
            const bool begins = line == "namespace IFC2X3 {" || line == "} // namespace detail";
            isInside = begins || (isInside && !line.starts_with("} //") && line != "namespace detail {");
            std::smatch found;
            if (isInside && std::regex_search(line, found, declaration)) {
                names.insert(found[1].str() + found[2].str() + found[3].str());
            }
        }
    }
    return names;
}

TEST(Names, OfTypesAvoidKeywordsMacrosAndTheModulesOwn) {
    EXPECT_EQ(className("IfcWall"), "IfcWall");
    EXPECT_EQ(className("class"), "class_");
    EXPECT_EQ(className("errno"), "errno_");
    EXPECT_EQ(className("KpAnsiString"), "KpAnsiString_");
    EXPECT_EQ(className("InverseMembers"), "InverseMembers_");
}

TEST(Names, OfTypesAvoidAllThatTheModuleDeclaresByHand) {
    const std::set<std::string> names = declaredByHand();
    for (const char* known : {"Select", "EnumFacts", "isNamed", "kOptional", "noInverses", "describeSelect"}) {
        EXPECT_EQ(names.count(known), 1U) << known;
    }
    for (const std::string& name : names) {
        EXPECT_EQ(className(name), name + '_');
    }
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
