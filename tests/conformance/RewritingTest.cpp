#include "StepFiles.h"

#include <KpIfcCore/KpIfcErase.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <vector>

namespace fs = std::filesystem;
using namespace KP_SDAI;

namespace {

void put(KpIfcFile& file, std::uint64_t name, const char* attribute, const KpIfcVariant& value) {
    KpIfcEntityBase* const instance = file.model()->find(name).openObject();
    ASSERT_TRUE(instance && instance->putAttr(attribute, value)) << '#' << name << '.' << attribute;
}
void name(KpIfcFile& file, std::uint64_t instance, const char* text) {
    put(file, instance, "FamilyName", KpIfcVariant(text));
}
KpIfcEntityBase* person(KpIfcFile& file, std::uint64_t instanceName = 0) {
    return file.model()->create("IfcPerson", instanceName);
}

struct Case {
    const char* what;
    std::string before;
    std::function<void(KpIfcFile&)> edit;
    std::string after;
};

class RewritingTest : public testing::TestWithParam<Case> {};

TEST_P(RewritingTest, ChangesWhatWasChanged) {
    KpIfcFile file = opened(GetParam().before);
    GetParam().edit(file);
    EXPECT_EQ(rewritten(file), GetParam().after);
    EXPECT_EQ(rewritten(file), GetParam().after) << "written again";
}

std::string withRecords(const std::string& records) {
    return "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION(('ViewDefinition [x]'),'2;1');\n"
           "FILE_NAME('a', '2020-01-01T00:00:00',(''),(''),'','','');\nFILE_SCHEMA(('IFC2X3'));\nENDSEC;\nDATA;\n" +
           records + "ENDSEC;\nEND-ISO-10303-21;\n";
}

const std::string kHeader = "ISO-10303-21;\nHEADER;\n/* d */ FILE_DESCRIPTION( ('old') ,'2;1'); /* e */\n"
                            "FILE_NAME('n',$,(''),(''),'','','');\nFILE_SCHEMA(('IFC2X3'));\nX(1);\nENDSEC;\n";
const std::string kEmptyData = "DATA;\nENDSEC;\nEND-ISO-10303-21;\n";
const std::string kPerson = "=IFCPERSON($,$,$,$,$,$,$,$);";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t place = text.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    return text.replace(place, from.size(), to);
}

