#include "AttributeText.h"
#include "Environment.h"

#include <IFC2X3/IFC2X3.h>
#include <KpIfcCore/KpIfcException.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcSettings.h>
#include <KpIfcCore/KpIfcVariantTypes.h>
#include <KpRx/KcString.h>

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <set>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

using Variants = KpIfcArray<KpIfcVariant>;
using Handles = KpIfcArray<KpDbObjectId>;

const KpIfcAttributeFacts& rowOf(const KpIfcEntityBase& instance, const char* name) {
    return *instance.getInstanceType()->findAttribute(name)->as<KpIfcExplicitAttributeDefinition>()->facts();
}

template <class S>
S selectOf(const char* alternative, const KpIfcVariant& value) {
    S select;
    EXPECT_TRUE(select.underlyingTypeName(alternative) && select.putValue(value)) << alternative;
    return select;
}

/// What attributes of every kind take, and what they refuse.
TEST(LateBoundValue, TakenOrRefused) {
    KpIfcFile file = openedRecords("#1=IFCCARTESIANPOINT((1.,2.));\n#2=IFCCALENDARDATE(1,2,2003);\n"
                                   "#3=IFCWALL('0123456789012345678901',$,$,$,$,$,$,$);\n#4=IFCLOCALTIME(1,$,$,$,$);\n"
                                   "#5=IFCNOTHING();\n");
    KpIfcModel& model = *file.model();
    const KpDbObjectId point = model.find(1), date = model.find(2), wall = model.find(3), time = model.find(4),
                       kept = model.find(5);
    static constexpr const char* kNo = nullptr;
    const KpIfcVariant text = "12", number = 3, real = 2.5, nothing, none = KpDbObjectId(),
                       unicode = KcString("\xC3\x84", KcString::Encoding::utf8);
    IfcMeasureValue measure;
    measure.setIfcLengthMeasure(0.5);
    IfcValue nullValue;
    const auto label = selectOf<IfcValue>("IfcLabel", "oak");
    const auto parameter = selectOf<IfcTrimmingSelect>("IfcParameterValue", 0.5);
    IfcDateTimeSelect dateSelect;
    ASSERT_TRUE(dateSelect.setHandle(date));
    KpIfcSetAggr<KpDbObjectId> handleSet;
    handleSet.assign(Handles{wall, date});
    KpIfcListAggr<double> realList;
    realList.assign(KpIfcArray<double>{9, 8});
    KpIfcVariant role, assembly, unsetRole;
    role = kIfcRoleEnum_ENGINEER;
    unsetRole = kIfcRoleEnum_UNSET;
    assembly = kIfcAssemblyPlaceEnum_SITE;

    struct Value {
        KpIfcVariant value;
        const char* expected; ///< null: refused, and the attribute is as before
    };
    const struct {
        const char* entity;
        const char* attribute;
        KpIfcVariant before;
        std::vector<Value> values;
    } cases[] = {
        {"IfcWall",
         "Name",
         "before",
         {{text, "\"12\""},
          {KpAnsiString("a"), "\"a\""},
          {"", "\"\""},
          {unicode, "\"\xC3\x84\""},
          {KpIfcGUID("id"), "\"id\""},
          {static_cast<const char*>(nullptr), "no text"},
          {Consts::KpStringUnset, "no text"},
          {role, "\"ENGINEER\""},
          {unsetRole, "no text"},
          {label, "\"oak\""},
          {number, kNo},
          {real, kNo},
          {true, kNo},
          {none, kNo},
          {measure, kNo},
          {Variants{"a"}, kNo},
          {nothing, kNo}}},
        {"IfcWall",
         "GlobalId",
         "before",
         {{text, "12"},
          {KpIfcGUID("0123456789012345678901"), "0123456789012345678901"},
          {static_cast<const char*>(nullptr), "no GUID"},
          {KpAnsiString("01234567890123456789012"), kNo},
          {number, kNo},
          {role, kNo},
          {nothing, kNo}}},
        {"IfcSite",
         "RefElevation",
         1.0,
         {{real, "0x1.4p+1"},
          {number, "0x1.8p+1"},
          {text, "0x1.8p+3"},
          {7ul, "0x1.cp+2"},
          {measure, "0x1p-1"},
          {&measure, "0x1p-1"},
          {"twelve", kNo},
          {"nan", kNo},
          {label, kNo},
          {true, kNo},
          {role, kNo},
          {none, kNo},
          {KpIfcArray<double>{1}, kNo},
          {nothing, kNo}}},
        {"IfcPixelTexture",
         "Width",
         1,
         {{number, "3"},
          {4.0, "4"},
          {text, "12"},
          {role, "16"},
          {INT_MIN, "-2147483648"},
          {real, kNo},
          {4294967296ul, kNo},
          {"", kNo},
          {true, kNo},
          {nothing, kNo}}},
        {"IfcPixelTexture",
         "RepeatS",
         true,
         {{false, "boolean 0"},
          {KpIfcBoolean(), "boolean 2"},
          {KpIfcLogical(false), "boolean 0"},
          {KpIfcLogical(), "boolean 2"},
          {KpIfcLogical(KpIfcLogical::Unknown), kNo},
          {number, kNo},
          {"T", kNo},
          {nothing, kNo}}},
        {"IfcBezierCurve",
         "ClosedCurve",
         true,
         {{false, "logical 0"},
          {KpIfcLogical(KpIfcLogical::Unknown), "logical 2"},
          {KpIfcBoolean(), "logical 3"},
          {number, kNo},
          {".U.", kNo},
          {nothing, kNo}}},
        {"IfcWall",
         "OwnerHistory",
         point,
         {{wall, "#3"},
          {none, "null"},
          {kept, "#5"},
          {dateSelect, "#2"},
          {&dateSelect, "#2"},
          {number, kNo},
          {text, kNo},
          {label, kNo},
          {Handles{wall}, kNo},
          {nothing, kNo}}},
        {"IfcPropertySingleValue",
         "NominalValue",
         label,
         {{measure, "IfcLengthMeasure(0x1p-1)"},
          {&measure, "IfcLengthMeasure(0x1p-1)"},
          {nullValue, "(none)"},
          {static_cast<IfcValue*>(nullptr), kNo},
          {static_cast<IfcMeasureValue*>(nullptr), kNo},
          {dateSelect, kNo},
          {text, kNo},
          {number, kNo},
          {wall, kNo},
          {role, kNo},
          {Variants(), kNo},
          {nothing, kNo}}},
        {"IfcWorkPlan",
         "StartTime",
         dateSelect,
         {{time, "IfcLocalTime#4"},
          {wall, kNo},
          {kept, kNo},
          {none, kNo},
          {label, kNo},
          {text, kNo},
          {Handles{date}, kNo},
          {nothing, kNo}}},
        {"IfcTextStyleTextModel",
         "LetterSpacing",
         selectOf<IfcSizeSelect>("IfcRatioMeasure", 0.5),
         {{text, "IfcDescriptiveMeasure(\"12\")"},
          {unicode, "IfcDescriptiveMeasure(\"\xC3\x84\")"},
          {measure, "IfcLengthMeasure(0x1p-1)"},
          {real, kNo},
          {number, kNo},
          {nothing, kNo}}},
        {"IfcCartesianPoint",
         "Coordinates",
         KpIfcArray<double>{1, 2},
         {{KpIfcArray<double>{0.5}, "( 0x1p-1 )"},
          {KpIfcArray<double>(), "( )"},
          {static_cast<KpIfcListAggr<double>*>(&realList), "( 0x1.2p+3 0x1p+3 )"},
          {static_cast<KpIfcListAggr<double>*>(nullptr), kNo},
          {static_cast<KpIfcAggr*>(&realList), kNo},
          {Variants{3, "4", 0.5}, "( 0x1.8p+1 0x1p+2 0x1p-1 )"},
          {Variants{3, "four", 5}, kNo},
          {Variants{3, nothing, 5}, kNo},
          {KpIfcArray<int>{1}, kNo},
          {Handles(), kNo},
          {Handles{point}, kNo},
          {real, kNo},
          {nothing, kNo}}},
        {"IfcRelAggregates",
         "RelatedObjects",
         Handles{point},
         {{Handles{wall, date, wall}, "( #2 #3 )"},
          {Handles(), "( )"},
          {static_cast<KpIfcSetAggr<KpDbObjectId>*>(&handleSet), "( #2 #3 )"},
          {Variants{wall, dateSelect, point}, "( #1 #2 #3 )"},
          {Variants{wall, label, point}, kNo},
          {wall, kNo},
          {static_cast<KpIfcListAggr<KpDbObjectId>*>(nullptr), kNo},
          {nothing, kNo}}},
        {"IfcTrimmedCurve",
         "Trim1",
         KpIfcArray<IfcTrimmingSelect>{parameter},
         {{Handles{point}, "( IfcCartesianPoint#1 )"},
          {Handles{point, wall, point}, kNo},
          {Handles{kept}, kNo},
          {Handles{KpDbObjectId()}, kNo},
          {Handles(), "( )"},
          {Variants{parameter, point}, "( IfcParameterValue(0x1p-1) IfcCartesianPoint#1 )"},
          {Variants{parameter, measure}, kNo},
          {Variants{point, real}, "( IfcParameterValue(0x1.4p+1) IfcCartesianPoint#1 )"},
          {Variants{point, label, parameter}, kNo},
          {Variants{point, number}, kNo},
          {parameter, kNo},
          {KpIfcArray<IfcValue>{label}, kNo},
          {nothing, kNo}}},
        {"IfcPropertyListValue",
         "ListValues",
         KpIfcArray<IfcValue>{label},
         {{Variants{measure, label}, "( IfcLengthMeasure(0x1p-1) IfcLabel(\"oak\") )"},
          {Variants{label, dateSelect, label}, kNo},
          {Handles{wall}, kNo},
          {Handles(), "( )"},
          {nothing, kNo}}},
        {"IfcPerson",
         "MiddleNames",
         Variants{"a"},
         {{Variants{"b", unicode, role}, "( \"b\" \"\xC3\x84\" \"ENGINEER\" )"},
          {Variants{"b", 5}, kNo},
          {KpIfcArray<KpAnsiString>{"c"}, "( \"c\" )"},
          {text, kNo},
          {nothing, kNo}}},
        {"IfcSite",
         "RefLatitude",
         KpIfcArray<int>{1},
         {{Variants{1, "2", 3.0}, "( 1 2 3 )"},
          {Variants{1, 2.5}, kNo},
          {KpIfcArray<double>{1}, kNo},
          {Handles(), kNo}}},
        {"IfcElementAssembly",
         "AssemblyPlace",
         assembly,
         {{kIfcAssemblyPlaceEnum_FACTORY, "code 1"},
          {role, kNo},
          {real, kNo},
          {true, kNo},
          {unicode, kNo},
          {KpIfcGUID("SITE"), kNo},
          {KpIfcEnumDescription{"FACTORY"}, kNo},
          {wall, kNo},
          {nothing, kNo}}},
    };
    for (const auto& c : cases) {
        KpIfcEntityBase* instance = model.create(c.entity);
        ASSERT_TRUE(instance) << c.entity;
        const KpIfcAttributeFacts& row = rowOf(*instance, c.attribute);
        int place = 0;
        for (const Value& value : c.values) {
            SCOPED_TRACE(std::string(c.entity) + '.' + c.attribute + ", value " + std::to_string(place++));
            ASSERT_TRUE(instance->putAttr(c.attribute, c.before));
            const std::string before = attributeText(*instance, row);
            EXPECT_EQ(instance->putAttr(c.attribute, value.value), value.expected != nullptr);
            EXPECT_EQ(attributeText(*instance, row), value.expected ? value.expected : before);
        }
    }
}

