#include "Runner.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcCheck.h>
#include <KpIfcCore/KpIfcModule.h>
#include <MINI/MiniArc.h>
#include <MINI/MiniOwner.h>
#include <MINI/MiniPoint.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

using namespace KP_SDAI;
using namespace MINI;
using testing::HasSubstr;

namespace {

const std::string kModels = "KPIFC_MODULE_PATH=" + quoted(KP_MODULES) + ' ';

constexpr const char* kFile =
    "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
    "FILE_NAME('','2026-01-02T03:04:05',(''),(''),'','','');\nFILE_SCHEMA(('MINI'));\n"
    "ENDSEC;\nDATA;\n"
    "#1=MINIPOINT((0.,1.));\n#2=MINIPOINT((2.,3.));\n"
    "#3=MINIARC('0000000000000000000001','arc',(#1,#2),MINICOUNT(7),.GREEN.,*,\"0A\",(1,2,3),5.);\n"
    "#4=MINIOWNER(#3,(MINILABEL('a'),#2,MINICOLOUR(.RED.)));\n"
    "ENDSEC;\nEND-ISO-10303-21;\n";

KpIfcFile opened(const KpIfcOpenOptions& options = {}) {
    setenv("KPIFC_MODULE_PATH", KP_MODULES, 1);
    KpIfcFile file;
    EXPECT_EQ(file.openMemory(kFile, std::string_view(kFile).size(), "mini", options), KP::eOk) << file.error();
    return file;
}

TEST(AnotherSchema, IsLoadedBesideIfc2x3) {
    KpIfcFile house;
    ASSERT_EQ(house.open(KP_SOURCE_DIR "/examples/small_house.ifc"), KP::eOk) << house.error();
    KpIfcFile file = opened();
    ASSERT_TRUE(file.model());
    EXPECT_TRUE(file.report().entries().empty()) << file.report().entries().front().text();
    EXPECT_EQ(file.model()->schema().entities().entries().size(), 5U);
    EXPECT_TRUE(file.model()->schema().unresolvedNames().empty());
    EXPECT_EQ(house.model()->schema().findEntity("MiniPoint"), nullptr);
    EXPECT_TRUE(checkModel(*file.model()).entries().empty()) << checkModel(*file.model()).entries().front().text();
}

TEST(AnotherSchema, HasClassesAndAccessByName) {
    KpIfcFile file = opened();
    KpIfcModel& model = *file.model();
    MiniArc* arc = as<MiniArc>(model.find(3));
    ASSERT_TRUE(arc);
    EXPECT_EQ(std::as_const(*arc).getPoints().size(), 2U);
    EXPECT_TRUE(arc->getValue().isMiniCount());
    EXPECT_EQ(arc->getColour(), kMiniColour_GREEN);
    KpIfcVariant value;
    double radius = 0;
    EXPECT_TRUE(arc->getAttr("Radius", value) && value.get(radius));
    EXPECT_EQ(radius, 5);

    KpIfcArray<KpDbObjectId> arcs;
    as<MiniPoint>(model.find(2))->getInvArcsOf(arcs);
    EXPECT_EQ(arcs.size(), 1U);
    arc->setPoints({model.find(1)});
    as<MiniPoint>(model.find(2))->getInvArcsOf(arcs);
    EXPECT_TRUE(arcs.isEmpty());
}

TEST(AnotherSchema, IsWrittenAsItWasRead) {
    for (const bool isNormalised : {false, true}) {
        KpIfcFile file = opened({.lazy = !isNormalised});
        std::string out;
        KpIfcSaveOptions options;
        options.normalise = isNormalised;
        ASSERT_EQ(file.saveToMemory(out, options), KP::eOk) << file.error();
        EXPECT_THAT(out, HasSubstr("#3=MINIARC('0000000000000000000001','arc',(#1,#2),MINICOUNT(7),.GREEN.,*,\"0A\","
                                   "(1,2,3),5.);\n"
                                   "#4=MINIOWNER(#3,(MINILABEL('a'),#2,MINICOLOUR(.RED.)));\n"));
    }
}

/// The command line knows no schema of its own.
TEST(AnotherSchema, IsUnderstoodByTheCommandLine) {
    static const struct {
        std::string arguments;
        int exitCode;
        std::string out; ///< a part of it
    } kCases[] = {
        {"info a.ifc", 0, "MINI"},
        {"check a.ifc", 0, ""},
        {"dump --inverse a.ifc", 0, "\"ArcsOf\""},
        {"tree a.ifc", 0, ""},
        {"show a.ifc '#2'", 0, "MiniOwner"},
        {"get a.ifc '#3.Colour' '#3.Texture'", 0, ".GREEN.\n\"0A\"\n"},
        {"set a.ifc '#3.Colour=.RED.' '#3.Texture=\"2B\"' -o -", 0, "MINICOUNT(7),.RED.,*,\"2B\","},
        {"new a.ifc MiniPoint 'Coordinates=(1.)' -o -", 0, "=MINIPOINT((1.));"},
        {"erase a.ifc '#4' --policy cascade -o -", 0, "DATA;\nENDSEC;"},
        {"query a.ifc 'MiniPath[Radius > 4]/Points' --count", 0, "2"},
        {"diff a.ifc a.ifc", 0, ""},
        {"props a.ifc MiniPath", 2, ""},
        {"extract a.ifc '#3' -o -", 0, "#3=MINIARC("},
        {"report a.ifc -o -", 0, "<html"},
        {"schema MiniArc --schema MINI", 0, "MiniPositiveLength"},
    };
    const WorkFolder folder;
    folder.write("a.ifc", kFile);
    for (const auto& [arguments, exitCode, out] : kCases) {
        const Outcome outcome = folder.run(kModels + "kpifc " + arguments);
        EXPECT_EQ(outcome.exitCode, exitCode) << arguments << '\n' << outcome.out << outcome.err;
        EXPECT_THAT(outcome.out, HasSubstr(out)) << arguments;
    }
}

} // namespace
