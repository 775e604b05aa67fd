#include "Runner.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

using Json = nlohmann::ordered_json;

namespace {

struct Case {
    const char* name;
    const char* record; ///< behind "#1="; other records may follow
    const char* type;
    const char* attributes; ///< as JSON
};

class ValueTest : public testing::TestWithParam<Case> {};

TEST_P(ValueTest, IsDumped) {
    const WorkFolder folder;
    folder.write("model.ifc", stepFile(std::string("#1=") + GetParam().record));
    const Outcome outcome = folder.run("kpifc dump model.ifc");
    EXPECT_LE(outcome.exitCode, 1) << outcome.err;
    const std::vector<std::string> lines = linesOf(outcome.out);
    ASSERT_FALSE(lines.empty()) << outcome.err;
    // As text: the order of attributes counts, and a real must not become another number.
    EXPECT_EQ(lines[0], "{\"id\":1,\"type\":\"" + std::string(GetParam().type) +
                            "\",\"attributes\":" + GetParam().attributes + "}");
}

const Case kCases[] = {
    {"Texts", "IFCPERSON('007','Zo\\X\\EB \"X\" C:\\\\','',$,('Dr.','\\X2\\03B1\\X0\\'),$,$,$);", "IfcPerson",
     R"({"Id":"007","FamilyName":"Zoë \"X\" C:\\","GivenName":"","MiddleNames":[],"PrefixTitles":["Dr.","α"],)"
     R"("SuffixTitles":[],"Roles":[],"Addresses":[]})"},
    {"ControlCharacters", "IFCMATERIAL('\\X\\00\\X\\01\\X\\08\\X\\09\\X\\0A\\X\\0D\\X\\1F\\X\\7F');", "IfcMaterial",
     R"({"Name":"\u0000\u0001\u0008\t\n\r\u001f\u007f"})"},
    {"CharactersBeyondTheBasicPlane", "IFCMATERIAL('\\X4\\0001F600\\X0\\');", "IfcMaterial",
     "{\"Name\":\"\U0001F600\"}"},
    {"BytesThatAreNotUtf8", "IFCMATERIAL('\xfc');", "IfcMaterial", "{\"Name\":\"ü\"}"},
    {"Reals", "IFCCARTESIANPOINT((0.1,-2.,1.E-07));", "IfcCartesianPoint", R"({"Coordinates":[0.1,-2.0,1e-07]})"},
    {"RealAtTheEdge", "IFCDIRECTION((1.7976931348623157E308,5.E-324));", "IfcDirection",
     R"({"DirectionRatios":[1.7976931348623157e+308,5e-324]})"},
    {"Integers", "IFCDIMENSIONALEXPONENTS(1,-2,0,2147483646,-2147483648,0,0);", "IfcDimensionalExponents",
     R"({"LengthExponent":1,"MassExponent":-2,"TimeExponent":0,"ElectricCurrentExponent":2147483646,)"
     R"("ThermodynamicTemperatureExponent":-2147483648,"AmountOfSubstanceExponent":0,"LuminousIntensityExponent":0})"},
    {"EnumerationsWithoutTheDerivedAttribute", "IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);", "IfcSIUnit",
     R"({"UnitType":"LENGTHUNIT","Prefix":"MILLI","Name":"METRE"})"},
    {"UnsetAndUnknownEnumeration", "IFCSIUNIT(*,.NOSUCHUNIT.,$,.METRE.);", "IfcSIUnit",
     R"({"UnitType":null,"Prefix":null,"Name":"METRE"})"},
    {"Logicals", "IFCPRESENTATIONLAYERWITHSTYLE('a',$,(),$,.T.,.F.,.U.,());", "IfcPresentationLayerWithStyle",
     R"({"Name":"a","Description":null,"AssignedItems":[],"Identifier":null,"LayerOn":true,"LayerFrozen":false,)"
     R"("LayerBlocked":"UNKNOWN","LayerStyles":[]})"},
    {"FieldThatIsNotKept", "IFCBLOBTEXTURE(.T.,.F.,.TEXTURE.,$,'png',\"0FF\");", "IfcBlobTexture",
     R"({"RepeatS":true,"RepeatT":false,"TextureType":"TEXTURE","TextureTransform":null,"RasterFormat":"png",)"
     R"("RasterCode":null})"},
    {"Binaries", "IFCPIXELTEXTURE(.T.,.F.,.TEXTURE.,$,1,2,3,(\"0FF\",\"000000001\"));", "IfcPixelTexture",
     R"({"RepeatS":true,"RepeatT":false,"TextureType":"TEXTURE","TextureTransform":null,"Width":1,"Height":2,)"
     R"("ColourComponents":3,"Pixel":["0FF","000000001"]})"},
    {"ReferencesAlsoToWhatIsKeptAsText", "IFCPOLYLINE((#2,#3,#4));#2=IFCCARTESIANPOINT((0.,0.));#4=IFCNOSUCHTHING(1);",
     "IfcPolyline", R"({"Points":[{"ref":2},null,{"ref":4}]})"},
    {"ReferenceToNothing", "IFCVERTEXPOINT(#2);", "IfcVertexPoint", R"({"VertexGeometry":null})"},
    {"TypedReal", "IFCPROPERTYSINGLEVALUE('a',$,IFCLENGTHMEASURE(2.5),$);", "IfcPropertySingleValue",
     R"({"Name":"a","Description":null,"NominalValue":{"type":"IfcLengthMeasure","value":2.5},"Unit":null})"},
    {"TypedUnset", "IFCPROPERTYSINGLEVALUE('a',$,IFCTEXT($),#2);#2=IFCMONETARYUNIT(.EUR.);", "IfcPropertySingleValue",
     R"({"Name":"a","Description":null,"NominalValue":{"type":"IfcText","value":null},"Unit":{"ref":2}})"},
    {"TypedList",
     "IFCPROPERTYLISTVALUE('a',$,(IFCBOOLEAN(.F.),IFCLOGICAL(.U.),IFCINTEGER(7),IFCLABEL('x'),"
     "IFCCOMPOUNDPLANEANGLEMEASURE((47,30,15)),IFCCOMPLEXNUMBER((1.,0.5))),$);",
     "IfcPropertyListValue",
     R"({"Name":"a","Description":null,"ListValues":[{"type":"IfcBoolean","value":false},)"
     R"({"type":"IfcLogical","value":"UNKNOWN"},{"type":"IfcInteger","value":7},{"type":"IfcLabel","value":"x"},)"
     R"({"type":"IfcCompoundPlaneAngleMeasure","value":[47,30,15]},)"
     R"({"type":"IfcComplexNumber","value":[1.0,0.5]}],"Unit":null})"},
    {"TypedEnumeration", "IFCPRESENTATIONSTYLEASSIGNMENT((IFCNULLSTYLE(.NULL.)));", "IfcPresentationStyleAssignment",
     R"({"Styles":[{"type":"IfcNullStyle","value":"NULL"}]})"},
    {"TypedValueOfNoAlternative", "IFCCURVESTYLE('a',$,IFCLABEL('thick'),$);", "IfcCurveStyle",
     R"({"Name":"a","CurveFont":null,"CurveWidth":null,"CurveColour":null})"},
    {"GlobalIdAndAggregatesOfIntegers",
     "IFCSITE('23emzg5$r6fA3IIhCrx3ZR',#2,$,$,$,$,$,$,.ELEMENT.,(47,30,15,250000),$,1.5,$,$);"
     "#2=IFCOWNERHISTORY($,$,$,.ADDED.,$,$,$,0);",
     "IfcSite",
     R"({"GlobalId":"23emzg5$r6fA3IIhCrx3ZR","OwnerHistory":{"ref":2},"Name":null,"Description":null,)"
     R"("ObjectType":null,"ObjectPlacement":null,"Representation":null,"LongName":null,"CompositionType":"ELEMENT",)"
     R"("RefLatitude":[47,30,15,250000],"RefLongitude":null,"RefElevation":1.5,"LandTitleNumber":null,)"
     R"("SiteAddress":null})"},
    {"NothingSet", "IFCPERSON($,$,$,$,$,$,$,$);", "IfcPerson",
     R"({"Id":null,"FamilyName":null,"GivenName":null,"MiddleNames":[],"PrefixTitles":[],"SuffixTitles":[],)"
     R"("Roles":[],"Addresses":[]})"},
};