/// Numbers are clamped from above only; a text without literal unsets the attribute and still is reported as refused.
TEST(LateBoundValue, EnumerationsFromNumbersAndTexts) {
    const KpIfcFile file = emptyFile();
    std::set<const KpIfcEnumFacts*> seen;
    for (const KpIfcEntityType* type : entityTypes(file.model()->schema())) {
        const std::unique_ptr<KpIfcEntityBase> instance(type->createInstance());
        for (const KpIfcAttributeFacts* row : type->recordFields()) {
            if (!row->enumeration) {
                continue;
            }
            seen.insert(row->enumeration);
            const int n = row->enumeration->count;
            const std::string last = row->enumeration->text(n - 1);
            const std::string more = last + 'S';
            std::string lower;
            for (const char c : last) {
                lower += KP_SDAI::lowerAscii(c);
            }
            KpIfcVariant own;
            ASSERT_TRUE(row->enumeration->descriptor->value().createVariant(own));
            const struct {
                KpIfcVariant value;
                bool taken;
                int code;
            } cases[] = {
                {0, true, 0},
                {n - 1, true, n - 1},
                {n, true, n},
                {n + 1, true, n},
                {INT_MAX, true, n},
                {-1, true, -1},
                {INT_MIN, true, INT_MIN},
                {0ul, true, 0},
                {static_cast<unsigned long>(n) + 1, true, n},
                {ULONG_MAX, true, n},
                {0x100000000ul, true, n},
                {last.c_str(), true, n - 1},
                {KpAnsiString(lower.c_str()), true, n - 1},
                {own, true, n},
                {more.c_str(), false, n},
                {KpAnsiString(("." + last + '.').c_str()), false, n},
                {"", false, n},
                {"UNSET", false, n},
                {static_cast<const char*>(nullptr), false, n},
            };
            for (const auto& c : cases) {
                const int before = c.code == 0 ? n : 0;
                ASSERT_TRUE(instance->putAttr(row->name, before));
                EXPECT_EQ(instance->putAttr(row->name, c.value), c.taken) << row->name << ' ' << c.code;
                EXPECT_EQ(row->enumerationCode(*instance), c.code) << row->name;
                EXPECT_EQ(instance->testAttr(row->name), c.code != n) << row->name;
            }
        }
    }
    EXPECT_GT(seen.size(), 100u);
}

