// The checked heap and the memory pools.
#include "basicInterface/memory.h"
#include "basicInterface/memoryPool.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <new>
#include <sys/resource.h>
#include <thread>

namespace ied {
namespace {

TEST(Heap, BlocksAreZeroAndCountedAndNeverUncounted) {
    const u32 before = allocBytes;
    auto *block = static_cast<u8 *>(Malloc(1000));
    std::memset(block, 0xAA, 1000);
    Free(block);
    block = static_cast<u8 *>(Malloc(1000));
    EXPECT_EQ(std::count(block, block + 1000, 0), 1000);
    EXPECT_EQ(allocBytes - before, 2000U);
    block[0] = 7;
    block = static_cast<u8 *>(Realloc(block, 5000));
    EXPECT_EQ(block[0], 7);
    EXPECT_EQ(allocBytes - before, 2000U);
    Free(block);
    Free(nullptr);
}

TEST(Heap, ABlockOfNothingIsABlock) {
    void *first = Malloc(0);
    void *second = Malloc(0);
    EXPECT_NE(first, nullptr);
    EXPECT_NE(first, second);
    first = Realloc(first, 0);
    EXPECT_NE(first, nullptr);
    Free(first);
    Free(second);
}

TEST(Heap, ATextIsCopied) {
    char text[] = "abc";
    char *copy = getSring(text);
    text[0] = 'x';
    EXPECT_STREQ(copy, "abc");
    Free(copy);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // their heaps end the process themselves
TEST(Heap, WithoutMemoryTheProcessEndsWithStatusOne) {
    constexpr std::size_t tooMuch = std::size_t{1} << 46;
    EXPECT_EXIT(Malloc(tooMuch), testing::ExitedWithCode(1),
                "^out of memory! bye!\ntried to allocate 0 byes,total:[0-9]+\n$");
    EXPECT_EXIT(Realloc(nullptr, tooMuch + 5), testing::ExitedWithCode(1),
                "^out of memory! bye!\ntried to reallocate 5 byes\n$");
}
#endif

struct Aligned {
    explicit Aligned(u8 on) : before(isWordAlign) { isWordAlign = on; }
    ~Aligned() { isWordAlign = before; }
    u8 before;
};

TEST(Pool, ExactlyTheRemainingSpaceFitsAndOneOctetMoreLeaves) {
    const Aligned words(0);
    MemoryPool pool{};
    mpAlloc(100, &pool);
    auto *first = static_cast<u8 *>(allocInMp(60, &pool));
    EXPECT_EQ(first, pool.base);
    testing::internal::CaptureStderr();
    EXPECT_THROW(allocInMp(41, &pool), PoolFull);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "There's no space in the memory pool!\r\n");
    EXPECT_EQ(pool.used, 60U) << "nothing of the pool is lost";
    EXPECT_EQ(allocInMp(40, &pool), first + 60);
    EXPECT_EQ(pool.used, 100U);
    EXPECT_THROW(allocInMp(0xFFFFFFFF, &pool), PoolFull) << "no wrap";
    EXPECT_THROW((allocInMpArray<u64>(&pool, 0x20000000)), PoolFull);
    mpFree(&pool);
    EXPECT_EQ(pool.base, nullptr);
    EXPECT_EQ(pool.size, 0U);
}

TEST(Pool, AlignedAllocationsAdvanceByWordsAndTheLastMayPassTheEnd) {
    const Aligned words(1);
    MemoryPool pool{};
    constexpr u32 word = sizeof(void *);
    mpAlloc(3 * word - 3, &pool);
    allocInMp(5, &pool);
    EXPECT_EQ(pool.used, (5 + word - 1) / word * word);
    allocInMp(word, &pool);
    EXPECT_NO_THROW(allocInMp(pool.size - pool.used, &pool)) << "the check uses the plain size";
    EXPECT_EQ(pool.used, pool.size + 3);
    EXPECT_THROW(allocInMp(1, &pool), PoolFull);
    mpFree(&pool);
}

TEST(Arenas, HoldWhatATaskMakesUntilTheScopeEnds) {
    Arena arena;
    arenaInit(&arena, 256);
    const auto isInside = [&arena](const void *block) {
        return block >= arena.base && block < arena.base + arena.size;
    };
    for (int round = 0; round < 2; round++) {
        void *tooLarge = nullptr;
        {
            const ArenaScope scope(&arena);
            auto *first = static_cast<u8 *>(Malloc(10));
            auto *second = static_cast<u8 *>(Malloc(1));
            EXPECT_TRUE(isInside(first) && isInside(second));
            EXPECT_EQ(second - first, 16) << "aligned for anything";
            EXPECT_TRUE(std::all_of(first, first + 32, [](u8 octet) { return octet == 0; })) << round;
            std::fill_n(first, 32, u8{0xFF});
            Free(first);
            EXPECT_EQ(first[0], 0xFF) << "still there";
            EXPECT_FALSE(arena.full);
            tooLarge = Malloc(1000);
            EXPECT_FALSE(isInside(tooLarge));
            EXPECT_TRUE(arena.full);
            std::thread([&] { // another task has nothing to do with it
                void *block = Malloc(8);
                EXPECT_FALSE(isInside(block));
                Free(block);
            })
                .join();
        }
        Free(tooLarge);
        void *afterwards = Malloc(8);
        EXPECT_FALSE(isInside(afterwards));
        Free(afterwards);
    }
    Free(arena.base);
}

} // namespace
} // namespace ied
