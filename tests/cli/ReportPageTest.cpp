#include "PageInBrowser.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

class ReportPageTest : public testing::Test {
protected:
    ReportPageTest() {
        const fs::path house = fs::path(KP_SOURCE_DIR) / "examples" / "small_house.ifc";
        EXPECT_EQ(m_folder.run("kpifc report " + ::quoted(house) + " -o page.html").exitCode, 0);
    }
    WorkFolder m_folder;
};

TEST_F(ReportPageTest, OpensFindsShowsAndLeadsOn) {
    checkInBrowser(m_folder, "house", "page.html");
}

TEST_F(ReportPageTest, LooksAsItShould) {
    checkInBrowser(m_folder, "looks", "page.html");
}

TEST_F(ReportPageTest, IsReadableWithoutScript) {
    checkInBrowser(
        m_folder, "no_script", "page.html",
        "'A small house' 'Elements' 'IfcWallStandardCase' 'There are none' 'by hand' 'where scripts may run'");
}

TEST_F(ReportPageTest, ShowsTextsThatLookLikeMarkupAsTexts) {
    const nlohmann::json names{
        {"1", "</script><script>hacked=1</script>"},
        {"2", "<img src=x onerror=hacked=1>&amp;&#39;\"'"},
        {"3", "{{data}} ${hacked=1} `javascript:hacked=1`"},
        {"4", "\u202Eright to left\u202C \u0645\u0631\u062D\u0628\u0627 \U0001F3E0"},
        {"5", std::string(300, 'W')},
    };
    std::string records = "#6=IFCACTORROLE(.KING.,'<i>king</i>',$);\n"
                          "#7=IFCRELAGGREGATES('1xGO74I1L2sOBnKbLTH2I2',$,'<b>x</b>',$,#1,(#2,#3,#4,#5));\n"
                          "#8=IFCPROPERTYSET('2xGO74I1L2sOBnKbLTH2I2',$,'<b>set</b>',$,(#9));\n"
                          "#9=IFCPROPERTYSINGLEVALUE('</td><b>',$,IFCLABEL('<script>hacked=1</script>'),$);\n"
                          "#10=IFCRELDEFINESBYPROPERTIES('3xGO74I1L2sOBnKbLTH2I2',$,$,$,(#2,#3),#8);\n";
    for (const auto& [instance, name] : names.items()) {
        std::string text;
        for (const char c : name.get<std::string>()) { // as the file has them: UTF-8
            text += c == '\'' ? "''" : std::string(1, c);
        }
        records += '#' + instance + "=IFCBUILDING('0xGO74I1L2sOBnKbLTH2I" + instance + "',$,'" + text +
                   "',$,$,$,$,$,$,$,$,$);\n";
    }
    m_folder.write("hostile.ifc", stepFile(records));
    EXPECT_EQ(m_folder.run("kpifc report hostile.ifc -o hostile.html").exitCode, 1);
    checkInBrowser(m_folder, "hostile", "hostile.html", ::quoted(names.dump()));
}

} // namespace