/// The host's texts are stored in the form that the texts of the model have, wherever they are put.
TEST(LateBoundValue, TextsOfTheHostInAModelThatKeepsThemEncoded) {
    settings().set_useUTF8(false);
    KpIfcFile file = emptyFile();
    settings().set_useUTF8(true);
    ASSERT_FALSE(file.model()->textIsUtf8());
    const KpIfcVariant umlaut = KcString("\xC3\x84", KcString::Encoding::utf8);
    KpIfcEntityBase* person = file.model()->create("IfcPerson");
    EXPECT_TRUE(person->putAttr("GivenName", umlaut));
    EXPECT_TRUE(person->putAttr("MiddleNames", Variants{umlaut}));
    KpIfcEntityBase* style = file.model()->create("IfcTextStyleTextModel");
    EXPECT_TRUE(style->putAttr("LetterSpacing", umlaut));
    EXPECT_EQ(savedRecords(file), "#1=IFCPERSON($,$,'\\X2\\00C4\\X0\\',('\\X2\\00C4\\X0\\'),$,$,$,$);\n"
                                  "#2=IFCTEXTSTYLETEXTMODEL($,$,$,IFCDESCRIPTIVEMEASURE('\\X2\\00C4\\X0\\'),$,$,$);\n");
}

/// Instances that were read keep their values in the memory of the model; what is put owns its own.
TEST(LateBoundValue, PutIntoInstancesThatWereRead) {
    KpIfcFile file = openedRecords("#1=IFCPERSON('id','family','given',('a','b'),$,$,(#2),$);\n"
                                   "#2=IFCACTORROLE(.ENGINEER.,$,$);\n"
                                   "#3=IFCPROPERTYSINGLEVALUE('n',$,IFCLABEL('oak'),$);\n");
    KpIfcEntityBase* person = file.model()->find(1).openObject();
    KpIfcEntityBase* property = file.model()->find(3).openObject();
    const std::string text = "a text that is longer than the one before";
    KpIfcVariant value;
    ASSERT_TRUE(person->getAttr("GivenName", value));
    EXPECT_TRUE(person->putAttr("FamilyName", value));
    EXPECT_TRUE(person->putAttr("GivenName", text.c_str()));
    ASSERT_TRUE(person->getAttr("MiddleNames", value));
    EXPECT_TRUE(person->putAttr("PrefixTitles", value));
    EXPECT_TRUE(person->putAttr("MiddleNames", Variants{"1", "2", "3", text.c_str(), "5"}));
    person->unsetAttr("Roles");
    ASSERT_TRUE(property->getAttr("NominalValue", value));
    (*value.getIf<IfcValue*>())->setIfcText(text.c_str()); // what is handed out is the member
    const std::string expected = "#1=IFCPERSON('id','given','" + text + "',('1','2','3','" + text +
                                 "','5'),('a','b'),$,$,$);\n#2=IFCACTORROLE(.ENGINEER.,$,$);\n"
                                 "#3=IFCPROPERTYSINGLEVALUE('n',$,IFCTEXT('" +
                                 text + "'),$);\n";
    EXPECT_EQ(savedRecords(file), expected);
}

