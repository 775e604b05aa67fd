#include "values/BlockPool.h"

#include <gtest/gtest.h>

#include <KpIfcCore/KpArena.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <set>
#include <vector>

using namespace KP_SDAI;

namespace {

constexpr std::size_t kMany = 40; // blocks, so that some come from large pages

std::vector<char*> filled(BlockPool& pool, std::size_t count) {
    std::vector<char*> blocks;
    for (std::size_t i = 0; i < count; ++i) {
        blocks.push_back(static_cast<char*>(pool.take()));
        std::memset(blocks.back(), static_cast<int>(i), BlockPool::kBlock);
    }
    return blocks;
}

/// Whatever is expected, blocks are whole, aligned and nobody else's.
TEST(BlockPool, GivesEachBlockToOne) {
    for (const std::size_t expected :
         {std::size_t{0}, 3 * BlockPool::kBlock, 64 * BlockPool::kBlock, BlockPool::kUnknown}) {
        BlockPool pool;
        pool.expect(expected);
        const std::vector<char*> blocks = filled(pool, kMany);
        EXPECT_EQ(pool.inUse(), kMany * BlockPool::kBlock);
        for (std::size_t i = 0; i < kMany; ++i) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks[i]) % BlockPool::kAlignment, 0u);
            const char value = static_cast<char>(i);
            EXPECT_TRUE(std::all_of(blocks[i], blocks[i] + BlockPool::kBlock, [=](char c) { return c == value; }));
        }
    }
}

TEST(BlockPool, GivesOutWhatCameBackFirst) {
    BlockPool pool;
    const std::vector<char*> blocks = filled(pool, kMany);
    const std::set<char*> returned(blocks.begin() + 5, blocks.begin() + 15);
    for (char* block : returned) pool.giveBack(block);
    EXPECT_EQ(pool.inUse(), (kMany - returned.size()) * BlockPool::kBlock);
    const std::vector<char*> again = filled(pool, returned.size());
    EXPECT_EQ(std::set<char*>(again.begin(), again.end()), returned);
}

/// Arenas of one pool live on what others have left behind; pieces are apart from each other, of whatever size.
TEST(BlockPool, ServesArenas) {
    BlockPool pool;
    std::size_t inUse = 0;
    for (int round = 0; round < 3; ++round) {
        KpArena first(pool);
        KpArena second(pool);
        std::vector<std::pair<char*, std::size_t>> pieces;
        for (std::size_t i = 0; i < 4000; ++i) {
            const std::size_t size = i % 500 == 0 ? 100'000 + i : 1 + i % 300 * 8;
            pieces.emplace_back(static_cast<char*>((i % 2 ? first : second).allocate(size)), size);
            std::memset(pieces.back().first, static_cast<int>(i), size);
        }
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            const auto [piece, size] = pieces[i];
            const char value = static_cast<char>(i);
            ASSERT_TRUE(std::all_of(piece, piece + size, [=](char c) { return c == value; })) << i;
        }
        if (round == 0) inUse = pool.inUse();
        EXPECT_GT(inUse, 8 * BlockPool::kBlock);
        EXPECT_EQ(pool.inUse(), inUse);
        first.clear();
        EXPECT_EQ(first.reserved(), 0u);
    }
    EXPECT_EQ(pool.inUse(), 0u);
}

} // namespace
