#include "Runner.h"

#include <kpifc/QueryEvaluation.h>
#include <kpifc/QueryParser.h>

#include <gtest/gtest.h>

#include <string>

using namespace kpifc;
using namespace KP_SDAI;

namespace {

/// Two storeys (#10, #11) with two walls (#1, #2) and a slab (#3) of a type (#6), properties of both kinds.
std::string model() {
    return stepFile("#1=IFCWALL('0000000000000000000001',#30,'T\\X2\\00FC\\X0\\r Nord',$,$,$,$,'W1');"
                    "#2=IFCWALLSTANDARDCASE('0000000000000000000002',#30,'say \"no\"','x',$,#31,$,$);"
                    "#3=IFCSLAB('0000000000000000000003',#40,'Slab',$,$,$,$,$,.FLOOR.);"
                    "#4=IFCPROPERTYSET('0000000000000000000004',$,'Pset_WallCommon',$,(#12,#13,#14));"
                    "#5=IFCRELDEFINESBYPROPERTIES('0000000000000000000005',$,$,$,(#1),#4);"
                    "#6=IFCWALLTYPE('0000000000000000000006',$,'Type',$,$,(#8),$,$,$,.STANDARD.);"
                    "#7=IFCRELDEFINESBYTYPE('0000000000000000000007',$,$,$,(#1,#2),#6);"
                    "#8=IFCPROPERTYSET('0000000000000000000008',$,'My set',$,(#17));"
                    "#10=IFCBUILDINGSTOREY('0000000000000000000010',$,'EG',$,$,$,$,$,.ELEMENT.,0.);"
                    "#11=IFCBUILDINGSTOREY('0000000000000000000011',$,'OG',$,$,$,$,$,.PARTIAL.,2.5);"
                    "#12=IFCPROPERTYSINGLEVALUE('IsExternal',$,IFCBOOLEAN(.T.),$);"
                    "#13=IFCPROPERTYSINGLEVALUE('Length',$,IFCLENGTHMEASURE(2.5),$);"
                    "#14=IFCPROPERTYSINGLEVALUE('Combustible',$,IFCLOGICAL(.U.),$);"
                    "#15=IFCRELCONTAINEDINSPATIALSTRUCTURE('0000000000000000000015',$,$,$,(#1,#3),#10);"
                    "#16=IFCRELCONTAINEDINSPATIALSTRUCTURE('0000000000000000000016',$,$,$,(#2),#11);"
                    "#17=IFCPROPERTYLISTVALUE('Fire rating',$,(IFCLABEL('F30'),IFCLABEL('F90')),$);"
                    "#18=IFCMATERIAL('oak');"
                    "#19=IFCRELASSOCIATESMATERIAL('0000000000000000000019',$,$,$,(#3),#18);"
                    "#30=IFCOWNERHISTORY(#33,#34,$,.ADDED.,$,$,$,1000);"
                    "#31=IFCLOCALPLACEMENT($,#32);"
                    "#32=IFCAXIS2PLACEMENT3D(#35,$,$);"
                    "#33=IFCPERSONANDORGANIZATION(#36,#37,$);"
                    "#34=IFCAPPLICATION(#37,'1','Tool','T');"
                    "#35=IFCCARTESIANPOINT((0.,1.5,-2.));"
                    "#36=IFCPERSON($,'Doe',$,('A','B'),$,$,$,$);"
                    "#37=IFCORGANIZATION($,'Works',$,$,$);"
                    "#40=IFCNOSUCHTHING();"
                    "#41=IFCMEASUREWITHUNIT(IFCREAL(7.),#42);"
                    "#42=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);");
}

struct Case {
    const char* expression;
    const char* found; ///< instance names with blanks between them
};

class QueryTest : public testing::Test {
protected:
    std::string found(const std::string& expression) {
        const query::ParsedQuery parsed = query::parseQuery(expression, m_file.model()->schema());
        std::string names;
        query::Evaluation(*m_file.model()).run(parsed.query, [&names](const KpIfcEntityBase& instance) {
            names += (names.empty() ? "" : " ") + std::to_string(instance.instanceName());
        });
        return names;
    }
    std::string message(const std::string& expression) {
        try {
            return "found " + found(expression);
        } catch (const Failure& failure) {
            return failure.what();
        }
    }

