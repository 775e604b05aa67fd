#include "FailingMemory.h"
#include "Outcome.h"
#include "Scenario.h"
#include "StepFiles.h"

#include <KpIfcCore/KpIfcChangeGroup.h>
#include <KpIfcCore/KpIfcModule.h>

#include <gtest/gtest.h>
#include <part21/SmallParts.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>

using namespace KP_SDAI;
namespace fs = std::filesystem;

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kStep = 29; // a sample of positions: each takes many times as long
#else
constexpr std::size_t kStep = 1;
#endif

/// A folder for what is saved; in memory, for thousands of times are waited for the disk.
fs::path fastFolder() {
    std::error_code none;
    return fs::is_directory("/dev/shm", none) ? fs::path("/dev/shm") : fs::path(testing::TempDir());
}

bool saysOutOfMemory(const std::string& error) {
    for (const char* text : {"out of memory", "Cannot allocate memory", "Malloc failure", "cannot be loaded"})
        if (error.find(text) != std::string::npos) return true;
    return false;
}

/// Does something; where memory runs out in it, there is memory again and it is done once more.
template <class Operation>
void again(Operation operation) {
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        EXPECT_TRUE(failing_memory::disarm());
    }
    operation();
}

/// The same of what tells by its result.
template <class Operation>
void again(KpIfcFile& file, Operation operation) {
    const KP::ErrorStatus status = operation();
    if (status == KP::eOk) return;
    EXPECT_TRUE(failing_memory::disarm()) << file.error();
    EXPECT_EQ(status, KP::eNotAvailable);
    EXPECT_TRUE(saysOutOfMemory(file.error())) << file.error();
    EXPECT_EQ(operation(), KP::eOk) << file.error();
}

void change(KpIfcModel& model, const Edit& edit) {
    if (edit.isGroup) return edit.make(model);
    KpIfcChangeGroup group(model);
    edit.make(model);
    group.keep();
}

struct Written {
    std::string rewritten;
    std::string normalised;
    std::string compressed;
    friend bool operator==(const Written&, const Written&) = default;
};

class FailingAllocations : public testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        if (!failing_memory::isAvailable()) GTEST_SKIP() << "allocations cannot be intercepted here";
        std::string error;
        m_module = KpIfcModule::load("IFC2X3", error);
        ASSERT_TRUE(m_module) << error;
        KpIfcFile file;
        ASSERT_EQ(file.openMemory(m_content.data(), m_content.size()), KP::eOk);
        ASSERT_EQ(file.save(m_target.string()), KP::eOk) << file.error();
        m_packed = contentOf(m_target);
        fs::remove(m_target);
    }
    void TearDown() override { fs::remove(m_target); }

    /// Runs `work` with every allocation of at least so many bytes failing in turn, until none is left.
    template <class Work>
    void sweep(Work work, std::size_t least = 0) {
        work(); // makes what is made once
        std::size_t at = 1;
        for (bool hasFailed = true; hasFailed; at += least ? 1 : kStep) {
            const std::ptrdiff_t blocks = failing_memory::blocks();
            failing_memory::arm(at, GetParam(), least);
            work();
            hasFailed = failing_memory::disarm();
            EXPECT_EQ(failing_memory::blocks(), blocks);
            ASSERT_FALSE(HasFailure()) << "allocation " << at;
        }
        EXPECT_GT(at, least ? 3u : 100u);
    }

    /// Opens, changes in groups and saves; whatever fails is done again. What is written must be what was written
    /// first.
    void work(const std::string& content, Written& undisturbed) {
        std::unique_ptr<KpIfcFile> file;
        again([&] { file = std::make_unique<KpIfcFile>(); });
        again(*file, [&] { return file->openMemory(content.data(), content.size()); });
        KpIfcModel& model = *file->model();
        again([&] { referrersText(model); });
        for (const Edit& edit : edits()) again([&] { change(model, edit); });
        again([&] { file->header().setText("FILE_NAME", 5, "a system with a name of some length"); });

        Written written;
        again(*file, [&] { return file->saveToMemory(written.rewritten); });
        again(*file, [&] { return file->saveToMemory(written.normalised, {.normalise = true}); });
        again(*file, [&] {
            const KP::ErrorStatus status = file->save(m_path);
            EXPECT_EQ(fs::exists(m_target), status == KP::eOk);
            return status;
        });
        failing_memory::disarm();
        written.compressed = contentOf(m_target);
        fs::remove(m_target);
        if (undisturbed.rewritten.empty()) undisturbed = written;
        EXPECT_TRUE(written == undisturbed) << written.rewritten << "\ninstead of\n" << undisturbed.rewritten;
    }

    const std::string m_content = richFile();
    std::string m_packed; ///< the same, compressed
    const fs::path m_target = fastFolder() / temporaryPath("memory.ifc.gz").filename();
    const std::string m_path = m_target.string();

