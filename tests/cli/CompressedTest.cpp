#include "Runner.h"
#include "SmallModel.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// A folder with a model, and the same compressed by another program.
class CompressedTest : public testing::Test {
protected:
    CompressedTest() {
        m_folder.write("small.ifc", smallModel());
        const Outcome made = m_folder.run("python3 -c \"import gzip, zipfile\n"
                                          "text = open('small.ifc', 'rb').read()\n"
                                          "gzip.open('small.ifc.gz', 'wb').write(text)\n"
                                          "zipfile.ZipFile('small.ifczip', 'w', zipfile.ZIP_DEFLATED)"
                                          ".writestr('inside.ifc', text)\"");
        EXPECT_EQ(made.exitCode, 0) << made.err;
    }

    WorkFolder m_folder;
};

TEST_F(CompressedTest, EveryCommandReadsThem) {
    for (const std::string command : {"dump FILE", "tree FILE", "show FILE '#1' --json", "get FILE '#1'",
                                      "props FILE IfcSite", "set FILE '#4.Coordinates=(1.,2.)' -o /dev/stdout"}) {
        const auto run = [&](const std::string& file) {
            std::string line = command;
            return m_folder.run("kpifc " + line.replace(line.find("FILE"), 4, file));
        };
        const Outcome plain = run("small.ifc");
        EXPECT_EQ(plain.exitCode, 0) << command << ": " << plain.err;
        EXPECT_NE(plain.out, "") << command;
        for (const std::string file : {"small.ifc.gz", "small.ifczip"}) {
            const Outcome outcome = run(file);
            EXPECT_EQ(outcome.exitCode, 0) << command << ", " << file << ": " << outcome.err;
            EXPECT_EQ(outcome.out, plain.out) << command << ", " << file;
        }
    }
}

TEST_F(CompressedTest, GoesThroughPipes) {
    const std::string line = "cat small.ifczip | kpifc convert /dev/stdin -o /dev/stdout";
    EXPECT_EQ(m_folder.run(line + " | cat").out, smallModel());
    EXPECT_EQ(m_folder.run("{ echo before; " + line + "; echo behind; }").out, "before\n" + smallModel() + "behind\n");
}

TEST_F(CompressedTest, AnArchiveIsReplacedOnlyWhereNothingElseIsLost) {
    m_folder.run("python3 -c \"import zipfile\n"
                 "archive = zipfile.ZipFile('full.ifczip', 'w')\n"
                 "archive.write('small.ifc')\n"
                 "archive.writestr('photo.png', 'x')\"");
    const std::string full = contentOf(m_folder.path("full.ifczip"));
    const Outcome refused = m_folder.run("kpifc set full.ifczip '#4.Coordinates=(1.,2.)' --in-place");
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_NE(refused.err.find("further files"), std::string::npos) << refused.err;
    EXPECT_EQ(contentOf(m_folder.path("full.ifczip")), full);
    EXPECT_EQ(m_folder.run("kpifc set small.ifczip '#4.Coordinates=(1.,2.)' --in-place").exitCode, 0);
    EXPECT_EQ(m_folder.run("kpifc get small.ifczip '#4.Coordinates'").out, "(1.,2.)\n");
}

TEST_F(CompressedTest, OtherProgramsReadWhatIsWritten) {
    for (const std::string file : {"new.ifc", "new.ifc.gz", "new.ifczip", "new.zip"}) {
        EXPECT_EQ(m_folder.run("kpifc convert small.ifczip -o " + file).exitCode, 0) << file;
    }
    const Outcome read = m_folder.run("python3 -c \"import gzip, zipfile\n"
                                      "text = open('new.ifc', 'rb').read()\n"
                                      "assert gzip.open('new.ifc.gz').read() == text\n"
                                      "for name in ('new.ifczip', 'new.zip'):\n"
                                      "    archive = zipfile.ZipFile(name)\n"
                                      "    assert archive.testzip() is None and archive.namelist() == ['new.ifc']\n"
                                      "    assert archive.read('new.ifc') == text\"");
    EXPECT_EQ(read.exitCode, 0) << read.err;
}

} // namespace