TEST(LateBoundValue, UnsettingMeansTheTextOfTheFileToo) {
    KpIfcFile file = openedRecords("#1=IFCROOF('0xGO74I1L2sOBnKbLTH2I2',$,$,$,$,$,$,$,.NOSUCH.);\n");
    KpIfcEntityBase* roof = file.model()->find(1).openObject();
    ASSERT_FALSE(roof->testAttr("ShapeType"));
    EXPECT_NE(std::string::npos, savedRecords(file).find(".NOSUCH."));
    roof->unsetAttr("ShapeType");
    EXPECT_EQ(std::string::npos, savedRecords(file).find(".NOSUCH."));
}

TEST(LateBoundValue, TheBasesOwnOperationsAreTheSame) {
    KpIfcFile file = openedRecords("#1=IFCPERSON($,'Doe',$,$,$,$,$,$);\n");
    KpIfcEntityBase& person = *file.model()->find(1).openObject();
    KpIfcVariant value;
    ASSERT_TRUE(person._getAttr("FAMILYNAME", value));
    EXPECT_STREQ("Doe", *value.getIf<const char*>());
    EXPECT_TRUE(person._putAttr("familyname", "Meier"));
    EXPECT_FALSE(person._putAttr("surname", "Meier"));
    EXPECT_TRUE(person._testAttr("FamilyName"));
    EXPECT_TRUE(person.testAttrCaseInsensitive("fAmIlYnAmE"));
    EXPECT_FALSE(person.testAttrCaseInsensitive("givenname"));
    EXPECT_TRUE(person.unsetAttrCaseInsensitive("FAMILYNAME"));
    EXPECT_FALSE(person._testAttr("familyname"));
    EXPECT_TRUE(person.unsetAttrCaseInsensitive("familyname")); // known, whether it has a value or not
    EXPECT_FALSE(person.unsetAttrCaseInsensitive("surname"));
    EXPECT_FALSE(person.unsetAttrCaseInsensitive("EngagedIn"));
    person._putAttr("id", "007");
    person._unsetAttr("Id");
    EXPECT_EQ("#1=IFCPERSON($,$,$,$,$,$,$,$);\n", savedRecords(file));
    file.model()->mode(kReadOnly);
    EXPECT_THROW(person._putAttr("id", "007"), KpIfcException);
}

} // namespace