private:
    std::shared_ptr<KpIfcModule> m_module;
};

/// Whatever fails is told; it leaves all as it was, with a change group, so that it can be done once more.
TEST_P(FailingAllocations, AreToldAndLeaveNothingBehind) {
    Written undisturbed;
    sweep([&] { work(m_packed, undisturbed); });
}

/// A model's arena asks the system rarely: with some points more or fewer it does so elsewhere.
TEST_P(FailingAllocations, OfArenasLeaveNothingBehind) {
    constexpr std::size_t kLeast = 4096;
    std::string points;
    for (int count = 0; count < 240; ++count) {
        points += "#" + std::to_string(100 + count) + "=IFCCARTESIANPOINT((1.,2.,3.));\n";
        if (count % (12 * kStep) != 0) continue;
        Written undisturbed;
        const std::string content = richFile(points);
        sweep([&] { work(content, undisturbed); }, kLeast);
        ASSERT_FALSE(HasFailure()) << count << " points";
    }
}

/// Without change groups an edit may be half done; the model is sound all the same, and what is saved is what it says.
TEST_P(FailingAllocations, LeaveModelsSound) {
    sweep([&] {
        std::unique_ptr<KpIfcFile> opened_;
        again([&] { opened_ = std::make_unique<KpIfcFile>(); });
        KpIfcFile& file = *opened_;
        if (file.openMemory(m_content.data(), m_content.size()) != KP::eOk) {
            EXPECT_TRUE(saysOutOfMemory(file.error())) << file.error();
            EXPECT_EQ(file.model(), nullptr);
            return;
        }
        KpIfcModel& model = *file.model();
        for (const Edit& edit : edits()) {
            try {
                if (&edit == &edits()[5]) referrersText(model); // from here on the indexes stand
                edit.make(model);
            } catch (const std::bad_alloc&) {
                failing_memory::disarm();
            }
        }
        failing_memory::disarm();
        std::string written;
        ASSERT_EQ(file.saveToMemory(written), KP::eOk) << file.error();
        KpIfcFile again = opened(written);
        EXPECT_EQ(referrersText(model), referrersText(*again.model()));
        EXPECT_EQ(saved(file), saved(again));
        EXPECT_EQ(model.keptRecordCount(), again.model()->keptRecordCount());
    });
}

/// Whichever thread runs out of memory while several read one file, the caller is told.
TEST_P(FailingAllocations, OfReadingThreadsAreTold) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer itself ends the program where it has no memory for a new thread";
#endif
    std::string records = "#1=IFCCARTESIANPOINT((0.,0.));\n#2=IFCNOTHING();\n";
    for (int i = 100; i < 200; ++i)
        records += "#" + std::to_string(i) + "=IFCPOLYLINE((#1,#" + std::to_string(i + 40) + "));\n";
    const std::string content = stepFile(records);
    const std::string expected = outcomeOf(content, {.threads = 1});
    std::size_t at = 1;
    for (bool hasFailed = true; hasFailed; ++at) {
        const SmallParts parts(500);
        KpIfcFile file;
        failing_memory::arm(at, GetParam());
        const KP::ErrorStatus status = file.openMemory(content.data(), content.size(), "memory", {.threads = 2});
        hasFailed = failing_memory::disarm();
        ASSERT_EQ(status == KP::eOk, file.model() != nullptr);
        ASSERT_TRUE(status == KP::eOk || saysOutOfMemory(file.error())) << file.error() << " at " << at;
    }
    EXPECT_GT(at, 100u);
    EXPECT_EQ(outcomeOf(content, {.threads = 2}, 500), expected);
}

