#include "Environment.h"
#include "PropertySetsText.h"

#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcGlobalIds.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcSettings.h>
#include <KpRx/KcString.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <set>

using namespace KP_SDAI;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string rooted(const std::string& record, const char* entity, const std::string& rest) {
    return record + "=" + entity + "('" + newGlobalId().constStr() + "',$," + rest + ");\n";
}
std::string wall(const std::string& record) {
    return rooted(record, "IFCWALL", "'W',$,$,$,$,$");
}
std::string relation(const std::string& record, const std::string& objects, const std::string& set) {
    return rooted(record, "IFCRELDEFINESBYPROPERTIES", "$,$,(" + objects + ")," + set);
}
std::string propertySet(const std::string& record, const std::string& name, const std::string& properties) {
    return rooted(record, "IFCPROPERTYSET", "'" + name + "',$,(" + properties + ")");
}

/// A wall #1 with one set that holds these records, the first of which is #10.
KpIfcFile wallWith(const std::string& members, const std::string& records, const std::string& units = "") {
    std::string content = wall("#1") + relation("#2", "#1", "#3") + propertySet("#3", "S", members) + records;
    if (!units.empty()) {
        content += rooted("#4", "IFCPROJECT", "$,$,$,$,$,(),#5") + "#5=IFCUNITASSIGNMENT((" +
                   units.substr(0, units.find(';')) + "));\n" + units.substr(units.find(';') + 1);
    }
    return openedRecords(content);
}

constexpr const char* kUnits = "#80,#81,#82,#83,#84;"
                               "#80=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);\n"
                               "#81=IFCSIUNIT(*,.AREAUNIT.,$,.SQUARE_METRE.);\n"
                               "#82=IFCDERIVEDUNIT((#90,#91),.THERMALTRANSMITTANCEUNIT.,$);\n"
                               "#83=IFCMONETARYUNIT(.EUR.);\n"
                               "#84=IFCCONVERSIONBASEDUNIT(#99,.PLANEANGLEUNIT.,'DEGREE',$);\n"
                               "#90=IFCDERIVEDUNITELEMENT(#92,1);\n#91=IFCDERIVEDUNITELEMENT(#81,-1);\n"
                               "#92=IFCSIUNIT(*,.POWERUNIT.,$,.WATT.);\n";

TEST(PropertySets, EveryKindOfEntry) {
    KpIfcFile file = wallWith("#10,#11,#12,#13,#14,#15,#16",
                              "#10=IFCPROPERTYSINGLEVALUE('One',$,IFCPOSITIVELENGTHMEASURE(2.5),$);\n"
                              "#11=IFCPROPERTYBOUNDEDVALUE('Upto',$,IFCAREAMEASURE(9.),$,$);\n"
                              "#12=IFCPROPERTYENUMERATEDVALUE('Chosen',$,(IFCLABEL('a'),IFCLABEL('b')),#20);\n"
                              "#13=IFCPROPERTYLISTVALUE('Mixed',$,(IFCINTEGER(1),IFCLOGICAL(.U.)),#80);\n"
                              "#14=IFCPROPERTYTABLEVALUE('Curve',$,(IFCINTEGER(1),IFCINTEGER(2)),"
                              "(IFCLENGTHMEASURE(1.),IFCLENGTHMEASURE(4.)),$,$,#92);\n"
                              "#15=IFCPROPERTYREFERENCEVALUE('Made of',$,$,#21);\n"
                              "#16=IFCPROPERTYSINGLEVALUE('None',$,$,$);\n"
                              "#20=IFCPROPERTYENUMERATION('E',(IFCLABEL('a'),IFCLABEL('b')),#92);\n"
                              "#21=IFCMATERIAL('oak');\n",
                              kUnits);
    EXPECT_THAT(linesOf(*file.model(), 1),
                ElementsAre("S|One|single|2.5|IfcPositiveLengthMeasure|mm", "S|Upto|bounded|(- 9.)|IfcAreaMeasure|m2",
                            "S|Chosen|enumerated|('a' 'b')|IfcLabel|W", "S|Mixed|list|(1 .U.)||mm",
                            "S|Curve|table|((1 2) (1. 4.))|IfcLengthMeasure|W|IfcInteger|", "S|Made of|reference|#21||",
                            "S|None|single|-||"));
    const std::vector<KpIfcPropertyValue> values = propertiesOf(*file.model()->find(1).openObject());
    EXPECT_EQ(values[0].setInstance, file.model()->find(3));
    EXPECT_EQ(values[0].propertyInstance, file.model()->find(10));
    EXPECT_EQ(values[0].measure.unit, file.model()->find(80));
}

