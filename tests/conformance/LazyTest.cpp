#include "LazyComparison.h"
#include "StepFiles.h"

#include <KpIfcCore/KpIfcChangeGroup.h>
#include <KpIfcCore/KpIfcCheck.h>
#include <KpIfcCore/KpIfcErase.h>
#include <KpIfcCore/KpIfcException.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>

namespace fs = std::filesystem;
using namespace KP_SDAI;

namespace {

constexpr const char* kWall = "IFCWALL('0000000000000000000001',$,'W',$,$,$,$,$)";

struct Records {
    const char* text;
    bool isLazy;
};

const Records kRecords[] = {
    {"", true},
    {"#1=IFCCARTESIANPOINT((1.,2.));", true},
    {"#2=IFCPOLYLINE((#1,#3));\n#3=IFCCARTESIANPOINT((1.,2.));\n#1=IFCCARTESIANPOINT((0.,0.));\n", true},
    {"#1 = IFCPOLYLINE ( ( #2 , #3 ) ) ;\n/* a 'comment; */ #2=IFCCARTESIANPOINT((1.,\n\t2.));#3=IFCDIRECTION(());",
     true},
    // Comments that look like records: several threads cannot read them.
    {"#1=IFCDIRECTION((1.));\n/* a;\n#2=IFCPOLYLINE((#1));\n#3=IFCDIRECTION((1.));\n*/\n#2=IFCDIRECTION((2.));\n"
     "#3=IFCPERSON((7),$,$,$,$,$,$,$);\n",
     true},
    // Texts.
    {"#1=IFCPERSON('it''s; a (name','/* none */',$,('a=b','c\\\\'),$,$,$,$);", true},
    {"#1=IFCPERSON('\\S\\'',$,$,$,$,$,$,$);\n#2=IFCPERSON('\\S\\''',$,$,$,$,$,$,$);\n", false},
    {"#1=IFCPERSON('two\nlines',$,$,$,$,$,$,$);\n#2=IFCPERSON('D\\X\\F6e',$,$,$,$,$,$,$);", true},
    {"#1=IFCPERSON('two\n#2=IFCPERSON(',$,$,$,$,$,$,$);", false},
    {"#1=IFCPERSON(/* a */'b'/* c */,$,$,$,$,$,$,$)/* d */;", true},
    {"#1=IFCPERSON('open,$,$,$,$,$,$,$);", false},
    // Values that their members cannot hold, references to nothing, of wrong entities, to what comes later.
    {"#1=IFCPOLYLINE((#1,#2,#9,#2));\n#2=IFCPERSON(1,2,3,(4),$,$,$,$);\n#3=IFCPOLYLINE((#2,#3,#4));\n#4=IFCPERSON(#9);",
     true},
    {"#1=IFCPRESENTATIONSTYLEASSIGNMENT((IFCNULLSTYLE(.NULL.),#2,#3,#4));\n#2=IFCCURVESTYLE('t',$,$,$);\n"
     "#3=IFCCARTESIANPOINT((1.));\n",
     true},
    {"#1=IFCBOOLEANRESULT(.UNION.,#2,#2);\n#2=IFCBOOLEANRESULT(.UNION.,#3,#1);\n#3=IFCBOOLEANRESULT(.UNION.,#2,#9);\n",
     true},
    {"#1=IFCPERSON();\n#2=IFCCARTESIANPOINT(*);\n#3=IFCDIRECTION((1.,,2.));\n", false},
    {"#1=IFCPERSON('a','b','c',$,$,$,$,$,'too many',#1);\n#2=IFCOBJECTDEFINITION('x',$,$,$);\n", true},
    {"#1=IFCREPRESENTATIONMAP(#2,#2);\n#2=IFCAXIS2PLACEMENT2D(#3,$);\n#3=IFCREPRESENTATIONMAP(#1,$);\n", true},
    // GlobalIds: equal ones, such that are none, such that are only found when they are decoded.
    {"#1=IFCWALL('0000000000000000000001',$,$,$,$,$,$,$);\n#2=IFCWALL('0000000000000000000001',$,$,$,$,$,$,$);\n"
     "#3=IFCWALL('00000000000000000000\\X\\30\\X\\31',$,$,$,$,$,$,$);\n#4=IFCWALL($,$,$,$,$,$,$,$);\n"
     "#5=IFCWALL('short',$,$,$,$,$,$,$);\n#6=IFCWALL(7,$,$,$,$,$,$,$);\n#7=IFCWALL( "
     "'0000000000000000000001',$,$,$,$,$,$,$);\n"
     "#8=IFCWALL('0000000000000000000001with more',$,$,$,$,$,$,$);\n",
     true},
    // What is out of the ordinary.
    {"#1=IFCNOTHING(1);\n#2=IFCPERSON($,$,$,$,$,$,$,$);", false},
    {"#1=IFCDIRECTION((1.));\n#1=IFCDIRECTION((2.));\n", false},
    {"#1=IFCDIRECTION((1.));\n#3000000000=IFCDIRECTION((2.));\n", false},
    {"#1=IFCDIRECTION((1.)),(2.);\n", false},
    {"#1=IFCDIRECTION((1.)\n#2=IFCDIRECTION((2.));\n", false},
    {"#1=IFCDIRECTION((1.))\n#2=IFCDIRECTION((2.));\n", false},
    {"#1=IFCDIRECTION((1.)) x;\n", false},
    {"#1=IFCPERSON($,$,$,$,$,$, ,$);\n", false},
    {"#1=IFCPERSON(,$,$,$,$,$,$,$);\n", false},
    {"#1=(IFCNAMEDUNIT(*,.LENGTHUNIT.)IFCSIUNIT($,.METRE.));\n", false},
    {"#0=IFCDIRECTION((1.));\n", false},
    {"#1=ifcdirection((1.));\n", false},
    {"ENDSEC;\nDATA;\n#1=IFCDIRECTION((1.));", false},
    {"#1=IFCDIRECTION((1.));\nENDSEC;\nEND-ISO-10303-21;\nbehind", false},
};

TEST(LazyReading, GivesWhatFullReadingGives) {
    for (const Records& records : kRecords) {
        SCOPED_TRACE(records.text);
        for (unsigned seed = 0; seed < 4; ++seed) {
            EXPECT_EQ(compareWithFullReading(stepFile(records.text), seed), records.isLazy);
        }
    }
}

TEST(LazyReading, GivesWhatFullReadingGivesOfTheCases) {
    std::size_t lazy = 0;
    for (const fs::directory_entry& entry :
         fs::recursive_directory_iterator(KP_SOURCE_DIR "/tests/conformance/cases")) {
        if (entry.path().extension() != ".ifc") {
            continue;
        }
        SCOPED_TRACE(entry.path());
        lazy += compareWithFullReading(contentOf(entry.path()), 1) ? 1 : 0;
    }
    EXPECT_GT(lazy, 20u);
}

/// Blocks and pieces end anywhere in a record, and anything may stand there.
TEST(LazyReading, GivesWhatFullReadingGivesOfDamagedFiles) {
    const std::string sound = "#1=IFCPERSON('it''s; a (name',$, $,('a=b','\\X2\\00F6\\X0\\'),$,\n$,$,$);\n"
                              "#2=IFCPOLYLINE((#3,#4));#3=IFCCARTESIANPOINT((1.,2.,3.));/* c */\n"
                              "#4 = IFCCARTESIANPOINT((0.,0.));\n#5=IFCPROPERTYSINGLEVALUE('P',$,IFCLABEL('x'),#6);\n"
                              "#6=IFCBOOLEANRESULT(.UNION.,#6,#5);\n#7=" +
                              std::string(kWall) + ";\n";
    const KpIfcFile loaded = openedRecords(""); // keeps the module
    std::mt19937 random(7);
    constexpr std::string_view kCharacters = "'(),;/*\\=#$ \n1AS\"";
    std::size_t lazy = 0;
    for (unsigned i = 0; i < 3000 && !testing::Test::HasFailure(); ++i) {
        std::string records = sound;
        for (std::size_t left = 1 + random() % 3; left; --left) {
            const std::size_t at = random() % records.size();
            switch (random() % 3) {
            case 0: records[at] = kCharacters[random() % kCharacters.size()]; break;
            case 1: records.insert(at, 1, kCharacters[random() % kCharacters.size()]); break;
            default: records.erase(at, 1 + random() % 3);
            }
        }
        SCOPED_TRACE(records);
        lazy += compareWithFullReading(stepFile(records), i) ? 1 : 0;
    }
    EXPECT_GT(lazy, 100u);
}

std::string many(const char* coordinate) {
    std::string records;
    for (int i = 1; i <= 20'000; ++i) {
        records += '#' + std::to_string(i) + "=IFCCARTESIANPOINT((" + coordinate + ",1.));\n";
    }
    return stepFile(records + "#20001=" + kWall +
                    ";\n#20002=IFCRELAGGREGATES('0000000000000000000002',$,$,$,#20001,(#20001));\n");
}

/// Whatever needs all instances has them read, and gives what it gives after a full reading.
TEST(LazyReading, IsCompletedByWhatNeedsAll) {
    const std::pair<const char*, std::function<std::string(KpIfcFile&)>> operations[] = {
        {"inverse",
         [](KpIfcFile& file) {
             KpIfcArray<KpDbObjectId> referrers = file.model()->referrers(file.model()->find(20001));
             return std::to_string(referrers.size());
         }},
        {"edit",
         [](KpIfcFile& file) {
             KpIfcEntityBase* wall = file.model()->find(20001).openObject();
             wall->putAttr("Name", KpIfcVariant("other"));
             return rewritten(file);
         }},
        {"create",
         [](KpIfcFile& file) { return std::to_string(file.model()->create("IfcWall")->instanceName()) + saved(file); }},
        {"erase",
         [](KpIfcFile& file) {
             const KpDbObjectId wall = file.model()->find(20001);
             erase(*file.model(), {&wall, 1}, KpIfcErasePolicy::cascade);
             return rewritten(file);
         }},
        {"group",
         [](KpIfcFile& file) {
             {
                 KpIfcChangeGroup group(*file.model());
                 file.model()->find(20001).openObject()->putAttr("Name", KpIfcVariant("other"));
             }
             return rewritten(file);
         }},
        {"check", [](KpIfcFile& file) { return findings(checkFile(file)); }},
        {"save", [](KpIfcFile& file) { return saved(file); }},
        {"many touches",
         [](KpIfcFile& file) {
             std::uint64_t sum = 0;
             for (const KpIfcEntityBase* instance : file.model()->instances()) {
                 sum += instance->instanceName();
             }
             return std::to_string(sum);
         }},
    };
    const std::string content = many("1.");
    for (const auto& [name, operation] : operations) {
        SCOPED_TRACE(name);
        KpIfcFile full = opened(content);
        KpIfcFile lazy;
        ASSERT_EQ(lazy.openMemory(content.data(), content.size(), "memory", {.lazy = true}), KP::eOk);
        ASSERT_NE(lazy.model()->find(20001).openObject(), nullptr);
        EXPECT_FALSE(lazy.model()->isWhole());
        EXPECT_EQ(operation(lazy), operation(full));
        EXPECT_TRUE(lazy.model()->isWhole());
        EXPECT_TRUE(lazy.report().isComplete());
    }
}

/// A file that another program has written to gives no more records, and what was read stays good.
TEST(LazyReading, TellsOfAFileThatHasChanged) {
    const fs::path path = temporaryPath("lazy.ifc");
    std::ofstream(path, std::ios::binary) << many("1.");
    KpIfcFile file;
    ASSERT_EQ(file.open(path.string(), {.lazy = true}), KP::eOk) << file.error();
    KpIfcModel& model = *file.model();
    const KpIfcEntityBase* const first = model.find(1).openObject();
    ASSERT_FALSE(model.isWhole());
    std::ofstream(path, std::ios::binary) << many("2.");
    fs::last_write_time(path, fs::last_write_time(path) + std::chrono::seconds(1));

    for (int i = 0; i < 2; ++i) {
        try {
            model.find(15'000).openObject();
            ADD_FAILURE() << "was read";
        } catch (const KpIfcException& failure) {
            EXPECT_EQ(failure.code(), 1000u);
            EXPECT_NE(std::string(failure.where()).find("another program has changed"), std::string::npos);
        }
        EXPECT_EQ(model.find(1).openObject(), first);
        EXPECT_EQ(file.readAll(), KP::eNotAvailable);
        EXPECT_NE(file.error().find("another program has changed"), std::string::npos) << file.error();
        EXPECT_THROW(model.create("IfcWall"), KpIfcException);
        EXPECT_EQ(file.save(path.string() + "2"), KP::eNotAvailable);
        EXPECT_EQ(model.count(), 20'002u);
    }
    fs::remove(path);
}

/// One that was replaced or deleted is still there for who has it open.
TEST(LazyReading, OutlivesTheNameOfTheFile) {
    const fs::path path = temporaryPath("lazy.ifc");
    std::ofstream(path, std::ios::binary) << many("1.");
    KpIfcFile file;
    ASSERT_EQ(file.open(path.string(), {.lazy = true}), KP::eOk) << file.error();
    fs::remove(path);
    EXPECT_NE(file.model()->find(15'000).openObject(), nullptr);
    EXPECT_EQ(recordsOf(saved(file)), recordsOf(many("1.")));
}

/// Stopped reading leaves a lazily opened model as it was.
TEST(LazyReading, CanBeStopped) {
    const std::string content = many("1.");
    KpIfcFile file;
    ASSERT_EQ(file.openMemory(content.data(), content.size(), "memory", {.lazy = true}), KP::eOk);
    const KpIfcEntityBase* const first = file.model()->find(1).openObject();
    file.progress([](const KpIfcProgress& progress) { return progress.stage != KpIfcStage::inverses; });
    EXPECT_EQ(file.readAll(), KP::eCancelled);
    EXPECT_FALSE(file.model()->isWhole());
    EXPECT_FALSE(file.report().isComplete());
    EXPECT_EQ(file.model()->find(1).openObject(), first);
    EXPECT_EQ(file.model()->count(), 20'002u);
    file.model()->commit(); // is no operation of the file: nobody can stop it
    EXPECT_TRUE(file.model()->isWhole());
    EXPECT_EQ(file.model()->find(1).openObject(), first);
    EXPECT_EQ(recordsOf(saved(file)), recordsOf(content));
}

} // namespace