/// A touch that fails has read nothing; reading all that fails leaves what was read where it is.
TEST_P(FailingAllocations, LeaveLazyModelsSound) {
    std::string content;
    for (int i = 1; i <= 40; ++i)
        content += "#" + std::to_string(i) + "=IFCPOLYLINE((#" + std::to_string(100 - i) + ",#999));\n#" +
                   std::to_string(100 + i) + "=IFCPRESENTATIONSTYLEASSIGNMENT((#" + std::to_string(200 + i) + "));\n#" +
                   std::to_string(200 + i) + "=IFCCURVESTYLE('a name of some length',$,$,$);\n";
    content = stepFile(content + "#90=IFCWALL('0000000000000000000001',12,$,$,$,$,$,$);\n");
    KpIfcFile full = opened(content);
    const std::string expected = rewritten(full) + saved(full);
    sweep([&] {
        std::unique_ptr<KpIfcFile> file;
        again([&] { file = std::make_unique<KpIfcFile>(); });
        again(*file, [&] { return file->openMemory(content.data(), content.size(), "memory", {.lazy = true}); });
        KpIfcModel& model = *file->model();
        EXPECT_FALSE(model.isWhole());
        constexpr std::uint64_t kTouched[] = {140, 1, 201, 101};
        const KpIfcEntityBase* touched[std::size(kTouched)];
        for (std::size_t i = 0; i < std::size(kTouched); ++i) {
            again([&] { touched[i] = model.find(kTouched[i]).openObject(); });
            EXPECT_FALSE(model.isWhole());
        }
        again([&] { EXPECT_EQ(model.findByGlobalId("0000000000000000000001").instanceName(), 90u); });
        again(*file, [&] { return file->readAll(); });
        for (std::size_t i = 0; i < std::size(kTouched); ++i)
            EXPECT_EQ(model.find(kTouched[i]).openObject(), touched[i]);
        std::string written;
        again(*file, [&] { return file->saveToMemory(written); });
        std::string normalised;
        again(*file, [&] { return file->saveToMemory(normalised, {.normalise = true}); });
        failing_memory::disarm();
        EXPECT_EQ(written + normalised, expected);
    });
}

INSTANTIATE_TEST_SUITE_P(Memory, FailingAllocations, testing::Bool(),
                         [](const auto& test) { return test.param ? "AllFromOneOn" : "One"; });

/// A module that cannot be loaded for want of memory leaves nothing behind and can be loaded later.
TEST(FailingModule, CanBeLoadedLater) {
    if (!failing_memory::isAvailable()) GTEST_SKIP() << "allocations cannot be intercepted here";
    const auto load = [] {
        std::string error;
        try {
            return KpIfcModule::load("IFC2X3", error) != nullptr;
        } catch (const std::bad_alloc&) {
            return false;
        }
    };
    ASSERT_TRUE(load());
    const std::ptrdiff_t blocks = failing_memory::blocks();
    failing_memory::arm(0, false);
    ASSERT_TRUE(load());
    failing_memory::disarm();
    const std::size_t count = failing_memory::count();
    std::ptrdiff_t loads = 0;
    for (std::size_t at = 1; at <= count; at += std::max<std::size_t>(1, std::min<std::size_t>(at / 8, count / 300))) {
        failing_memory::arm(at, false);
        const bool isLoaded = load();
        EXPECT_TRUE(failing_memory::disarm());
        // The system keeps what is to be called at the end of the process, a block for 32 loads.
        EXPECT_LE(failing_memory::blocks(), blocks + 1 + ++loads / 32) << at << " of " << count << ": " << isLoaded;
        if (HasFailure()) break;
    }
    EXPECT_TRUE(load());
}

} // namespace
