#include "model/InstanceTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace KP_SDAI;
using Names = std::vector<std::uint64_t>;

constexpr std::uint64_t kSlots = KpIfcSlotChunk::kSlots;
constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();

/// A table takes only the address of its model.
KpIfcModel& someModel() {
    alignas(64) static char place[64];
    return *reinterpret_cast<KpIfcModel*>(place);
}

Names sequence(std::uint64_t first, std::uint64_t step, std::size_t count) {
    Names names;
    for (std::size_t i = 0; i < count; ++i) names.push_back(first + i * step);
    return names;
}
Names reversed(Names names) {
    std::reverse(names.begin(), names.end());
    return names;
}
Names shuffled(Names names) {
    std::shuffle(names.begin(), names.end(), std::mt19937(9));
    return names;
}
Names random(std::uint64_t range, std::size_t count) {
    std::mt19937_64 numbers(8);
    Names names;
    for (std::size_t i = 0; i < count; ++i) names.push_back(numbers() % range);
    return names;
}
Names joined(Names a, const Names& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

struct Case {
    const char* name;
    Names names;
};
class InstanceTableOf : public testing::TestWithParam<Case> {};

/// All defined slots by a walk over the table, as models walk.
std::vector<KpIfcSlot*> walk(InstanceTable& table) {
    std::vector<KpIfcSlot*> dense, all;
    for (std::size_t stretch = 0; stretch < table.stretchCount(); ++stretch)
        if (KpIfcSlotChunk* chunk = table.chunk(stretch))
            for (KpIfcSlot& slot : chunk->slots)
                if (slot.word) dense.push_back(&slot);
    table.sortSparse();
    std::vector<KpIfcSlot*> sparse;
    for (KpIfcSlot* slot : table.sparse())
        if (slot->word) sparse.push_back(slot);
    const auto less = [](KpIfcSlot* a, KpIfcSlot* b) { return KpDbObjectId(a) < KpDbObjectId(b); };
    EXPECT_TRUE(std::is_sorted(dense.begin(), dense.end(), less));
    EXPECT_TRUE(std::is_sorted(sparse.begin(), sparse.end(), less));
    std::merge(dense.begin(), dense.end(), sparse.begin(), sparse.end(), std::back_inserter(all), less);
    return all;
}

TEST_P(InstanceTableOf, BehavesAsAMap) {
    BlockPool pool;
    InstanceTable table(someModel(), pool);
    table.expectFile(GetParam().names.size() * 60);
    std::map<std::uint64_t, KpIfcSlot*> expected;
    for (const std::uint64_t name : GetParam().names) {
        KpIfcSlot* slot = table.slot(name);
        ASSERT_EQ(KpIfcSlotChunk::of(slot)->nameOf(slot), name);
        const auto [entry, isNew] = expected.emplace(name, slot);
        ASSERT_EQ(entry->second, slot) << "the slot of " << name << " has moved";
        ASSERT_EQ(slot->word == 0, isNew) << name;
        slot->word = name | 1;
        table.noteInstances(1);
    }
    for (const auto& [name, slot] : expected) {
        ASSERT_EQ(table.find(name), slot) << name;
        ASSERT_EQ(table.slot(name), slot) << name;
        ASSERT_EQ(KpDbObjectId(slot).model(), &someModel());
        for (const std::uint64_t neighbour : {name - 1, name + 1, name + kSlots}) {
            const KpIfcSlot* found = table.find(neighbour);
            ASSERT_EQ(found && found->word, expected.count(neighbour) == 1) << neighbour;
        }
    }
    const std::vector<KpIfcSlot*> walked = walk(table);
    ASSERT_EQ(walked.size(), expected.size());
    ASSERT_TRUE(std::equal(walked.begin(), walked.end(), expected.begin(),
                           [](const KpIfcSlot* slot, const auto& entry) { return slot == entry.second; }));
}

const Case kCases[] = {
    {"Dense", sequence(1, 1, 20'000)},
    {"FromZero", sequence(0, 1, 2000)},
    {"Descending", reversed(sequence(1, 1, 20'000))},
    {"Shuffled", shuffled(sequence(1, 1, 20'000))},
    {"DenseFarAway", sequence(2'000'000'000, 1, 5000)},
    {"AcrossTheLimitOfDirectNames", sequence((std::uint64_t{1} << 31) - 1000, 1, 2000)},
    {"EveryTenth", sequence(10, 10, 20'000)},
    {"OnePerStretch", sequence(5, kSlots, 20'000)},
    {"OnePerStretchDescending", reversed(sequence(5, kSlots, 5000))},
    {"Huge", {92'147'483'647, kLargest, kLargest - 1, kLargest - kSlots, std::uint64_t{1} << 63, 1, 2}},
    {"RandomBelow31Bits", random(std::uint64_t{1} << 31, 20'000)},
    {"RandomBelow40Bits", random(std::uint64_t{1} << 40, 20'000)},
    {"RandomWithRepeats", random(5000, 20'000)},
    {"ScatteredThenDense", joined(sequence(7, kSlots * 3, 3000), sequence(1, 1, 10'000))},
    {"DenseThenScattered", joined(sequence(1, 1, 10'000), random(std::uint64_t{1} << 31, 5000))},
};
INSTANTIATE_TEST_SUITE_P(InstanceTable, InstanceTableOf, testing::ValuesIn(kCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(InstanceTable, ScatteredNamesDoNotCostAChunkEach) {
    BlockPool pool;
    InstanceTable table(someModel(), pool);
    const Names names = sequence(1, kSlots, 50'000);
    table.expectFile(names.size() * 40);
    for (const std::uint64_t name : names) {
        table.slot(name)->word = 2;
        table.noteInstances(1);
    }
    std::size_t chunks = table.sparse().size() / kSlots + 1;
    for (std::size_t stretch = 0; stretch < table.stretchCount(); ++stretch) chunks += table.chunk(stretch) != nullptr;
    EXPECT_LT(chunks * KpIfcSlotChunk::kBytes, names.size() * 100); // of a file of 2 MB
}

TEST(InstanceTable, HandlesOrderByModelThenName) {
    BlockPool pool;
    InstanceTable first(someModel(), pool);
    InstanceTable second(someModel(), pool);
    const KpDbObjectId null;
    // Made in an order that addresses would follow.
    const KpDbObjectId late(second.slot(1));
    const KpDbObjectId huge(first.slot(kLargest));
    const KpDbObjectId high(first.slot(900));
    const KpDbObjectId low(first.slot(3));
    const KpDbObjectId ascending[] = {null, low, high, huge, late};
    for (std::size_t i = 0; i < std::size(ascending); ++i)
        for (std::size_t k = 0; k < std::size(ascending); ++k) {
            EXPECT_EQ(ascending[i] < ascending[k], i < k) << i << ' ' << k;
            EXPECT_EQ(ascending[i] == ascending[k], i == k) << i << ' ' << k;
        }
    EXPECT_FALSE(low.isDefined());
    EXPECT_EQ(low.openObject(), nullptr);
    EXPECT_EQ(high.instanceName(), 900u);
    low.slot()->word = 0x1000 | KpIfcSlot::kKeptRecord;
    EXPECT_TRUE(low.isDefined());
    EXPECT_EQ(low.openObject(), nullptr);
}

} // namespace
