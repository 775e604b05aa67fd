#include "StepFiles.h"

#include <IFC2X3/IfcPerson.h>
#include <IFC2X3/IfcPropertySingleValue.h>
#include <KpIfcCore/KpIfcSettings.h>

#include <gtest/gtest.h>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

constexpr const char* kRecords = "#1=IFCPERSON('\\S\\Drger it''s \\\\','\\X2\\65E5\\X0\\',$,$,$,$,$,$);\n"
                                 "#2=IFCPROPERTYSINGLEVALUE('caf\xE9',$,IFCLABEL('\\X\\E9'),$);\n";

class TextFormTest : public testing::Test {
protected:
    static KpIfcFile openedAs(bool utf8) {
        settings().set_useUTF8(utf8);
        KpIfcFile file = opened(stepFile(kRecords));
        settings().set_useUTF8(true);
        return file;
    }
    void TearDown() override { settings().set_useUTF8(true); }
};

TEST_F(TextFormTest, MembersHoldUtf8OrWhatTheFileHas) {
    const KpIfcFile decoded = openedAs(true);
    const KpIfcFile encoded = openedAs(false);
    EXPECT_TRUE(decoded.model()->textIsUtf8());
    EXPECT_FALSE(encoded.model()->textIsUtf8());
    const auto id = [](const KpIfcFile& file) { return as<IfcPerson>(file.model()->find(1))->getId().view(); };
    EXPECT_EQ(id(decoded), "\xC3\x84rger it's \\");
    EXPECT_EQ(id(encoded), "\\S\\Drger it''s \\\\");
    const auto value = [](const KpIfcFile& file) {
        return as<IfcPropertySingleValue>(file.model()->find(2))->getNominalValue().getString()->view();
    };
    EXPECT_EQ(value(decoded), "\xC3\xA9");
    EXPECT_EQ(value(encoded), "\\X\\E9");
}

TEST_F(TextFormTest, AModelIsWrittenInTheFormThatItWasReadIn) {
    for (const bool setting : {true, false}) {
        KpIfcFile encoded = openedAs(false);
        KpIfcFile decoded = openedAs(true);
        settings().set_useUTF8(setting); // of no account any more
        EXPECT_EQ(recordsOf(saved(encoded)), kRecords);
        EXPECT_EQ(recordsOf(saved(decoded)),
                  "#1=IFCPERSON('\\X2\\00C4\\X0\\rger it''s \\\\','\\X2\\65E5\\X0\\',$,$,$,$,$,$);\n"
                  "#2=IFCPROPERTYSINGLEVALUE('caf\\X2\\00E9\\X0\\',$,IFCLABEL('\\X2\\00E9\\X0\\'),$);\n");
    }
}

/// Whatever a program stores in a model that keeps texts encoded, the file stays a file.
TEST_F(TextFormTest, TextsThatAreNotEncodedAreEncodedWhenWritten) {
    for (const char* text : {"it's", "'", "\\", "a\\", "''' ", "\\X2\\00E9", "\\S\\", "x\\S\\'", "');#9=IFCPERSON('"}) {
        KpIfcFile file = openedAs(false);
        as<IfcPerson>(file.model()->find(1))->setId(text);
        KpIfcFile again = opened(saved(file));
        EXPECT_EQ(again.model()->count(), 2u) << text;
        EXPECT_EQ(again.model()->keptRecordCount(), 0u) << text;
        EXPECT_EQ(as<IfcPerson>(again.model()->find(1))->getFamilyName().view(), "\xE6\x97\xA5") << text;
    }
}

TEST_F(TextFormTest, NewModelsTakeTheSettingOfTheirTime) {
    settings().set_useUTF8(false);
    KpIfcFile file;
    ASSERT_EQ(file.create("IFC2X3"), KP::eOk);
    settings().set_useUTF8(true);
    EXPECT_FALSE(file.model()->textIsUtf8());
    file.model()->create<IfcPerson>()->setId("\\X\\E9");
    KpIfcFile again = opened(saved(file));
    EXPECT_EQ(as<IfcPerson>(again.model()->find(1))->getId().view(), "\xC3\xA9");
}

} // namespace