INSTANTIATE_TEST_SUITE_P(Values, ValueTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return test.param.name; });

TEST(DumpTest, HoldsEveryInstanceInAscendingOrder) {
    const WorkFolder folder;
    folder.write("model.ifc", stepFile("#9000000000=IFCMATERIAL('d');#7=IFCMATERIAL('b');#2=IFCNOSUCHTHING();"
                                       "#100=IFCMATERIAL('c');#1=IFCMATERIAL('a');"));
    std::string names;
    for (const std::string& line : linesOf(folder.run("kpifc dump model.ifc").out)) {
        const Json instance = Json::parse(line);
        names += instance["attributes"]["Name"].get<std::string>() + instance["id"].dump() + ' ';
    }
    EXPECT_EQ(names, "a1 b7 c100 d9000000000 ");
}

TEST(DumpTest, TellsInversesOfEveryEntityWhenAsked) {
    const WorkFolder folder;
    folder.write("model.ifc", stepFile("#9=IFCRELASSOCIATESMATERIAL('0000000000000000000009',$,$,$,(#5),#1);\n"
                                       "#7=IFCMATERIALLAYER(#1,1.,$);#6=IFCMATERIALLAYER(#1,2.,$);\n"
                                       "#8=IFCMATERIALLAYERSET((#6,#7),$);#1=IFCMATERIAL('a');\n"
                                       "#5=IFCWALLTYPE('0000000000000000000005',$,$,$,$,$,$,$,$,.STANDARD.);"));
    std::string inverses;
    for (const std::string& line : linesOf(folder.run("kpifc dump --inverse model.ifc").out)) {
        inverses += line.substr(line.find("},\"inverse\":") + 2) + '\n';
    }
    EXPECT_EQ(inverses, R"("inverse":{"HasRepresentation":[],"ClassifiedAs":[]}}
"inverse":{"HasAssignments":[],"IsDecomposedBy":[],"Decomposes":[],"HasAssociations":[{"ref":9}],"ObjectTypeOf":[]}}
"inverse":{"ToMaterialLayerSet":[{"ref":8}]}}
"inverse":{"ToMaterialLayerSet":[{"ref":8}]}}
"inverse":{}}
"inverse":{}}
)");
}

TEST(DumpTest, IsJsonForTheExample) {
    const WorkFolder folder;
    const std::filesystem::path house = std::filesystem::path(KP_SOURCE_DIR) / "examples/small_house.ifc";
    const Outcome outcome = folder.run("kpifc dump " + quoted(house));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    std::size_t names = 0;
    for (const std::string& line : linesOf(outcome.out)) {
        const Json instance = Json::parse(line);
        names += instance.at("attributes").contains("GlobalId");
    }
    EXPECT_GT(names, 20u);
}

} // namespace