TEST(PropertySets, QuantitiesAndAttributesOfOtherSets) {
    KpIfcFile file =
        openedRecords(wall("#1") + relation("#2", "#1", "#3") + relation("#4", "#1", "#6") +
                      rooted("#3", "IFCELEMENTQUANTITY", "'Q',$,$,(#10,#11,#12)") +
                      "#10=IFCQUANTITYLENGTH('Width',$,#20,300.);\n#11=IFCQUANTITYCOUNT('Holes',$,$,2.);\n"
                      "#12=IFCPHYSICALCOMPLEXQUANTITY('Layer',$,(#13),'d',$,$);\n#13=IFCQUANTITYAREA('Net',$,$,7.);\n"
                      "#20=IFCSIUNIT(*,.LENGTHUNIT.,.CENTI.,.METRE.);\n" +
                      rooted("#6", "IFCDOORPANELPROPERTIES", "$,$,0.04,.SWINGING.,$,.LEFT.,$"));
    EXPECT_THAT(linesOf(*file.model(), 1),
                ElementsAre("Q|Width|quantity|300.|IfcLengthMeasure|cm", "Q|Holes|quantity|2.|IfcCountMeasure|",
                            "Q|Layer/Net|quantity|7.|IfcAreaMeasure|",
                            "IfcDoorPanelProperties|PanelDepth|attribute|0.04|IfcPositiveLengthMeasure|",
                            "IfcDoorPanelProperties|PanelOperation|attribute|'SWINGING'|IfcDoorPanelOperationEnum|",
                            "IfcDoorPanelProperties|PanelWidth|attribute|-|IfcNormalisedRatioMeasure|",
                            "IfcDoorPanelProperties|PanelPosition|attribute|'LEFT'|IfcDoorPanelPositionEnum|",
                            "IfcDoorPanelProperties|ShapeAspectStyle|attribute|-||"));
}

TEST(PropertySets, OwnValuesHideThoseOfTheType) {
    KpIfcFile file = openedRecords(
        wall("#1") + wall("#2") + rooted("#3", "IFCWALLTYPE", "'T',$,$,(#5,#6),$,$,$,.STANDARD.") +
        rooted("#4", "IFCRELDEFINESBYTYPE", "$,$,(#1,#2),#3") + propertySet("#5", "A", "#10,#11") +
        propertySet("#6", "B", "#10") + relation("#7", "#1", "#8") + propertySet("#8", "A", "#12") +
        "#10=IFCPROPERTYSINGLEVALUE('X',$,IFCLABEL('type'),$);\n#11=IFCPROPERTYSINGLEVALUE('Y',$,IFCLABEL('type'),$);\n"
        "#12=IFCPROPERTYSINGLEVALUE('X',$,IFCLABEL('own'),$);\n" +
        relation("#9", "#2", "#6")); // of the type and of #2 itself
    const KpIfcModel& model = *file.model();
    EXPECT_THAT(linesOf(model, 1), ElementsAre("A|X|single|'own'|IfcLabel|", "A|Y|single|'type'|IfcLabel||type",
                                               "B|X|single|'type'|IfcLabel||type"));
    EXPECT_THAT(linesOf(model, 2), ElementsAre("B|X|single|'type'|IfcLabel|", "A|X|single|'type'|IfcLabel||type",
                                               "A|Y|single|'type'|IfcLabel||type"));
    EXPECT_THAT(linesOf(model, 3), ElementsAre("A|X|single|'type'|IfcLabel|", "A|Y|single|'type'|IfcLabel|",
                                               "B|X|single|'type'|IfcLabel|"));
    EXPECT_THAT(linesOf(model, 5), IsEmpty()); // no object
}

