#include "PageReader.h"
#include "SmallModel.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

namespace fs = std::filesystem;
using testing::HasSubstr;
using Json = nlohmann::json;

namespace {

const std::string kHouse = quoted(fs::path(KP_SOURCE_DIR) / "examples" / "small_house.ifc");

/// What a page says of a property: "F 90", "8000 mm".
std::string propertyOf(const PageReader& page, std::size_t place, const std::string& set, const std::string& name) {
    const Json& pool = page.properties();
    std::string found;
    for (const Json& held : page.index()["sets"][place]) {
        const auto index = held.get<std::int64_t>();
        const Json& members = pool["sets"][static_cast<std::size_t>(index < 0 ? -1 - index : index)];
        for (std::size_t i = 1; i < members.size(); ++i) {
            const Json& property = pool["props"][members[i].get<std::size_t>()];
            const auto key = [&](std::size_t at) {
                return pool["keys"][at < property.size() ? property[at].get<std::size_t>() : 0].get<std::string>();
            };
            if (pool["keys"][members[0].get<std::size_t>()] == set && key(0) == name) {
                found += property[1].get<std::string>() + (key(2).empty() ? "" : ' ' + key(2)) +
                         (index < 0 ? " from type" : "");
            }
        }
    }
    return found;
}

TEST(Report, TellsWhatTheModelHolds) {
    const WorkFolder folder;
    const Outcome outcome = folder.run("kpifc report " + kHouse + " -o page.html");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("small_house.ifc -> page.html: 177 instances, 0.1 MB, no findings\n"));
    const PageReader page(contentOf(folder.path("page.html")));
    EXPECT_EQ(page.faults(), "");
    for (const char* text : {"<title>A small house with one room</title>", "<bdi>A small house with one room</bdi>",
                             "Zo\u00EB Doe", "<dt>Storeys</dt><dd>2</dd>", "All 177 instances of 57 entities"}) {
        EXPECT_TRUE(page.has(text)) << text;
    }
    const std::size_t wall = page.placeOf(74);
    EXPECT_EQ(page.index()["names"][wall], "South wall");
    EXPECT_EQ(page.index()["globalIds"][wall], "0xGO74I1L2sOBnKbLTH2I2");
    EXPECT_EQ(propertyOf(page, wall, "BaseQuantities", "Length"), "8000 mm");
    EXPECT_EQ(propertyOf(page, wall, "Pset_WallCommon", "FireRating"), "F 90 from type");
    const std::size_t window = page.placeOf(145);
    const Json& entity = page.index()["entities"][page.index()["types"][window].get<std::size_t>()];
    EXPECT_EQ(entity[2][8], "OverallHeight");
    EXPECT_EQ(entity[3]["8"], "mm");
    EXPECT_EQ(page.detail(window)[0][8], 1200.0);
}

TEST(Report, LeadsFromFindingsToInstancesAndTheirObjects) {
    const WorkFolder folder;
    folder.write("a.ifc", stepFile("#1=IFCWALL('0xGO74I1L2sOBnKbLTH2I2',$,'Wall',$,$,$,#2,$);\n"
                                   "#2=IFCPRODUCTDEFINITIONSHAPE($,$,(#3));\n"
                                   "#3=IFCSHAPEREPRESENTATION($,'Body','Brep',(#4));\n"
                                   "#4=IFCPOLYLINE((#5));\n"
                                   "#5=IFCCARTESIANPOINT((0.,0.));\n"
                                   "#6=IFCFOO('kept');"));
    const Outcome outcome = folder.run("kpifc report a.ifc -o page.html");
    EXPECT_EQ(outcome.exitCode, 1);
    const PageReader page(contentOf(folder.path("page.html")));
    EXPECT_EQ(page.faults(), "");
    for (const char* text : {"<li><a href=\"#i1\"><bdi>#1 IfcWall &quot;Wall&quot;</bdi></a> <b>OwnerHistory</b>",
                             "<a href=\"#i4\"><bdi>#4 IfcPolyline</bdi></a> <span class=\"owner\">of <a href=\"#i1\">",
                             "<a href=\"#i6\"><bdi>#6 (kept as text)</bdi></a>"}) {
        EXPECT_TRUE(page.has(text)) << text;
    }
    EXPECT_EQ(page.detail(page.placeOf(6)), "#6=IFCFOO('kept');");
    EXPECT_EQ(folder.run("kpifc report --strict a.ifc -o page.html").exitCode, 2);
}

TEST(Report, WritesNoMarkupThatAModelBrings) {
    const WorkFolder folder;
    std::string model =
        stepFile("#1=IFCPROJECT('0xGO74I1L2sOBnKbLTH2I2',$,'</script><!--<b>&''\"{{data}}',$,$,$,$,(),$);\n"
                 "#2=IFCFOO('</script><i>');\n"
                 "#3=IFCACTORROLE(.USERDEFINED.,'\\X2\\2028202E\\X0\\\x80',$);");
    model.replace(model.find("nobody"), 6, "<img src=x>");
    folder.write("<b>&.ifc", model);
    EXPECT_EQ(folder.run("kpifc report '<b>&.ifc' -o page.html").exitCode, 1);
    const PageReader page(contentOf(folder.path("page.html")));
    EXPECT_EQ(page.index()["names"][page.placeOf(1)], "</script><!--<b>&'\"{{data}}");
    EXPECT_TRUE(page.has("&#39;&quot;{{data}}</title>"));
    std::size_t scripts = 0;
    for (std::size_t at = 0; (at = page.text().find("</script", at)) != std::string::npos; ++at) {
        ++scripts;
    }
    EXPECT_EQ(scripts, 4u); // one part of data, properties, index, the script
    for (const char* markup : {"<img", "<b>&", "<i>", "<!--"}) {
        EXPECT_FALSE(page.has(markup)) << markup;
    }
}

struct Refusal {
    const char* command;
    const char* reason;
};

TEST(Report, LeavesTargetsAloneWhereItCannotBeDone) {
    const WorkFolder folder;
    folder.write("a.ifc", smallModel());
    folder.write("page.html", "older");
    const Refusal refusals[] = {
        {"kpifc report a.ifc", "output"},
        {"kpifc report a.ifc -o a.ifc", "is the input"},
        {"kpifc report a.ifc -o .", "is a folder"},
        {"kpifc report a.ifc -o missing/page.html", "there is no folder missing"},
        {"kpifc report missing.ifc -o page.html", "missing.ifc"},
        {"kpifc report page.html -o page.html", "is the input"},
        {"kpifc report a.ifc -o /dev/full", "/dev/full"},
    };
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.command);
        expectRefusal(folder.run(refusal.command), refusal.reason);
    }
    EXPECT_EQ(contentOf(folder.path("page.html")), "older");
    EXPECT_EQ(contentOf(folder.path("a.ifc")), smallModel());
    const Outcome streamed = folder.run("kpifc report - -o - < a.ifc");
    EXPECT_EQ(streamed.exitCode, 0);
    EXPECT_EQ(folder.run("kpifc report a.ifc -o page.html").exitCode, 0);
    EXPECT_EQ(PageReader(contentOf(folder.path("page.html"))).index(), PageReader(streamed.out).index());
}

} // namespace
