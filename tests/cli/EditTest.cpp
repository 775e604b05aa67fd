#include "SmallModel.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> dataLines(const WorkFolder& folder, const char* file) {
    std::vector<std::string> lines;
    for (const std::string& line : linesOf(contentOf(folder.path(file)))) {
        if (line.starts_with('#')) {
            lines.push_back(line);
        }
    }
    return lines;
}

std::vector<std::string> converted(const WorkFolder& folder) {
    folder.run("kpifc convert model.ifc -o converted.ifc");
    return dataLines(folder, "converted.ifc");
}

struct EraseCase {
    const char* name;
    const char* arguments;
    std::vector<std::string> gone;                             ///< beginnings of records
    std::vector<std::pair<std::string, std::string>> replaced; ///< in what stays
    const char* told;                                          ///< on standard error
};

class EraseCommand : public testing::TestWithParam<EraseCase> {};

TEST_P(EraseCommand, WritesTheRest) {
    const WorkFolder folder;
    folder.write("model.ifc", smallModel());
    const EraseCase& test = GetParam();
    const Outcome outcome = folder.run("kpifc erase model.ifc " + std::string(test.arguments) + " -o new.ifc");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(test.told), std::string::npos) << outcome.err;
    std::vector<std::string> expected;
    for (std::string line : converted(folder)) {
        bool isGone = false;
        for (const std::string& gone : test.gone) {
            isGone = isGone || line.starts_with(gone + '=');
        }
        for (const auto& [from, to] : test.replaced) {
            if (line == from) {
                line = to;
            }
        }
        if (!isGone) {
            expected.push_back(line);
        }
    }
    EXPECT_EQ(dataLines(folder, "new.ifc"), expected);
}

const EraseCase kErased[] = {
    {"ByName", "'#17'", {"#17"}, {}, "model.ifc -> new.ifc: 18 instances, 1 instance erased\n"},
    {"ByGlobalId", "'23emzg5$r6fA3IIhCrx3ZR' '#17'", {"#10", "#17"}, {}, "17 instances, 2 instances erased\n"},
    {"DroppingReferences",
     "'#3' '#5' --policy drop",
     {"#3", "#5"},
     {{"#1=IFCPERSON('007','Doe',$,('A','B'),$,$,(#3),$);", "#1=IFCPERSON('007','Doe',$,('A','B'),$,$,$,$);"},
      {"#6=IFCPROPERTYSINGLEVALUE('P',$,IFCLABEL('x'),#5);", "#6=IFCPROPERTYSINGLEVALUE('P',$,IFCLABEL('x'),$);"}},
     "2 instances erased, references dropped from 2\n"},
    {"WithoutAValueThatMustBe",
     "'#16' --policy drop",
     {"#16"},
     {{"#15=IFCPOLYLINE((#4,#16));", "#15=IFCPOLYLINE((#4));"}},
     "kpifc: #15 IfcPolyline.Points: lost what it referred to and now lacks a value\n"},
    {"WithWhatOnlyItUsed",
     "'#10' '#17' --policy cascade",
     {"#1", "#2", "#3", "#10", "#11", "#12", "#13", "#17"},
     {},
     "8 instances erased\n"},
};

INSTANTIATE_TEST_SUITE_P(Cli, EraseCommand, testing::ValuesIn(kErased),
                         [](const auto& each) { return std::string(each.param.name); });

struct Refusal {
    const char* command;
    const char* told;
};

TEST(EditCommands, WriteNothingWhereTheyRefuse) {
    const Refusal refusals[] = {
        {"kpifc erase model.ifc '#17' '#4'",
         "nothing erased, for others refer to it (--policy drop or cascade erases all the same)\n"
         "  #4 IfcCartesianPoint is referred to by #9 IfcPresentationLayerWithStyle \"a\", #15 IfcPolyline\n"},
        {"kpifc erase model.ifc '#99'", "there is no instance #99"},
        {"kpifc erase model.ifc '#17' --policy all", "--policy"},
        {"kpifc new model.ifc IfcWal", "did you mean IfcWall"},
        {"kpifc new model.ifc IfcRoot", "IfcRoot is abstract"},
        {"kpifc new model.ifc IfcWall Colour=1", "no attribute \"Colour\""},
        {"kpifc new model.ifc IfcWall Name", "is no assignment"},
        {"kpifc new model.ifc IfcWall Name=1", "#20.Name of IfcWall"},
    };
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.command);
        const WorkFolder folder;
        folder.write("model.ifc", smallModel());
        const Outcome outcome = folder.run(std::string(refusal.command) + " -o new.ifc");
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err.find(refusal.told), std::string::npos) << outcome.err;
        EXPECT_FALSE(std::filesystem::exists(folder.path("new.ifc")));
    }
}

TEST(EditCommands, NewAddsOneInstance) {
    const WorkFolder folder;
    folder.write("model.ifc", smallModel());
    const Outcome outcome =
        folder.run("kpifc new model.ifc ifcwall \"Name='Nord \\\\X\\\\E9'\" OwnerHistory=#11 -o new.ifc");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "#20\n");
    EXPECT_EQ(outcome.err, "model.ifc -> new.ifc: 20 instances, 1 created\n");
    std::vector<std::string> lines = dataLines(folder, "new.ifc");
    const std::string created = lines.back();
    lines.pop_back();
    EXPECT_EQ(lines, converted(folder));
    EXPECT_TRUE(created.starts_with("#20=IFCWALL('")) << created;
    EXPECT_TRUE(created.ends_with("',#11,'Nord \\X2\\00E9\\X0\\',$,$,$,$,$);")) << created;
    EXPECT_EQ(created.size(), std::string("#20=IFCWALL('").size() + 22 +
                                  std::string("',#11,'Nord \\X2\\00E9\\X0\\',$,$,$,$,$);").size());

    const Outcome lacking = folder.run("kpifc new model.ifc IfcPolyline -o line.ifc");
    EXPECT_EQ(lacking.out, "#20\n");
    EXPECT_NE(lacking.err.find("#20 IfcPolyline has no value yet that it must have: Points\n"), std::string::npos)
        << lacking.err;
}

} // namespace