TEST(PropertySets, EntriesThatARelationOverrides) {
    KpIfcFile file = openedRecords(
        wall("#1") + wall("#2") + relation("#3", "#1,#2", "#5") +
        rooted("#4", "IFCRELOVERRIDESPROPERTIES", "$,$,(#1),#5,(#12)") + propertySet("#5", "A", "#10,#11") +
        "#10=IFCPROPERTYSINGLEVALUE('X',$,IFCLABEL('set'),$);\n#11=IFCPROPERTYSINGLEVALUE('Y',$,IFCLABEL('set'),$);\n"
        "#12=IFCPROPERTYSINGLEVALUE('X',$,IFCLABEL('over'),$);\n");
    EXPECT_THAT(linesOf(*file.model(), 1), ElementsAre("A|X|single|'over'|IfcLabel|", "A|Y|single|'set'|IfcLabel|"));
    EXPECT_THAT(linesOf(*file.model(), 2), ElementsAre("A|X|single|'set'|IfcLabel|", "A|Y|single|'set'|IfcLabel|"));
}

TEST(PropertySets, NestedOnesEndWhereTheyTurnBack) {
    KpIfcFile file = wallWith("#10", "#10=IFCCOMPLEXPROPERTY('A',$,'u',(#10,#11,#12));\n"
                                     "#11=IFCCOMPLEXPROPERTY('B',$,'u',(#10,#12));\n"
                                     "#12=IFCPROPERTYSINGLEVALUE('x',$,IFCINTEGER(1),$);\n");
    EXPECT_THAT(linesOf(*file.model(), 1), ElementsAre("S|A/B/x|single|1|IfcInteger|", "S|A/x|single|1|IfcInteger|"));

    // Two ways in each of many levels, and levels without end.
    std::string records;
    for (int i = 10; i < 20'000; ++i) {
        const std::string next = std::to_string(i + 2 - i % 2);
        records += '#' + std::to_string(i) + "=IFCCOMPLEXPROPERTY('n',$,'u',(#" + next + ",#" +
                   std::to_string(i + 3 - i % 2) + ",#30000));\n";
    }
    records += "#30000=IFCPROPERTYSINGLEVALUE('x',$,IFCINTEGER(1),$);\n";
    KpIfcFile deep = wallWith("#10,#11", records);
    EXPECT_EQ(linesOf(*deep.model(), 1).size(), 2 * 64u);
}

/// Whatever a program lets references point at.
TEST(PropertySets, ReferencesToOtherThings) {
    KpIfcFile file = wallWith("#10", "#10=IFCPROPERTYSINGLEVALUE('x',$,IFCLENGTHMEASURE(1.),$);\n", kUnits);
    KpIfcModel& model = *file.model();
    model.find(10).openObject()->putAttr("Unit", model.find(82));
    model.find(90).openObject()->putAttr("Unit", model.find(82)); // the derived unit itself
    EXPECT_THAT(linesOf(model, 1), ElementsAre("S|x|single|1.|IfcLengthMeasure|1/m2"));
    model.find(90).openObject()->putAttr("Unit", model.find(1));
    EXPECT_THAT(linesOf(model, 1), ElementsAre("S|x|single|1.|IfcLengthMeasure|1/m2"));
    model.find(5).openObject()->putAttr("Units", KpIfcArray<KpDbObjectId>{model.find(80)});
    model.find(4).openObject()->putAttr("UnitsInContext", model.find(1));
    model.find(3).openObject()->putAttr("HasProperties", KpIfcArray<KpDbObjectId>{model.find(1), model.find(3)});
    EXPECT_THAT(linesOf(model, 1), IsEmpty());
    model.find(2).openObject()->putAttr("RelatingPropertyDefinition", model.find(10));
    EXPECT_THAT(linesOf(model, 1), IsEmpty());
}