const std::vector<Case> kCases = {
    {"ARecordAtItsPlace",
     withRecords("/* one */ #1 = IFCPERSON( $,'A',$,$,$,$,$,$ ) ; /* behind */\n#3=ifcperson($,'C',$,$,$,$,$,$);\n"
                 "#2=IFCCARTESIANPOINT((1.E+01,0.));\n"),
     [](KpIfcFile& file) {
         name(file, 1, "a");
         name(file, 3, "C");
     },
     withRecords("/* one */ #1=IFCPERSON($,'a',$,$,$,$,$,$); /* behind */\n#3=ifcperson($,'C',$,$,$,$,$,$);\n"
                 "#2=IFCCARTESIANPOINT((1.E+01,0.));\n")},
    {"NothingThatIsBackToWhatItWas", withRecords("#1=IFCPERSON($,'A\\X\\E9',$,$,$,$,$,$);\n"),
     [](KpIfcFile& file) {
         name(file, 1, "B");
         name(file, 1, "A\xC3\xA9");
     },
     withRecords("#1=IFCPERSON($,'A\\X\\E9',$,$,$,$,$,$);\n")},
    {"SetsInWhateverOrder",
     withRecords("#1=IFCPERSON($,$,$,$,$,$,(#3,#2,#3),$);\n#2=IFCACTORROLE(.USERDEFINED.,'x',$);\n"
                 "#3=IFCACTORROLE(.userdefined.,'y',$);\n"),
     [](KpIfcFile& file) { touchAll(file); },
     withRecords("#1=IFCPERSON($,$,$,$,$,$,(#3,#2,#3),$);\n#2=IFCACTORROLE(.USERDEFINED.,'x',$);\n"
                 "#3=IFCACTORROLE(.userdefined.,'y',$);\n")},
    {"ATextThatOnlyLooksLikeTwo", withRecords("#1=IFCPERSON($,$,$,('a','b'),$,$,$,$);\n"),
     [](KpIfcFile& file) { put(file, 1, "MiddleNames", KpIfcVariant(KpIfcArray<KpAnsiString>{"a','b"})); },
     withRecords("#1=IFCPERSON($,$,$,('a'',''b'),$,$,$,$);\n")},
    {"NotTheTextOfFieldsThatStay", withRecords("#1=IFCPERSON(5,'A',$,$,$,$,#9,$);\n#2=IFCNOTHING ( 1 );\n"),
     [](KpIfcFile& file) { name(file, 1, "B"); },
     withRecords("#1=IFCPERSON(5,'B',$,$,$,$,#9,$);\n#2=IFCNOTHING ( 1 );\n")},
    {"AFieldWhoseTextIsForgotten", withRecords("#1=IFCPERSON(5,'A',$,$,$,$,$,$);\n"),
     [](KpIfcFile& file) {
         touchAll(file);
         file.model()->forgetSource(*file.model()->find(1).openObject(), 0);
     },
     withRecords("#1=IFCPERSON($,'A',$,$,$,$,$,$);\n")},
    {"NewOnesBehindTheLast", withRecords("#5" + kPerson + "\n  "),
     [](KpIfcFile& file) {
         person(file, 9);
         person(file, 2);
     },
     withRecords("#5" + kPerson + "\n#2" + kPerson + "\n#9" + kPerson + "\n  ")},
    {"NewOnesWhereTheLineGoesOn", "ISO-10303-21;HEADER;FILE_SCHEMA(('IFC2X3'));ENDSEC;DATA;#5" + kPerson + "ENDSEC;",
     [](KpIfcFile& file) { person(file); },
     "ISO-10303-21;HEADER;FILE_SCHEMA(('IFC2X3'));ENDSEC;DATA;#5" + kPerson + "\n#6" + kPerson + "\nENDSEC;"},
    {"LineEndsOfTheFile",
     "ISO-10303-21;\r\nHEADER;\r\nFILE_SCHEMA(('IFC2X3'));\r\nENDSEC;\r\nDATA;\r\n#5" + kPerson +
         "\r\nENDSEC;\r\nEND-ISO-10303-21;\r\n",
     [](KpIfcFile& file) { person(file); },
     "ISO-10303-21;\r\nHEADER;\r\nFILE_SCHEMA(('IFC2X3'));\r\nENDSEC;\r\nDATA;\r\n#5" + kPerson + "\r\n#6" + kPerson +
         "\r\nENDSEC;\r\nEND-ISO-10303-21;\r\n"},
    {"NewOnesBeforeACutRecord",
     "ISO-10303-21;\nHEADER;\nFILE_SCHEMA(('IFC2X3'));\nENDSEC;\nDATA;\n#5" + kPerson + "\n#6=IFCPER",
     [](KpIfcFile& file) { person(file, 7); },
     "ISO-10303-21;\nHEADER;\nFILE_SCHEMA(('IFC2X3'));\nENDSEC;\nDATA;\n#5" + kPerson + "\n#7" + kPerson +
         "\n#6=IFCPER"},
    {"NewOnesWhereThereIsNoData", kHeader + "END-ISO-10303-21;\n", [](KpIfcFile& file) { person(file); },
     kHeader + "DATA;\n#1" + kPerson + "\nENDSEC;\nEND-ISO-10303-21;\n"},
    {"OfSeveralRecordsTheOneThatCounts",
     withRecords("#1=IFCPERSON($,'A',$,$,$,$,$,$);\n#1=IFCPERSON($,'B',$,$,$,$,$,$);\n#1=IFCNOTHING();\n"),
     [](KpIfcFile& file) { name(file, 1, "C"); },
     withRecords("#1=IFCPERSON($,'A',$,$,$,$,$,$);\n#1=IFCPERSON($,'C',$,$,$,$,$,$);\n#1=IFCNOTHING();\n")},
    {"NothingOfAnErasedName",
     withRecords("#1=IFCPERSON($,'A',$,$,$,$,$,$);\n#2" + kPerson +
                 "\n#1=IFCPERSON($,'B',$,$,$,$,$,$);\n#1=IFCNOTHING();\n"),
     [](KpIfcFile& file) {
         const KpDbObjectId handle = file.model()->find(1);
         EXPECT_EQ(erase(*file.model(), {&handle, 1}).status, KP::eOk);
     },
     withRecords("#2" + kPerson + "\n")},
    {"ErasedOnesAndWhatNamesThemInText",
     withRecords("#1" + kPerson + "\n #2=IFCPERSON(#1,'A',$,$,$,$,$,$); /* x */\n#3=IFCNOTHING(#1);\n"),
     [](KpIfcFile& file) {
         const KpDbObjectId handle = file.model()->find(1);
         const KpIfcEraseResult refused = erase(*file.model(), {&handle, 1});
         EXPECT_EQ(refused.status, KP::eRefused);
         EXPECT_EQ(refused.references.size(), 2u);
         const KpIfcEraseResult dropped = erase(*file.model(), {&handle, 1}, KpIfcErasePolicy::dropReferences);
         EXPECT_EQ(dropped.changed.size(), 1u);
         EXPECT_EQ(dropped.stillNamed.size(), 1u);
     },
     withRecords(" #2=IFCPERSON($,'A',$,$,$,$,$,$); /* x */\n#3=IFCNOTHING(#1);\n")},
    {"NewOnesThatNothingRefersTo", withRecords("#1=IFCPOLYLINE((#3,#4));\n#2=IFCNOTHING(#7);\n"),
     [](KpIfcFile& file) { person(file); },
     withRecords("#1=IFCPOLYLINE((#3,#4));\n#2=IFCNOTHING(#7);\n#8" + kPerson + "\n")},
    {"WhatStandsBehindAParenthesis",
     withRecords("#1=IFCPERSON($,'A',$,$,$,$,(#3) junk,$);\n#2=IFCPERSON($,'A',$,$,$,$,(#3)/*)*/,$) /* :) */;\n"
                 "#3=IFCACTORROLE(.USERDEFINED.,'x',$);\n"),
     [](KpIfcFile& file) {
         touchAll(file);
         file.model()->forgetSource(*file.model()->find(1).openObject(), 6);
     },
     withRecords("#1=IFCPERSON($,'A',$,$,$,$,(#3),$);\n#2=IFCPERSON($,'A',$,$,$,$,(#3)/*)*/,$) /* :) */;\n"
                 "#3=IFCACTORROLE(.USERDEFINED.,'x',$);\n")},
    {"ARecordWithoutSemicolon", withRecords("#1=IFCPERSON($,'A',$,$,$,$,$,$)\n#2=IFCPERSON($,'B',$,$,$,$,$,$);\n"),
     [](KpIfcFile& file) { name(file, 1, "C"); },
     withRecords("#1=IFCPERSON($,'C',$,$,$,$,$,$);\n#2=IFCPERSON($,'B',$,$,$,$,$,$);\n")},
    {"NoEntryOfAnotherSection",
     replaced(withRecords("#1=IFCPERSON($,'A',$,$,$,$,$,$);\n"), "DATA;\n",
              "REFERENCE;\n#1=<other.ifc>;\nENDSEC;\nDATA;\n"),
     [](KpIfcFile& file) { name(file, 1, "C"); },
     replaced(withRecords("#1=IFCPERSON($,'C',$,$,$,$,$,$);\n"), "DATA;\n",
              "REFERENCE;\n#1=<other.ifc>;\nENDSEC;\nDATA;\n")},
    {"AHeaderField", kHeader + kEmptyData,
     [](KpIfcFile& file) { file.header().setTexts("FILE_DESCRIPTION", 0, {"new"}); },
     replaced(kHeader, "FILE_DESCRIPTION( ('old') ,'2;1')", "FILE_DESCRIPTION(('new'),'2;1')") + kEmptyData},
    {"NoHeaderFieldThatSaysTheSame", kHeader + kEmptyData,
     [](KpIfcFile& file) { file.header().setTexts("FILE_DESCRIPTION", 0, {"old"}); }, kHeader + kEmptyData},
    {"NoHeaderRecordThatCameBack", kHeader + kEmptyData,
     [](KpIfcFile& file) {
         const KpIfcHeaderRecord name = *file.header().find("FILE_NAME");
         file.header().remove("FILE_NAME");
         file.header().set(name);
     },
     kHeader + kEmptyData},
    {"AllThatAnotherHeaderHasOtherwise", kHeader + kEmptyData,
     [](KpIfcFile& file) { file.header() = opened(withRecords("")).header(); },
     replaced(replaced(replaced(kHeader, "FILE_DESCRIPTION( ('old') ,'2;1')",
                                "FILE_DESCRIPTION(('ViewDefinition [x]'),'2;1')"),
                       "FILE_NAME('n',$,(''),(''),'','','')",
                       "FILE_NAME('a', '2020-01-01T00:00:00',(''),(''),'','','')"),
              "X(1);\n", "") +
         kEmptyData},
    {"HeaderRecords", kHeader + kEmptyData,
     [](KpIfcFile& file) {
         file.header().remove("X");
         file.header().set({"Y", {KpStepValue::string("y")}});
     },
     replaced(kHeader, "X(1);\n", "Y('y');\n") + kEmptyData},
};

