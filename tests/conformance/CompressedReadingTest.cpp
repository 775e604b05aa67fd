#include "Archives.h"
#include "StepFiles.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace KP_SDAI;
using testing::HasSubstr;
using testing::TestWithParam;
using testing::ValuesIn;

namespace {

/// A file that takes several windows, with a finding in its last line: to tell its place, the source is read twice.
const std::string& longFile() {
    static const std::string content = [] {
        std::string records;
        for (int i = 1; i <= 40'000; ++i) records += "#" + std::to_string(i) + "=IFCCARTESIANPOINT((0.,1.));\n";
        return stepFile(records + "#50000=IFCNOSUCHTHING(1);\n");
    }();
    return content;
}

const std::string& shortFile() {
    static const std::string content = stepFile("#1=IFCCARTESIANPOINT((0.,1.));\n");
    return content;
}

struct TemporaryFile {
    explicit TemporaryFile(std::string_view content) : path(temporaryPath("compressed.ifc")) {
        std::ofstream(path, std::ios::binary) << content;
    }
    ~TemporaryFile() { std::filesystem::remove(path); }
    std::filesystem::path path;
};

struct Whole {
    const char* name;
    std::function<std::string(const std::string& content)> make;
};

const Whole kWhole[] = {
    {"Plain", [](const std::string& content) { return content; }},
    {"Gzip", [](const std::string& content) { return gzipped(content); }},
    {"GzipOfSeveralMembers",
     [](const std::string& content) {
         const std::size_t half = content.size() / 2;
         return gzipped("") + gzipped(content.substr(0, half)) + gzipped("") + gzipped(content.substr(half)) +
                gzipped("");
     }},
    {"PaddedGzip", [](const std::string& content) { return gzipped(content) + std::string(600'000, '\0'); }},
    {"Zip",
     [](const std::string& content) {
         return zipped({{"house.ifc", content}});
     }},
    {"StoredZip",
     [](const std::string& content) {
         return zipped({{"house.ifc", content, true}});
     }},
    {"ZipWithOthers",
     [](const std::string& content) {
         return zipped({{"folder/", ""},
                        {"a.txt", "of no interest"},
                        {"folder/House.IFC", content},
                        {"__MACOSX/folder/._House.IFC", "attributes"},
                        {"house.ifc.bak", "older"}});
     }},
    {"ZipOfOtherName",
     [](const std::string& content) {
         return zipped({{"folder/", ""}, {"house.step", content}});
     }},
};

class WholeTest : public TestWithParam<Whole> {};

/// A name says nothing: all have the same.
TEST_P(WholeTest, ReadsAsThePlainFile) {
    KpIfcFile plain = opened(longFile());
    const std::string bytes = GetParam().make(longFile());
    const TemporaryFile stored(bytes);
    const auto expectAlike = [&](const std::function<KP::ErrorStatus(KpIfcFile&)>& open, const char* how) {
        KpIfcFile file;
        ASSERT_EQ(open(file), KP::eOk) << how << ": " << file.error();
        EXPECT_EQ(findings(file.report()), findings(plain.report())) << how;
        EXPECT_EQ(file.size(), plain.size()) << how;
        std::filesystem::remove(stored.path); // saving reads the source again, which stays open
        EXPECT_TRUE(saved(file) == longFile()) << how;
        EXPECT_TRUE(saved(file) == longFile()) << how << ", for the second time";
    };
    expectAlike([&](KpIfcFile& file) { return file.open(stored.path.string()); }, "file");
    expectAlike([&](KpIfcFile& file) { return file.openMemory(bytes.data(), bytes.size()); }, "memory");

    const std::filesystem::path pipe = temporaryPath("pipe");
    ASSERT_EQ(mkfifo(pipe.string().c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(pipe, std::ios::binary) << bytes; });
    expectAlike([&](KpIfcFile& file) { return file.open(pipe.string()); }, "pipe");
    writer.join();
    std::filesystem::remove(pipe);
}

INSTANTIATE_TEST_SUITE_P(Compressed, WholeTest, ValuesIn(kWhole), [](const auto& test) { return test.param.name; });

std::string changed(std::string bytes, std::size_t at, char value) {
    bytes.at(at) = value;
    return bytes;
}

/// A zip archive whose directory promises another size.
std::string withPromisedSize(int difference) {
    std::string bytes = zipped({{"house.ifc", shortFile()}});
    const std::size_t place = bytes.rfind("PK\1\2") + 24;
    return changed(bytes, place, static_cast<char>(bytes.at(place) + difference));
}

std::string withMethod(char method) {
    const std::string bytes = zipped({{"house.ifc", shortFile()}});
    return changed(bytes, bytes.rfind("PK\1\2") + 10, method);
}

struct Refused {
    const char* name;
    std::string bytes;
    std::string reason;
};

class RefusedTest : public TestWithParam<Refused> {};

TEST_P(RefusedTest, TellsWhy) {
    const TemporaryFile stored(GetParam().bytes);
    KpIfcFile file;
    EXPECT_EQ(file.open(stored.path.string()), KP::eNotAvailable);
    EXPECT_EQ(file.model(), nullptr);
    EXPECT_THAT(file.error(), testing::StartsWith(stored.path.string() + ": "));
    EXPECT_THAT(file.error(), HasSubstr(GetParam().reason));
    EXPECT_EQ(file.openMemory(GetParam().bytes.data(), GetParam().bytes.size(), "name"), KP::eNotAvailable);
    EXPECT_THAT(file.error(), testing::StartsWith("name: "));
}

const std::string kGzip = gzipped(shortFile());

const Refused kRefused[] = {
    {"GzipCutOff", kGzip.substr(0, kGzip.size() - 1), "cut off"},
    {"GzipCutInHeader", kGzip.substr(0, 5), "cut off"},
    {"GzipOfWrongChecksum", changed(kGzip, kGzip.size() - 8, static_cast<char>(kGzip[kGzip.size() - 8] + 1)), "check"},
    {"GzipOfWrongLength", changed(kGzip, kGzip.size() - 4, static_cast<char>(kGzip[kGzip.size() - 4] + 1)), "length"},
    {"GzipWithOtherBytesBehind", kGzip + "something else", "damaged"},
    {"GzipWithSecondMemberCutOff", kGzip + kGzip.substr(0, kGzip.size() / 2), "cut off"},
    {"ZipCutOff", zipped({{"house.ifc", shortFile()}}).substr(0, 100), "cut off"},
    {"ZipOfLongerFile", withPromisedSize(-1), "damaged"},
    {"ZipOfShorterFile", withPromisedSize(1), "damaged"},
    {"ZipOfUnknownMethod", withMethod(77), "method"},
    {"EncryptedZip", zipped({{"house.ifc", shortFile(), false, true}}), "'house.ifc' is encrypted"},
    {"EmptyZip", std::string("PK\5\6") + std::string(18, '\0'), "no file"},
    {"ZipOfFolders", zipped({{"folder/", ""}}), "no file"},
    {"ZipOfSeveral", zipped({{"a.ifc", "1"}, {"b.txt", "2"}, {"c\n.ifc", "3"}}), "'a.ifc', 'c?.ifc'"},
    {"ZipWithoutIfc", zipped({{"a.txt", "1"}, {"b.txt", "2"}}), "'a.txt', 'b.txt'"},
};

INSTANTIATE_TEST_SUITE_P(Compressed, RefusedTest, ValuesIn(kRefused), [](const auto& test) { return test.param.name; });

class DamageTest : public TestWithParam<Whole> {};

/// Wherever an archive is damaged, nothing but the whole content is ever taken for it.
TEST_P(DamageTest, IsNeverReadAsSomethingElse) {
    const std::string bytes = GetParam().make(shortFile());
    KpIfcFile plain = opened(shortFile());
    const std::string expected = saved(plain);
    int refused = 0;
    const auto check = [&](const std::string& damaged, const std::string& where) {
        KpIfcFile file;
        if (file.openMemory(damaged.data(), damaged.size()) == KP::eOk) {
            EXPECT_TRUE(saved(file) == expected && file.report().isClean()) << where;
        } else {
            EXPECT_NE(file.error(), "") << where;
            ++refused;
        }
    };
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        check(bytes.substr(0, i), "cut off at " + std::to_string(i));
        for (const int bit : {0, 3, 7})
            check(changed(bytes, i, static_cast<char>(bytes[i] ^ (1 << bit))), "changed at " + std::to_string(i));
    }
    EXPECT_GT(refused, static_cast<int>(bytes.size()) * 2);
}

const Whole kDamaged[] = {kWhole[1], kWhole[2], kWhole[4], kWhole[5]};

INSTANTIATE_TEST_SUITE_P(Compressed, DamageTest, ValuesIn(kDamaged), [](const auto& test) { return test.param.name; });

long mostMemory() { // of this process so far, in KiB
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

/// What is unpacked is looked at piece by piece.
TEST(Bomb, DoesNotFillTheMemory) {
    constexpr long kMany = 400;
    const auto repeated = [](char c) {
        const std::string member = gzipped(std::string(1 << 20, c));
        std::string bomb;
        for (long i = 0; i < kMany; ++i) bomb += member;
        return bomb;
    };
    for (const std::string& bomb : {repeated('x'), repeated(' ')}) {
        const long before = mostMemory();
        KpIfcFile file;
        EXPECT_EQ(file.openMemory(bomb.data(), bomb.size()), KP::eInvalidInput);
        EXPECT_THAT(file.error(), HasSubstr("no STEP file"));
        EXPECT_LT(mostMemory() - before, kMany * 1024 / 10);
    }
}

} // namespace
