#include "Archives.h"
#include "StepFiles.h"

#include <gtest/gtest.h>

#include <vector>

using namespace KP_SDAI;

namespace {

constexpr std::string_view kHead = "ISO-10303-21;\nHEADER;\n/* it's */FILE_DESCRIPTION((''),'2;1');\n"
                                   "FILE_NAME('a','',(''),(''),'','','');\nFILE_SCHEMA(('IFC2X3'));\nENDSEC;\nDATA;\n";

/// Records of many kinds; each is complete where its ';' is.
const std::vector<std::string> kRecords = {
    "#1=IFCCARTESIANPOINT((0.,-1.5E-10,2));\n",
    "#2=IFCPERSON('a;b','it''s \\S\\' \\X2\\00E9\\X0\\',$,('x',\n'y'),$,$,$,$);\n",
    "/* #99=IFCWALL(); 'open */ #3 = IFCPROPERTYSINGLEVALUE('v',$,IFCCOMPLEXNUMBER((1.,2.)),$) ;\n",
    "#4=IFCPOLYLINE((#1,#20,#1));\n",
    "#5=IFCNOTHING(1,'(;',((#1)));\n",
    "#6=IFCSIUNIT(*,.LENGTHUNIT.,.MILLIX.,.METRE.);\n",
    "#7=(IFCNAMEDUNIT(*,.LENGTHUNIT.)IFCSIUNIT($,.METRE.));\n",
    "#8=IFCPIXELTEXTURE(.T.,.F.,.TEXTURE.,$,1,2,3,(\"31FF\",\"0\"));\n",
    "#20=IFCCARTESIANPOINT((2147483648.,0.));\n",
};

/// A file that was cut before it was compressed says the same.
void expectTheSameCompressed(const std::string& cut, const KpIfcFile& plain, KP::ErrorStatus status) {
    const std::string bytes = gzipped(cut);
    KpIfcFile file;
    EXPECT_EQ(file.openMemory(bytes.data(), bytes.size()), status);
    EXPECT_EQ(file.error(), plain.error());
    EXPECT_EQ(findings(file.report()), findings(plain.report()));
    if (status == KP::eOk) {
        EXPECT_EQ(file.model()->count(), plain.model()->count());
        EXPECT_EQ(file.model()->keptRecordCount(), plain.model()->keptRecordCount());
    }
}

TEST(Truncation, EveryCompleteInstanceIsReadAndTheStatusSaysSo) {
    const KpIfcFile keepsTheModuleLoaded = opened(stepFile(""));
    std::string whole(kHead);
    std::vector<std::size_t> ends; // offsets behind the records' semicolons
    for (const std::string& record : kRecords) {
        whole += record;
        ends.push_back(whole.size() - 1);
    }
    whole += "ENDSEC;\nEND-ISO-10303-21;\n";
    const std::size_t schemaEnd = kHead.find("ENDSEC;") - 1;

    for (std::size_t length = 0; length < whole.size() - 1; ++length) {
        SCOPED_TRACE("cut behind ..." + whole.substr(length < 30 ? 0 : length - 30, length < 30 ? length : 30));
        const std::string cut = whole.substr(0, length);
        KpIfcFile file;
        const KP::ErrorStatus status = file.openMemory(cut.data(), cut.size());
        expectTheSameCompressed(cut, file, status);
        if (status != KP::eOk) {
            EXPECT_LT(length, schemaEnd);
            EXPECT_NE(file.error(), "");
            EXPECT_EQ(file.model(), nullptr);
            continue;
        }
        ASSERT_GE(length, schemaEnd);
        EXPECT_TRUE(file.report().isTruncated());
        EXPECT_FALSE(file.report().isClean());
        std::size_t complete = 0;
        while (complete < ends.size() && ends[complete] <= length) {
            ++complete;
        }
        const KpIfcModel& model = *file.model();
        for (std::size_t i = 0; i < complete; ++i) {
            const std::uint64_t name = i + 1 == kRecords.size() ? 20 : i + 1;
            EXPECT_TRUE(model.find(name).isDefined()) << name;
            EXPECT_EQ(model.find(name).openObject() == nullptr, name == 5 || name == 7) << name;
        }
        EXPECT_EQ(model.count() + model.keptRecordCount(), complete);

        EXPECT_EQ(rewritten(file), cut);
        touchAll(file);
        EXPECT_EQ(rewritten(file), cut);

        KpIfcFile again = opened(saved(file));
        EXPECT_EQ(again.model()->count(), model.count()) << saved(file);
        EXPECT_EQ(again.model()->keptRecordCount(), model.keptRecordCount()) << saved(file);
        if (testing::Test::HasFailure()) {
            return;
        }
    }
    for (const std::string& complete : {whole.substr(0, whole.size() - 1), whole, whole + " \t\r\n \n"}) {
        EXPECT_FALSE(opened(complete).report().isTruncated()) << complete.substr(whole.size() - 20);
    }
}

/// The same from a file on disk, where the bytes come through another source.
TEST(Truncation, OfFilesOnDisk) {
    const std::filesystem::path path = temporaryPath("truncated.ifc");
    const std::string whole = stepFile(kRecords[0] + kRecords[1]);
    std::FILE* out = std::fopen(path.string().c_str(), "wb");
    ASSERT_TRUE(out);
    std::fwrite(whole.data(), 1, whole.size() - 40, out);
    std::fclose(out);
    KpIfcFile file;
    EXPECT_EQ(file.open(path.string()), KP::eOk) << file.error();
    EXPECT_TRUE(file.report().isTruncated());
    EXPECT_EQ(file.model()->count(), 1u);
    std::filesystem::remove(path);
    KpIfcFile missing;
    EXPECT_EQ(missing.open(path.string()), KP::eNotAvailable);
    EXPECT_NE(missing.error().find(path.string()), std::string::npos) << missing.error();
    EXPECT_EQ(missing.model(), nullptr);
}

} // namespace