TEST(PropertySets, ReadingMarksNothingAndWorksOnReadOnlyModels) {
    KpIfcFile file = wallWith("#10,#11",
                              "#10=IFCPROPERTYSINGLEVALUE('x',$,IFCLABEL('y'),$);\n"
                              "#11=IFCPROPERTYLISTVALUE('z',$,(IFCINTEGER(1)),$);\n",
                              kUnits);
    for (const SdaiAccessMode mode : {kReadWrite, kReadOnly, kAccessUndefined}) {
        file.model()->mode(mode);
        EXPECT_EQ(linesOf(*file.model(), 1).size(), mode == kAccessUndefined ? 0 : 2);
    }
    for (const KpIfcEntityBase* instance : file.model()->instances()) {
        EXPECT_FALSE(instance->isChanged()) << instance->instanceName();
    }
}

TEST(PropertySets, TextsAreUnicodeHoweverTheModelKeepsThem) {
    const bool former = settings().get_useUTF8();
    for (const bool useUtf8 : {true, false}) {
        settings().set_useUTF8(useUtf8);
        KpIfcFile file = wallWith("#10", "#10=IFCPROPERTYSINGLEVALUE('T\\X2\\00FC\\X0\\r',$,"
                                         "IFCLABEL('\\X2\\6728\\X0\\'),$);\n");
        const std::vector<KpIfcPropertyValue> values = propertiesOf(*file.model()->find(1).openObject());
        ASSERT_EQ(values.size(), 1u);
        EXPECT_EQ(values[0].name, "Tür");
        KcString shown;
        ASSERT_TRUE(values[0].value.get(shown));
        EXPECT_EQ(shown.view(), "木");
    }
    settings().set_useUTF8(former);
}

std::string symbolOf(const std::string& unit) {
    KpIfcFile file = wallWith("#10", "#10=IFCPROPERTYSINGLEVALUE('x',$,IFCREAL(1.),#20);\n#20=" + unit + ";\n" +
                                         "#30=IFCDERIVEDUNITELEMENT(#40,1);\n#31=IFCDERIVEDUNITELEMENT(#41,-2);\n"
                                         "#32=IFCDERIVEDUNITELEMENT(#42,-1);\n#33=IFCDERIVEDUNITELEMENT(#43,2);\n"
                                         "#40=IFCSIUNIT(*,.MASSUNIT.,.KILO.,.GRAM.);\n"
                                         "#41=IFCSIUNIT(*,.TIMEUNIT.,$,.SECOND.);\n"
                                         "#42=IFCSIUNIT(*,.THERMODYNAMICTEMPERATUREUNIT.,$,.KELVIN.);\n"
                                         "#43=IFCSIUNIT(*,.AREAUNIT.,$,.SQUARE_METRE.);\n");
    return propertiesOf(*file.model()->find(1).openObject()).at(0).measure.symbol;
}

TEST(PropertySets, SymbolsOfUnits) {
    static constexpr const char* kCases[][2] = {
        {"IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.)", "m"},
        {"IFCSIUNIT(*,.VOLUMEUNIT.,.DECI.,.CUBIC_METRE.)", "dm3"},
        {"IFCSIUNIT(*,.PRESSUREUNIT.,.MEGA.,.PASCAL.)", "MPa"},
        {"IFCSIUNIT(*,.LENGTHUNIT.,.MICRO.,.METRE.)", "µm"},
        {"IFCSIUNIT(*,.THERMODYNAMICTEMPERATUREUNIT.,$,.DEGREE_CELSIUS.)", "°C"},
        {"IFCSIUNIT(*,.LENGTHUNIT.,$,$)", ""},
        {"IFCCONVERSIONBASEDUNIT($,.LENGTHUNIT.,'FOOT',$)", "FOOT"},
        {"IFCCONTEXTDEPENDENTUNIT($,.USERDEFINED.,'PIECE')", "PIECE"},
        {"IFCMONETARYUNIT(.EUR.)", "EUR"},
        {"IFCDERIVEDUNIT((#30,#31,#32),.THERMALTRANSMITTANCEUNIT.,$)", "kg/(s2·K)"},
        {"IFCDERIVEDUNIT((#30,#33),.USERDEFINED.,$)", "kg·(m2)2"},
        {"IFCDERIVEDUNIT((#31),.USERDEFINED.,$)", "1/s2"},
        {"IFCDERIVEDUNIT((),.USERDEFINED.,$)", ""},
    };
    for (const auto& [unit, symbol] : kCases) EXPECT_EQ(symbolOf(unit), symbol) << unit;
    // Every name and prefix of an SI unit has a symbol.
    const KpIfcFile file = emptyFile();
    for (const auto& [type, before, behind] : {std::array{"IfcSIUnitName", "IFCSIUNIT(*,$,$,.", ".)"},
                                               std::array{"IfcSIPrefix", "IFCSIUNIT(*,$,.", ".,$)"}}) {
        std::set<std::string> symbols;
        const KpIfcEnumerationType* enumeration = file.model()->schema().findType(type)->enumeration();
        for (const KpAnsiString& literal : enumeration->literals()) {
            const std::string symbol = symbolOf(before + std::string(literal.constStr()) + behind);
            EXPECT_NE(symbol, literal.constStr());
            symbols.insert(symbol);
        }
        EXPECT_EQ(symbols.size(), enumeration->literals().size());
    }
}