INSTANTIATE_TEST_SUITE_P(Cases, RewritingTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.what); });

/// A file on disk with some thousand records, in blocks of its own size.
class RewritingFiles : public testing::Test {
protected:
    void SetUp() override { write(content()); }
    void TearDown() override {
        fs::remove(m_path);
        fs::remove(m_target);
    }

    static std::string content() {
        std::string records;
        for (int i = 1; i <= 20'000; ++i) {
            records +=
                '#' + std::to_string(i * 7 % 20'011) + "= IFCPERSON($,'" + std::to_string(i) + "',$,$,$,$,$,$);\n";
        }
        return stepFile(records);
    }
    void write(const std::string& text) const { std::ofstream(m_path, std::ios::binary) << text; }

    const fs::path m_path = temporaryPath("source.ifc");
    const fs::path m_target = temporaryPath("target.ifc");
};

TEST_F(RewritingFiles, MayBeReplacedByWhatWasReadFromThem) {
    KpIfcFile file;
    ASSERT_EQ(file.open(m_path.string()), KP::eOk) << file.error();
    std::string expected = content();
    for (const std::uint64_t instance : {7u, 20'010u, 9'999u}) {
        const std::string start = "\n#" + std::to_string(instance) + "= ";
        const std::size_t place = expected.find(start) + 1;
        name(file, instance, "new");
        expected.replace(place, expected.find('\n', place) - place,
                         "#" + std::to_string(instance) + "=IFCPERSON($,'new',$,$,$,$,$,$);");
        ASSERT_EQ(file.save(m_path.string()), KP::eOk) << file.error();
        EXPECT_TRUE(contentOf(m_path) == expected) << instance;
    }
}

TEST_F(RewritingFiles, ThatOthersChangedAreNotMixedWithWhatWasRead) {
    const std::string whole = content();
    std::string changed = whole;
    changed[whole.size() / 2] ^= 1;
    for (const std::string& text : {changed, whole.substr(0, whole.size() - 100), whole + " ", std::string()}) {
        write(whole);
        std::ofstream(m_target) << "precious";
        KpIfcFile file;
        ASSERT_EQ(file.open(m_path.string()), KP::eOk) << file.error();
        write(text); // the same file with other content
        name(file, 7, "new");
        EXPECT_EQ(file.save(m_target.string()), KP::eNotAvailable);
        EXPECT_THAT(file.error(), testing::HasSubstr("normalised"));
        EXPECT_EQ(contentOf(m_target), "precious");
        EXPECT_EQ(file.save(m_target.string(), {.normalise = true}), KP::eOk) << file.error();
        EXPECT_EQ(opened(contentOf(m_target)).model()->count(), 20'000u);
    }
}

TEST_F(RewritingFiles, ThatOthersReplacedAreNotReplacedInTheirTurn) {
    KpIfcFile file;
    ASSERT_EQ(file.open(m_path.string()), KP::eOk) << file.error();
    write("another's work");
    fs::rename(m_path, m_target);
    fs::copy_file(m_target, m_path);
    for (const bool normalise : {false, true}) {
        EXPECT_EQ(file.save(m_path.string(), {.normalise = normalise}), KP::eNotAvailable);
        EXPECT_THAT(file.error(), testing::HasSubstr("another program"));
        EXPECT_EQ(contentOf(m_path), "another's work");
    }
}

TEST_F(RewritingFiles, ThatWereReplacedOrRemovedAreStillThere) {
    KpIfcFile file;
    ASSERT_EQ(file.open(m_path.string()), KP::eOk) << file.error();
    fs::remove(m_path);
    write("another");
    EXPECT_TRUE(rewritten(file) == content());
}

} // namespace