    KpIfcFile m_file = opened(model());
};

TEST_F(QueryTest, Finds) {
    static constexpr Case kCases[] = {
        // where it begins
        {"IfcWall", "1 2"},
        {"ifcwall", "1 2"},
        {"=IfcWall", "1"},
        {"IfcSlab, IfcWall, =IfcWall", "1 2 3"},
        {"#3", "3"},
        {"0000000000000000000002", "2"},
        {"*[is IfcBuildingElement]", "1 2 3"},
        {"*[is =IfcWall or is IfcSlab]", "1 3"},
        {"IfcDoor", ""},
        // texts
        {"IfcWall[Name = \"Tür Nord\"]", "1"},
        {"IfcWall[name='Tür Nord']", "1"},
        {"IfcWall[Name = \"say \"\"no\"\"\"]", "2"},
        {"IfcWall[Name != \"Tür Nord\"]", "2"},
        {"IfcWall[Name ~ \"ür\"]", "1"},
        {"IfcWall[Name ~ \"^ür\"]", ""},
        {"IfcWall[Name ~ \"(Nord|Süd)$\"]", "1"},
        {"IfcWall[Name ~ \"NORD\"i]", "1"},
        {"IfcWall[Name !~ \"NORD\"]", "1 2"},
        {"IfcWall[Tag = W1]", "1"},
        {"IfcWall[GlobalId ~ \"2$\"]", "2"},
        {"IfcBuildingStorey[Name > \"EG\"]", "11"},
        {"IfcBuildingStorey[Name in (\"EG\", \"OG\")]", "10 11"},
        {"IfcPerson[MiddleNames = \"B\"]", "36"},
        // no value
        {"IfcWall[Description = unset]", "1"},
        {"IfcWall[Description = $]", "1"},
        {"IfcWall[Description]", "2"},
        {"IfcWall[not Description]", "1"},
        {"IfcWall[Description != \"y\"]", "1 2"},
        {"IfcWall[Description in ($, \"y\")]", "1"},
        // numbers
        {"IfcBuildingStorey[Elevation = 0]", "10"},
        {"IfcBuildingStorey[Elevation >= 2.5]", "11"},
        {"IfcBuildingStorey[Elevation < 1e3 and Elevation > -1]", "10 11"},
        {"IfcCartesianPoint[Coordinates = -2]", "35"},
        {"IfcCartesianPoint[Coordinates > 2]", ""},
        {"IfcMeasureWithUnit[ValueComponent > 6]", "41"},
        {"IfcWall[Name > 0]", ""},
        // enumerations, logicals, references
        {"IfcBuildingStorey[CompositionType = ELEMENT]", "10"},
        {"IfcBuildingStorey[CompositionType != .element.]", "11"},
        {"IfcBuildingStorey[CompositionType in (ELEMENT, PARTIAL)]", "10 11"},
        {"IfcSlab[PredefinedType = \"FLOOR\"]", "3"},
        {"IfcRoot[OwnerHistory = #30]", "1 2"},
        {"IfcSlab[OwnerHistory = #40]", "3"},
        {"*[@id = #3]", "3"},
        {"IfcWall[@type ~ \"Standard\"]", "2"},
        // paths
        {"IfcWall[OwnerHistory.CreationDate = 1000]", "1 2"},
        {"IfcWall[OwnerHistory.OwningUser.ThePerson.FamilyName = \"Doe\"]", "1 2"},
        {"IfcWall[ObjectPlacement.RelativePlacement.Location.Coordinates > 1]", "2"},
        {"IfcProduct[PredefinedType = FLOOR]", "3"}, // which only a subtype has
        {"IfcWall[IsDefinedBy.RelatingType.Name = \"Type\"]", "1 2"},
        {"IfcWall[count(IsDefinedBy) = 2]", "1"},
        {"IfcWall[count(IsDefinedBy[is IfcRelDefinesByType]) = 1]", "1 2"},
        {"IfcBuildingStorey[count(ContainsElements.RelatedElements) > 1]", "10"},
        {"IfcPerson[count(MiddleNames) = 2]", "36"},
        {"IfcElement[count(HasOpenings)]", ""},
        // properties
        {"IfcWall[Pset_WallCommon.IsExternal = true]", "1"},
        {"IfcWall[pset_wallcommon.isexternal = .T.]", "1"},
        {"IfcWall[Pset_WallCommon.IsExternal != true]", "2"},
        {"IfcWall[Pset_WallCommon.Combustible = unknown]", "1"},
        {"IfcWall[*.Length >= 2.5]", "1"},
        {"IfcWall[\"My set\".\"Fire rating\" = \"F90\"]", "1 2"},
        {"IfcElement[not *.\"Fire rating\"]", "3"},
        {"IfcRelDefinesByType[RelatingType.\"My set\".\"Fire rating\" ~ \"F3\"]", "7"},
        // and, or, not
        {"IfcWall[Name ~ \"Nord\" or Name ~ \"no\" and Tag]", "1"},
        {"IfcWall[(Name ~ \"Nord\" or Name ~ \"no\") and not Tag]", "2"},
        {"IfcWall[NOT not Tag]", "1"},
        {"IfcWall[Tag][Description]", ""},
        // on to other instances
        {"IfcBuildingStorey[Name=\"EG\"]/ContainsElements/RelatedElements", "1 3"},
        {"IfcBuildingStorey/ContainsElements/RelatedElements[is IfcWall]", "1 2"},
        {"IfcWall/IsDefinedBy[is IfcRelDefinesByType]/RelatingType", "6"},
        {"IfcMaterial/^IfcRelAssociatesMaterial/RelatedObjects", "3"},
        {"#18/^*", "19"},
        {"IfcSlab/OwnerHistory", ""}, // a record that is kept as text
        {"IfcWall/OwnerHistory, IfcSlab", "3 30"},
    };
    for (const auto& [expression, names] : kCases) {
        EXPECT_EQ(found(expression), names) << expression;
    }
}

/// Where, what was found, what was expected.
TEST_F(QueryTest, TellsWhatIsWrong) {
    const std::string deep = "IfcWall[" + std::string(5000, '(') + "Name" + std::string(5000, ')') + "]";
    std::string counts = "IfcWall[";
    for (int i = 0; i < 50'000; ++i) {
        counts += "count(";
    }
    const std::string denied = "IfcWall[" + std::string(40'000, '!');
    static const std::pair<std::string, const char*> kCases[] = {
        {"", "at column 1: found the end, expected an entity"},
        {"IfcWal", "at column 1: IFC2X3 has no entity IfcWal; did you mean IfcWall?"},
        {"IfcWall[Nmae = 1]", "at column 9: IfcWall has no attribute Nmae; did you mean Name?"},
        {"IfcWall[Name = ]", "at column 16: found ], expected a value"},
        {"IfcWall[Name ~ 1]", "at column 16: found 1, expected a text in quotes"},
        {"IfcWall[Name ~ \"[\"]", "at column 16: found [, expected a regular expression"},
        {"IfcWall[\"T\xC3\xBCr\" Name]", "at column 9: "},
        {"IfcWall[Name = \"T\xC3\xBCr\" Tag]", "at column 22: found Tag, expected and, or, ]"},
        {"IfcWall[(Name", "at column 14: found the end, expected and, or, )"},
        {"IfcWall[Name = \"x]", "at column 16: this text has no end, expected \""},
        {"IfcWall[Name = 1x]", "at column 16: found no number"},
        {"IfcWall[@name]", "at column 10: found name, expected id or type"},
        {"IfcWall]", "at column 8: found ], expected [, /, a comma or the end"},
        {"IfcWall/Name", "at column 9: this holds no instances"},
        {"IfcWall[Name.Length]", "at column 14: what stands before this holds no instances"},
        {"IfcWall[Pset.P.Q]", "at column 16: what stands before this holds no instances"},
        {"IfcWall[Name[Tag]]", "at column 13: what stands before this holds no instances"},
        {"IfcMaterial[Pset.P = 1]", "at column 13: IfcMaterial has no attribute Pset"},
        {"IfcSIUnit[Dimensions]", "at column 11: Dimensions is derived"},
        {"IfcBuildingStorey[CompositionType = ELEMNT]", "ELEMNT is no literal of IfcElementCompositionEnum; did you"},
        {"IfcBuildingStorey[CompositionType < ELEMENT]", "only numbers and texts have an order"},
        {"IfcWall[Name = \"a\"i]", "letter case can be ignored behind ~ only"},
        {"IfcWall[is IfcDor]", "at column 12: IFC2X3 has no entity IfcDor; did you mean IfcDoor"},
        {"#99", "there is no instance #99"},
        {"#99999999999999999999999", "found no instance name"},
        {"IfcWall[Name ~ \"(a?){99999}\"]", "at column 16: this pattern is too large"},
        {"IfcWall[Name ~ \"" + std::string(100'000, '(') + "\"]", "this pattern is too large"},
        {"IfcWall[Name ~ \"(a)\\1\"]", "expected a regular expression"},
        {counts, "this is nested too deeply"},
        {deep, "this is nested too deeply"},
        {denied, "at column 9: found !"},
    };
    for (const auto& [expression, said] : kCases) {
        EXPECT_NE(message(expression).find(said), std::string::npos) << expression << '\n' << message(expression);
    }
    EXPECT_EQ(message("IfcWall[Nmae]").substr(message("IfcWall[Nmae]").find('\n')),
              "\n  IfcWall[Nmae]\n          ^"); // under the place
}

TEST_F(QueryTest, NeitherLongTextsNorLargePatternsEndTheStack) {
    const auto isFound = [this](std::size_t length, const std::string& pattern) {
        m_file = openedRecords("#1=IFCMATERIAL('" + std::string(length, 'x') + "');");
        return found("IfcMaterial[Name ~ \"" + pattern + "\"i]") == "1";
    };
    EXPECT_TRUE(isFound(300'000, "^(X|y)*X$"));
    std::string large = "^(";
    for (int i = 0; i < 330; ++i) {
        large += "x?";
    }
    EXPECT_TRUE(isFound(10, large + "){29}$"));
    EXPECT_TRUE(isFound(10, std::string(490, '(') + 'x' + std::string(490, ')')));
}

class QueryCommandTest : public testing::Test {
protected:
    QueryCommandTest() { m_folder.write("model.ifc", model()); }
    Outcome run(const std::string& arguments) const { return m_folder.run("kpifc query " + arguments); }

    WorkFolder m_folder;
};

TEST_F(QueryCommandTest, PrintsColumns) {
    const std::string columns = " --columns '@id,@type,Description,count(IsDefinedBy),*.\"Fire rating\",OwnerHistory'";
    const std::string walls = "model.ifc 'IfcWall'";
    EXPECT_EQ(run(walls).out, "#1  IfcWall              0000000000000000000001  Tür Nord\n"
                              "#2  IfcWallStandardCase  0000000000000000000002  say \"no\"\n");
    EXPECT_EQ(run(walls + columns).out,
              "id  type                 Description  count(IsDefinedBy)  *.\"Fire rating\"  OwnerHistory\n"
              "#1  IfcWall              -            2                   F30; F90         #30\n"
              "#2  IfcWallStandardCase  x            1                   F30; F90         #30\n");
    EXPECT_EQ(run(walls + columns + " --csv").out,
              "id,type,Description,count(IsDefinedBy),\"*.\"\"Fire rating\"\"\",OwnerHistory\n"
              "#1,IfcWall,,2,F30; F90,#30\n"
              "#2,IfcWallStandardCase,x,1,F30; F90,#30\n");
    EXPECT_EQ(run("model.ifc '#1'" + columns + " --json").out,
              "{\"id\":{\"ref\":1},\"type\":\"IfcWall\",\"Description\":null,\"count(IsDefinedBy)\":2,"
              "\"*.\\\"Fire rating\\\"\":[\"F30\",\"F90\"],\"OwnerHistory\":{\"ref\":30}}\n");
    EXPECT_EQ(run(walls + " --count").out, "2\n");
    expectRefusal(run(walls + " --columns 'Name,Nmae'"), "--columns, at column 6: IfcWall has no attribute Nmae");
}

TEST_F(QueryCommandTest, CodesTellWhetherAnythingWasFound) {
    m_folder.write("other.ifc", stepFile("#1=IFCMATERIAL('oak');"));
    struct {
        const char* arguments;
        int exitCode;
        const char* out;
        const char* told;
    } const cases[] = {
        {"model.ifc IfcMaterial", 0, "#18  IfcMaterial  -  oak\n", "model.ifc: 1 found in"},
        {"model.ifc IfcDoor", 1, "", "model.ifc: 0 found in"},
        {"other.ifc model.ifc IfcMaterial --csv", 0,
         "file,id,type,GlobalId,Name\nother.ifc,#1,IfcMaterial,,oak\nmodel.ifc,#18,IfcMaterial,,oak\n", ""},
        {"other.ifc model.ifc IfcWall --count", 0, "other.ifc: 0\nmodel.ifc: 2\n", ""},
        {"other.ifc missing.ifc model.ifc '=IfcWall' --json --columns Tag", 2,
         "{\"file\":\"model.ifc\",\"Tag\":\"W1\"}\n", "missing.ifc"},
        {"other.ifc model.ifc IfcDoor --csv", 1, "file,id,type,GlobalId,Name\n", ""},
        {"missing.ifc IfcWal", 2, "", "did you mean IfcWall"}, // without a look at the file
        {"model.ifc --strict IfcMaterial", 2, "", "is not as the standard wants it"},
        {"- IfcSlab --count <model.ifc", 0, "1\n", "standard input: read with"},
        {"model.ifc 'IfcWall[Pset_WalCommon.Length]' --count", 1, "0\n", "did you mean Pset_WallCommon.Length"},
        {"model.ifc 'IfcWall[*.Lenght]' --count", 1, "0\n", "did you mean *.Length"},
        {"model.ifc 'IfcWall[OwnrHistory.CreationDate]' --count", 1, "0\n", "did you mean OwnerHistory"},
    };
    for (const auto& [arguments, exitCode, out, told] : cases) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, exitCode) << arguments << '\n' << outcome.err;
        EXPECT_EQ(outcome.out, out) << arguments;
        EXPECT_NE(outcome.err.find(told), std::string::npos) << arguments << '\n' << outcome.err;
    }
}

} // namespace