/// Every unit type but that of users' own is the one of some measure; only names tell which.
TEST(PropertySets, UnitsOfTheProjectByMeasure) {
    const KpIfcFile schema = emptyFile();
    std::set<std::string> wanted;
    std::set<std::string> found;
    std::string units;
    std::string records;
    int name = 100;
    for (const char* type : {"IfcUnitEnum", "IfcDerivedUnitEnum"}) {
        for (const KpAnsiString& literal : schema.model()->schema().findType(type)->enumeration()->literals()) {
            const std::string text = literal.constStr();
            if (text == "USERDEFINED") continue;
            wanted.insert(text);
            const std::string unit = '#' + std::to_string(name++);
            const std::string part = '#' + std::to_string(name++);
            const std::string element = '#' + std::to_string(name++);
            units += (units.empty() ? "" : ",") + unit;
            const bool isNamed = type == std::string_view("IfcUnitEnum");
            records += isNamed ? unit + "=IFCCONTEXTDEPENDENTUNIT($,." + text + ".,'" + text + "');\n"
                               : unit + "=IFCDERIVEDUNIT((" + element + "),." + text + ".,$);\n" + element +
                                     "=IFCDERIVEDUNITELEMENT(" + part + ",1);\n" + part +
                                     "=IFCCONTEXTDEPENDENTUNIT($,.USERDEFINED.,'" + text + "');\n";
        }
    }
    for (const Dictionary::Entry& entry : schema.model()->schema().types().entries()) {
        std::string measure = schema.model()->schema().findType(entry.name)->displayName();
        if (!measure.ends_with("Measure")) continue;
        for (char& c : measure) c = upperAscii(c);
        const std::string value = measure == "IFCCOMPOUNDPLANEANGLEMEASURE" ? "((1,2,3))"
                                  : measure == "IFCDESCRIPTIVEMEASURE"      ? "('x')"
                                  : measure == "IFCINTEGERCOUNTRATEMEASURE" ? "(1)"
                                                                            : "(1.)";
        KpIfcFile file =
            wallWith("#10", "#10=IFCPROPERTYSINGLEVALUE('x',$," + measure + value + ",$);\n", units + ';' + records);
        for (const KpIfcPropertyValue& each : propertiesOf(*file.model()->find(1).openObject())) {
            if (!each.measure.symbol.empty()) found.insert(each.measure.symbol);
        }
    }
    EXPECT_EQ(found, wanted);
}

TEST(GlobalIds, Are22DigitsThatDiffer) {
    std::set<std::string> ids;
    std::set<char> first;
    std::set<char> others;
    for (int i = 0; i < 2000; ++i) {
        const std::string id = newGlobalId().constStr();
        ASSERT_EQ(id.size(), 22u);
        ids.insert(id);
        first.insert(id[0]);
        others.insert(id.begin() + 1, id.end());
    }
    EXPECT_EQ(ids.size(), 2000u);
    EXPECT_EQ(std::string(first.begin(), first.end()), "0123");
    EXPECT_EQ(std::string(others.begin(), others.end()),
              "$0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
}

} // namespace
